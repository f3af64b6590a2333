#include <KivInspect/Salvage.h>

#include <exception>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include <KivGenerics/NodeType.h>
#include <KivStorage/ItemScanner.h>

#include "salvage/LostList.h"
#include "salvage/SalvagedTree.h"
#include "salvage/Segments.h"
#include "salvage/Tail.h"
#include "scan/ItemWalk.h"
#include "scan/StructureReader.h"

namespace KivInspect {
namespace {

using KivStorage::ItemScanner;

class Salvager {
public:
    Salvager(const KivStorage::FileScanner& scanner, SalvageResult& result) : scanner_(scanner), result_(result) {}

    void Run(const std::vector<Segment>& segments) {
        Read(segments.front(), 0);
        if (structure_.HasEnded() || segments.size() == 1 || !ResumeIn(segments.back())) {
            GiveUp();
        }
        if (result_.result.Ok() && count_ != scanner_.GetTotals().items) {
            result_.result = WrongItemCount(scanner_);
        }
        result_.nodes = builder_.GetNodes();
        auto tree = builder_.TakeTree();
        if (tree->GetRoot() != nullptr) {
            result_.tree = std::move(tree);
        }
    }

private:
    /// Reads items as long as they are those of a tree.
    void Read(const Segment& segment, std::size_t from) {
        ItemScanner items;
        KivStorage::ScannedItem item;
        items.Feed(segment.data() + from, segment.size() - from, from);
        while (items.Next(item) == ItemScanner::Step::Item) {
            count_ += 1;
            structure_.Take(item, meaning_);
            if (meaning_.role == Role::Wrong || !Build(item)) {
                Complain(meaning_.problem);
                return;
            }
        }
    }

    /// A tree refuses what none holds, such as an element of another kind.
    bool Build(const KivStorage::ScannedItem& item) {
        try {
            builder_.Take(item, meaning_, structure_);
            return true;
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& exception) {
            refusal_ = exception.what();
            meaning_.problem = refusal_.c_str();
            return false;
        }
    }

    void Complain(const char* problem) {
        if (result_.result.Ok()) {
            result_.result = WrongStructure(scanner_, problem, 0);
        }
    }

    /// Goes on behind the last damage; false when the place cannot be told.
    bool ResumeIn(const Segment& tail) {
        const std::optional<Resumption> found = FindResumption(tail, structure_);
        if (!found) {
            return false;
        }
        LostList lost(structure_, result_.lost);
        lost.AddBelow(found->depth);
        lost.AddChildren(found->depth - 1, found->nextChild);
        structure_.CloseTo(found->depth);
        builder_.CloseTo(found->depth);
        StructureReader::Level& level = structure_.GetLevel(found->depth - 1);
        if (level.state == StructureReader::Level::State::Children) {
            Fill(found->depth, level, found->nextChild);
            level.GoTo(found->nextChild);
        }
        Read(tail, found->offset);
        return structure_.HasEnded();
    }

    /// No number in the data makes memory: an element takes at least a byte of the file.
    void Fill(std::size_t depth, const StructureReader::Level& level, std::uint32_t size) {
        if (level.node.kind == KivGenerics::NodeTypeVector && size - level.next <= scanner_.GetSize()) {
            builder_.FillVector(depth, level, size);
            if (result_.lost.empty()) {
                return;
            }
            result_.lost.back().note = "empty elements stand in their place, so that the others keep their keys";
        }
    }

    void GiveUp() {
        if (structure_.HasEnded()) {
            return;
        }
        Complain("they end before the tree does");
        LostList lost(structure_, result_.lost);
        lost.AddBelow(1);
        if (structure_.GetDepth() < 2) {
            result_.lost.push_back({{}, {}, 1, "with everything below it"});
        }
    }

    const KivStorage::FileScanner& scanner_;
    SalvageResult& result_;
    StructureReader structure_;
    SalvagedTree builder_;
    Meaning meaning_;
    std::uint64_t count_ = 0;  // of items
    std::string refusal_;
};

}  // namespace

SalvageResult Salvage(KivStorage::FileScanner& scanner, const SalvageOptions& options) {
    SalvageResult result;
    Segments left = ReadSegments(scanner, options);
    result.result = std::move(left.result);
    result.repairs = std::move(left.repairs);
    if (left.segments.empty()) {
        return result;  // other data
    }
    Salvager(scanner, result).Run(left.segments);
    return result;
}

}  // namespace KivInspect
