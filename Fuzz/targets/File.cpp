#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>

#include "targets/Require.h"
#include "targets/Seal.h"
#include "targets/Targets.h"
#include "targets/TreeUse.h"

namespace KivFuzz {
namespace {

/// What every load must answer, whatever it was given.
void CheckAnswer(const KivStorage::LoadResult& loaded) {
    Require(loaded.result.Ok() == static_cast<bool>(loaded.tree), "A refused load hands over a tree.");
    Require(loaded.result.Ok() == loaded.result.sentence.empty(), "A refusal has no sentence.");
    if (loaded.tree) {
        UseTree(*loaded.tree);
    }
}

/// The same bytes in a file must be taken or refused as they are in memory, and a tree be saved over them.
void GoThroughFile(const Bytes& bytes, const KivStorage::LoadResult& expected) {
    static const StorageTest::Folder folder;
    const auto path = folder / "tree.kiv";
    StorageTest::WriteFile(path, bytes);
    const auto loaded = KivStorage::LoadTree(path);
    Require(loaded.result.code == expected.result.code, "A file is taken otherwise than the same bytes in memory.");
    if (loaded.tree && KivStorage::SaveTree(loaded.tree.Get(), path).Ok()) {
        const auto again = KivStorage::LoadTree(path);
        Require(again.tree && IsSameAsSaved(*loaded.tree, *again.tree, false), "A saved file comes back otherwise.");
    }
}

void Load(const Bytes& bytes) {
    const auto loaded = KivStorage::LoadTreeFromMemory(bytes.data(), bytes.size());
    CheckAnswer(loaded);
    // A file costs ten times what memory does.
    if (bytes.size() % 16 == 0) {
        GoThroughFile(bytes, loaded);
    }
}

}  // namespace

void RunFile(const std::uint8_t* bytes, std::size_t count) {
    Bytes file(bytes, bytes + count);
    Load(file);
    // Nearly every change breaks a checksum: only with these made right is anything read behind them.
    SealInPlace(file);
    Load(file);
}

}  // namespace KivFuzz
