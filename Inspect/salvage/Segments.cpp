#include "salvage/Segments.h"

#include <KivStorage/RepairBlock.h>

namespace KivInspect {
namespace {

using KivStorage::ScannedPart;
using KivStorage::ScanPart;

// Each takes up to some seconds; of a file with more damage than that, less can be hoped for.
constexpr std::size_t MaxRepairs = 8;

class Reader {
public:
    Reader(const SalvageOptions& options, std::uint64_t size)
        : progress_(options.progress), size_(size), repairsLeft_(options.repair ? MaxRepairs : 0) {
        left_.segments.emplace_back();
    }

    void Take(const ScannedPart& part) {
        switch (part.kind) {
            case ScanPart::Header: Complain(part); break;
            case ScanPart::Trailer: Complain(part); break;
            case ScanPart::Block: TakeBlock(part); break;
            case ScanPart::Unreadable: TakeUnreadable(part); break;
        }
    }

    Segments TakeSegments() { return std::move(left_); }

private:
    void Complain(const ScannedPart& part) {
        if (left_.result.Ok()) {
            left_.result = part.state;
        }
    }

    void Append(const std::uint8_t* items, std::size_t size) {
        left_.segments.back().insert(left_.segments.back().end(), items, items + size);
    }

    void Break(const ScannedPart& part) {
        Complain(part);
        left_.segments.emplace_back();
    }

    void TakeBlock(const ScannedPart& part) {
        if (part.state.Ok()) {
            Append(part.GetItems(), part.GetItemSize());
        } else if (!TryRepair(part)) {
            Break(part);
        }
    }

    /// What follows the trailer is no part of the tree.
    void TakeUnreadable(const ScannedPart& part) {
        if (part.state.code == KivStorage::StorageTrailingBytes) {
            Complain(part);
        } else if (!TryRepair(part)) {
            Break(part);
        }
    }

    bool TryRepair(const ScannedPart& part) {
        if (repairsLeft_ == 0) {
            return false;
        }
        repairsLeft_ -= 1;
        KivStorage::RepairProgress progress;
        if (progress_) {
            progress = [&](std::size_t tried) { progress_(part.offset + tried, size_); };
        }
        const KivStorage::RepairedBlock repaired = KivStorage::RepairBlock(part, progress);
        if (!repaired.found) {
            return false;
        }
        const std::size_t at = repaired.changed;
        left_.repairs.push_back({part.offset + at, part.bytes[at], repaired.bytes[at]});
        Append(repaired.bytes.data() + 4, repaired.bytes.size() - 12);
        return true;
    }

    Segments left_;
    const Progress& progress_;
    std::uint64_t size_;  // of the file
    std::size_t repairsLeft_;
};

}  // namespace

Segments ReadSegments(KivStorage::FileScanner& scanner, const SalvageOptions& options) {
    Reader reader(options, scanner.GetSize());
    ScannedPart part;
    while (scanner.Next(part)) {
        // Of other data nothing can be read.
        if (part.state.code == KivStorage::StorageNotASavedTree ||
            part.state.code == KivStorage::StorageUnknownVersion) {
            Segments foreign;
            foreign.result = part.state;
            return foreign;
        }
        reader.Take(part);
        if (options.progress) {
            options.progress(part.offset + part.size, scanner.GetSize());
        }
    }
    Segments left = reader.TakeSegments();
    if (!scanner.GetError().Ok()) {
        left.result = scanner.GetError();
    }
    return left;
}

}  // namespace KivInspect
