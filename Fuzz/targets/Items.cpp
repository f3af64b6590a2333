#include <KivGenerics/Exception.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/MemoryReadStream.h>

#include "targets/Input.h"
#include "targets/PeakBuffer.h"
#include "targets/Require.h"
#include "targets/Seal.h"
#include "targets/Targets.h"
#include "targets/TreeUse.h"

namespace KivFuzz {
namespace {

constexpr std::size_t kMostBytesPerByte = 64;
// A tree alone, its forest and its first nodes; so far below a block that small inputs are measured, too.
constexpr std::size_t kBytesForAnyTree = 4096;

KivStorage::LoadOptions TakeOptions(Input& input) {
    KivStorage::LoadOptions options;
    const std::uint8_t choice = input.TakeByte();
    if ((choice & 1) != 0) {
        options.limits.nesting = input.TakeByte();
    }
    if ((choice & 2) != 0) {
        options.limits.stringUnits = input.TakeByte();
    }
    if ((choice & 4) != 0) {
        options.limits.totalBytes = input.TakeShort();
    }
    return options;
}

/// As LoadTreeFromMemory, but the tree can be looked at after a failure, too.
void LoadIntoOwnTree(const Bytes& file, const KivStorage::LoadOptions& options) {
    const auto stream = KivStorage::MemoryReadStream::Create(file.data(), file.size(), options.limits);
    const auto tree = KivGenerics::CreateGenericTree(options.objectType);
    try {
        tree->LoadFromStream(stream.Get());
    } catch (const KivGenerics::Exception&) {
        // A tree may refuse what it is told to hold. What was read up to there stays, and must be sound.
    }
    UseTree(*tree);
}

}  // namespace

void RunItems(const std::uint8_t* bytes, std::size_t count) {
    Input input(bytes, count);
    const KivStorage::LoadOptions options = TakeOptions(input);
    const std::size_t blockPayload = std::size_t{input.TakeByte()} + 1;
    const std::size_t itemBytes = input.GetCount();
    const Bytes items(input.GetBytes(), input.GetBytes() + itemBytes);
    const Bytes file = StorageTest::Frame(items, CountItems(items.data(), itemBytes), blockPayload);
    KivStorage::LoadResult loaded;
    {
        const PeakBuffers buffers;
        loaded = KivStorage::LoadTreeFromMemory(file.data(), file.size(), options);
        Require(buffers.GetInUse() <= kMostBytesPerByte * itemBytes + kBytesForAnyTree,
                "A load holds more than 64 bytes for each byte that it read.");
    }
    Require(loaded.result.Ok() == static_cast<bool>(loaded.tree), "A refused load hands over a tree.");
    if (loaded.tree) {
        UseTree(*loaded.tree);
        CheckRoundTrip(*loaded.tree, blockPayload % 2 == 0);
    } else {
        LoadIntoOwnTree(file, options);
    }
}

}  // namespace KivFuzz
