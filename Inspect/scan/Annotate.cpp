#include <KivInspect/Annotate.h>

#include <algorithm>
#include <string>

#include <KivStorage/ItemScanner.h>

#include "scan/AnnotationLines.h"
#include "scan/ItemWalk.h"
#include "scan/ItemWords.h"
#include "scan/StructureReader.h"

namespace KivInspect {
namespace {

using KivStorage::ItemScanner;
using KivStorage::ScannedPart;
using KivStorage::ScanPart;

std::uint64_t Little(const std::uint8_t* bytes, int count) {
    std::uint64_t value = 0;
    for (int i = count - 1; i >= 0; --i) {
        value = value << 8 | bytes[i];
    }
    return value;
}

/// "WRONG: " and what is wrong, for a stretch that is.
std::string Complaint(const ScannedPart& part) {
    return part.state.Ok() ? "" : "; WRONG: " + part.state.sentence;
}

class Annotator {
public:
    Annotator(const KivStorage::FileScanner& scanner, Sink& sink, const AnnotateOptions& options)
        : scanner_(scanner), lines_(sink, options) {}

    void Take(const ScannedPart& part) {
        if (result_.Ok()) {
            result_ = part.state;
        }
        switch (part.kind) {
            case ScanPart::Header: TakeHeader(part); break;
            case ScanPart::Block: TakeBlock(part); break;
            case ScanPart::Trailer: TakeTrailer(part); break;
            case ScanPart::Unreadable: TakeUnreadable(part); break;
        }
    }

    KivStorage::Result Finish() {
        CutOff();
        if (result_.Ok() && !structure_.HasEnded()) {
            result_ = WrongStructure(scanner_, "they end before the tree does", scanner_.GetSize());
        }
        lines_.Flush();
        return result_;
    }

private:
    void Field(const ScannedPart& part, std::size_t at, std::size_t size, const std::string& meaning) {
        lines_.AddFraming(part.offset + at, part.bytes + at, size, meaning);
    }

    void TakeHeader(const ScannedPart& part) {
        if (part.size < 24) {
            return Field(part, 0, part.size, "the header" + Complaint(part));
        }
        Field(part, 0, 8, "the mark" + Complaint(part));
        Field(part, 8, 4, "version " + std::to_string(Little(part.bytes + 8, 4)));
        Field(part, 12, 4, "reserved");
        Field(part, 16, 8, "checksum of the header");
    }

    void TakeTrailer(const ScannedPart& part) {
        if (part.size < 44) {
            return Field(part, 0, part.size, "the trailer" + Complaint(part));
        }
        const auto number = [&part](std::size_t at) { return std::to_string(Little(part.bytes + at, 8)); };
        Field(part, 0, 4, "the trailer" + Complaint(part));
        Field(part, 4, 8, "number of blocks: " + number(4));
        Field(part, 12, 8, "number of items: " + number(12) + CheckCount());
        Field(part, 20, 8, "bytes of items: " + number(20));
        Field(part, 28, 8, "the chain");
        Field(part, 36, 8, "checksum of the trailer");
    }

    /// What is wrong with the trailer's number of items; nothing where damage has hidden some.
    std::string CheckCount() {
        if (!result_.Ok() || count_ == scanner_.GetTotals().items) {
            return "";
        }
        result_ = WrongItemCount(scanner_);
        return "; WRONG: there are " + std::to_string(count_);
    }

    /// Behind bytes that are lost nobody knows where an item begins.
    void TakeUnreadable(const ScannedPart& part) {
        CutOff();
        aligned_ = false;
        Field(part, 0, part.size, "none of it can be told apart" + Complaint(part));
    }

    void TakeBlock(const ScannedPart& part) {
        const std::string number = std::to_string(part.number);
        Field(part, 0, 4, "block " + number + " holds " + std::to_string(part.GetItemSize()) + " bytes of items");
        if (aligned_) {
            TakeItems(part);
        } else {
            Field(part, 4, part.GetItemSize(), "items behind the damage");
        }
        Field(part, part.size - 8, 8, "checksum of block " + number + Complaint(part));
    }

    void TakeItems(const ScannedPart& part) {
        const std::uint64_t begin = part.offset + 4;
        items_.Feed(part.GetItems(), part.GetItemSize(), begin);
        KivStorage::ScannedItem item;
        ItemScanner::Step step = items_.Next(item);
        for (; step == ItemScanner::Step::Item; step = items_.Next(item)) {
            TakeItem(item, begin + part.GetItemSize() - items_.GetRest());
        }
        const std::size_t rest = items_.GetRest();
        const std::size_t fresh = items_.GetPending() - lines_.GetPieceBytes();
        if (fresh > 0) {
            lines_.AddPiece(begin + part.GetItemSize() - rest - fresh, fresh);
        }
        if (step == ItemScanner::Step::Unknown) {
            CutOff();
            aligned_ = false;
            Problem("an item of unknown type stands here", begin + part.GetItemSize() - rest);
            Field(part, part.size - 8 - rest, rest, "an item of unknown type: nothing behind it can be told apart");
        }
    }

    void TakeItem(const KivStorage::ScannedItem& item, std::uint64_t end) {
        count_ += 1;
        const std::size_t outside = structure_.GetDepth();
        structure_.Take(item, meaning_);
        const std::size_t indent = std::min(outside, structure_.GetDepth());
        lines_.AddItem(end, item.bytes, item.size, Describe(item, meaning_, structure_, firstHalf_), indent);
        firstHalf_ = meaning_.role == Role::FirstHalf ? item.GetLong() : 0;
        if (meaning_.problem != nullptr) {
            Problem(meaning_.problem, item.offset);
        }
    }

    /// An item that was to go on does not.
    void CutOff() {
        const std::size_t size = lines_.GetPieceBytes();
        if (size > 0) {
            lines_.AddItem(0, items_.GetPendingBytes(), size, "an item that is cut off", structure_.GetDepth());
            items_.DropPending();
        }
    }

    void Problem(const char* problem, std::uint64_t offset) {
        if (result_.Ok()) {
            result_ = WrongStructure(scanner_, problem, offset);
        }
    }

    const KivStorage::FileScanner& scanner_;
    AnnotationLines lines_;
    ItemScanner items_;
    StructureReader structure_;
    Meaning meaning_;
    KivStorage::Result result_;
    std::int32_t firstHalf_ = 0;
    std::uint64_t count_ = 0;  // of items
    bool aligned_ = true;
};

}  // namespace

KivStorage::Result Annotate(KivStorage::FileScanner& scanner, Sink& sink, const AnnotateOptions& options) {
    Annotator annotator(scanner, sink, options);
    KivStorage::ScannedPart part;
    while (scanner.Next(part)) {
        annotator.Take(part);
        if (options.progress) {
            options.progress(part.offset + part.size, scanner.GetSize());
        }
    }
    const KivStorage::Result result = annotator.Finish();
    return scanner.GetError().Ok() ? result : scanner.GetError();
}

}  // namespace KivInspect
