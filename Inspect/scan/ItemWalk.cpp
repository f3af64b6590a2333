#include "scan/ItemWalk.h"

#include <utility>

#include <KivInspect/InspectCode.h>

namespace KivInspect {

using KivStorage::ItemScanner;
using KivStorage::ScanPart;

namespace {

constexpr std::uint64_t TrailerSize = 44;

}  // namespace

ItemWalk::ItemWalk(KivStorage::FileScanner& scanner, Progress progress)
    : scanner_(scanner), progress_(std::move(progress)), result_(scanner.GetError()) {}

KivStorage::Result WrongStructure(const KivStorage::FileScanner& scanner, const char* problem, std::uint64_t offset) {
    return {InspectMalformed, std::string("The data are no tree: ") + problem + " (" + scanner.GetPlace() + ", byte " +
                                  std::to_string(offset) + "). Whoever wrote them must correct it."};
}

KivStorage::Result WrongItemCount(const KivStorage::FileScanner& scanner) {
    const std::uint64_t trailer = scanner.GetSize() - TrailerSize;
    return {KivStorage::StorageTotalsDiffer,
            WrongStructure(scanner, "the trailer names another number of items", trailer).sentence};
}

bool ItemWalk::Stop(const char* problem) {
    result_ = WrongStructure(scanner_, problem, item_.offset);
    return false;
}

/// Goes on to the next block; at the end the trailer must agree with what was read.
bool ItemWalk::NextBlock() {
    while (scanner_.Next(part_)) {
        if (!part_.state.Ok()) {
            result_ = part_.state;
            return false;
        }
        if (part_.kind == ScanPart::Block) {
            blocks_ += 1;
            items_.Feed(part_.GetItems(), part_.GetItemSize(), part_.offset + 4);
            if (progress_) {
                progress_(part_.offset + part_.size, scanner_.GetSize());
            }
            return true;
        }
    }
    if (!scanner_.GetError().Ok()) {
        result_ = scanner_.GetError();
    } else if (items_.GetPending() > 0 || !structure_.HasEnded()) {
        Stop("they end before the tree does");
    } else if (count_ != scanner_.GetTotals().items) {
        result_ = WrongItemCount(scanner_);
    }
    return false;
}

bool ItemWalk::Next() {
    if (!result_.Ok()) {
        return false;
    }
    while (true) {
        const ItemScanner::Step step = inBlock_ ? items_.Next(item_) : ItemScanner::Step::RunEnds;
        if (step == ItemScanner::Step::Item) {
            count_ += 1;
            structure_.Take(item_, meaning_);
            return meaning_.problem == nullptr || Stop(meaning_.problem);
        }
        if (step == ItemScanner::Step::Unknown) {
            return Stop("an item of unknown type stands here");
        }
        inBlock_ = NextBlock();
        if (!inBlock_) {
            return false;
        }
    }
}

}  // namespace KivInspect
