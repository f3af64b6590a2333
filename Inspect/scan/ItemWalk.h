#pragma once

#include <cstdint>

#include <KivInspect/FileSource.h>
#include <KivStorage/FileScanner.h>
#include <KivStorage/ItemScanner.h>

#include "scan/StructureReader.h"

namespace KivInspect {

/// The items of a saved tree with their meaning, one after the other, up to the end or to the first thing that is wrong.
class ItemWalk {
public:
    explicit ItemWalk(KivStorage::FileScanner& scanner, Progress progress = {});

    /// False at the end, and where something is wrong: GetResult tells which.
    bool Next();
    const KivStorage::ScannedItem& GetItem() const noexcept { return item_; }
    const Meaning& GetMeaning() const noexcept { return meaning_; }
    const StructureReader& GetStructure() const noexcept { return structure_; }
    const KivStorage::Result& GetResult() const noexcept { return result_; }
    std::uint64_t GetBlocks() const noexcept { return blocks_; }

private:
    bool NextBlock();
    bool Stop(const char* problem);

    KivStorage::FileScanner& scanner_;
    Progress progress_;
    KivStorage::ScannedPart part_;
    KivStorage::ItemScanner items_;
    KivStorage::ScannedItem item_;
    StructureReader structure_;
    Meaning meaning_;
    KivStorage::Result result_;
    std::uint64_t blocks_ = 0;
    std::uint64_t count_ = 0;
    bool inBlock_ = false;
};

/// `The data hold no tree: PROBLEM (file "name", byte 123). ...`
KivStorage::Result WrongStructure(const KivStorage::FileScanner& scanner, const char* problem, std::uint64_t offset);
/// Says that the trailer, which has been read, tells of another number of items than there are.
KivStorage::Result WrongItemCount(const KivStorage::FileScanner& scanner);

}  // namespace KivInspect
