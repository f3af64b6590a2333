#include <memory>

#include <KivInspect/Annotate.h>
#include <KivInspect/Check.h>
#include <KivInspect/Info.h>
#include <KivInspect/Salvage.h>
#include <KivInspect/Statistics.h>
#include <KivInspect/Walk.h>
#include <KivStorage/FileScanner.h>
#include <KivStorage/LoadTree.h>

#include "targets/Require.h"
#include "targets/Seal.h"
#include "targets/TreeUse.h"
#include "targets/inspect/FormUse.h"
#include "targets/inspect/InspectTargets.h"

namespace KivFuzz {
namespace {

std::unique_ptr<KivStorage::FileScanner> Open(const Bytes& file) {
    return KivStorage::FileScanner::OpenMemory(file.data(), file.size());
}

std::uint64_t CountNodes(const KivGenerics::Tree& tree) {
    std::uint64_t count = 0;
    for (KivInspect::Walk walk(tree.GetRoot()); walk.Next() != nullptr;) {
        ++count;
    }
    return count;
}

/// What a load takes, every look at the bytes must call whole, and count the same.
void LookAtWhole(const Bytes& file, const KivGenerics::Tree& tree) {
    const auto info = KivInspect::ReadInfo(*Open(file));
    Require(info.result.Ok(), "A file that loads is called damaged.");
    Require(info.info.nodes == CountNodes(tree), "The nodes of a file are miscounted.");
    const auto statistics = KivInspect::ReadStatistics(*Open(file), 5);
    Require(statistics.result.Ok() && statistics.statistics.all.nodes == info.info.nodes,
            "The statistics of a file count other nodes.");
    KivInspect::StringSink lines;
    Require(KivInspect::Annotate(*Open(file), lines).Ok(), "A file that loads is annotated as damaged.");
    Require(KivInspect::CheckFile(*Open(file)).damage.empty(), "A file that loads is checked as damaged.");
}

/// Any bytes may be looked at.
void LookAtAny(const Bytes& file) {
    KivInspect::StringSink lines;
    KivInspect::WriteInfo(KivInspect::ReadInfo(*Open(file)).info, lines);
    const auto statistics = KivInspect::ReadStatistics(*Open(file), 5);
    KivInspect::WriteStatistics(statistics.statistics, 5, nullptr, lines);
    KivInspect::WriteTreemap(statistics.statistics, nullptr, lines);
    static_cast<void>(KivInspect::Annotate(*Open(file), lines));
    const auto checked = KivInspect::CheckFile(*Open(file));
    KivInspect::WriteCheck(&checked, nullptr, lines);
    Require(checked.result.Ok() == checked.damage.empty(), "Damage without a sentence, or a sentence without damage.");
}

void Look(const Bytes& file) {
    LookAtAny(file);
    const auto loaded = KivStorage::LoadTreeFromMemory(file.data(), file.size());
    if (loaded.tree) {
        LookAtWhole(file, *loaded.tree);
    }
    KivInspect::SalvageOptions options;
    options.repair = false;
    const auto salvaged = KivInspect::Salvage(*Open(file), options);
    KivInspect::StringSink lines;
    KivInspect::WriteSalvage(salvaged, lines);
    if (loaded.tree) {
        Require(salvaged.result.Ok() && salvaged.lost.empty(), "Of a file that loads something is lost.");
        Require(TextOf(*salvaged.tree) == TextOf(*loaded.tree), "A file that loads is salvaged otherwise.");
    } else if (salvaged.tree) {
        Require(!salvaged.result.Ok(), "A file that does not load is called whole.");
        UseTree(*salvaged.tree);
    }
}

}  // namespace

void RunScan(const std::uint8_t* bytes, std::size_t count) {
    Bytes file(bytes, bytes + count);
    // Nearly every change breaks a checksum, and behind that all looks alike.
    if (count % 4 == 0) {
        Look(file);
    }
    SealInPlace(file);
    Look(file);
}

}  // namespace KivFuzz
