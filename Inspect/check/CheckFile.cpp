#include <KivInspect/Check.h>

namespace KivInspect {
namespace {

/// Pieces of one damage that follow each other are one.
void Add(std::vector<Damage>& damage, const KivStorage::ScannedPart& part) {
    if (part.kind == KivStorage::ScanPart::Unreadable && !damage.empty() &&
        damage.back().offset + damage.back().size == part.offset && part.size > 0 && damage.back().size > 0) {
        damage.back().size += part.size;
        return;
    }
    damage.push_back({part.offset, part.size, part.state.sentence});
}

}  // namespace

FileCheck CheckFile(KivStorage::FileScanner& scanner, const Progress& progress) {
    FileCheck check;
    KivStorage::ScannedPart part;
    while (scanner.Next(part)) {
        check.blocks += part.kind == KivStorage::ScanPart::Block ? 1 : 0;
        if (!part.state.Ok()) {
            Add(check.damage, part);
            if (check.result.Ok()) {
                check.result = part.state;
            }
        }
        if (progress) {
            progress(part.offset + part.size, scanner.GetSize());
        }
        // Of other data every byte would be a damage.
        if (part.state.code == KivStorage::StorageNotASavedTree ||
            part.state.code == KivStorage::StorageUnknownVersion) {
            break;
        }
    }
    if (!scanner.GetError().Ok()) {
        check.result = scanner.GetError();
    }
    return check;
}

}  // namespace KivInspect
