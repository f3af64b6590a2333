#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include <KivStorage/Export.h>
#include <KivStorage/Options.h>
#include <KivStorage/Result.h>

namespace KivGenerics {
class Tree;
}

namespace KivStorage {

/// The deepest tree that is saved at all, told to go on or not: saving needs stack for each level.
inline constexpr int MaxSaveNesting = 4000;

/// Saves a tree to a file, replacing an old one in one step: see FileWriteStream.
///
/// First looks for what a save would lose or alter (FindUnsavedParts) and, unless told to go on, refuses with
/// StorageUnsavedParts before anything is written.
///
/// A success leaves the tree writable, even if it was read-only before. A failure while the tree was being written
/// leaves it read-only; the next successful save, to wherever, makes it writable again. A refusal changes nothing.
/// Never throws.
KIV_STORAGE_EXPORT Result SaveTree(KivGenerics::Tree* tree, const std::filesystem::path& path,
                                   const SaveOptions& options = {}) noexcept;

/// The same into memory; `bytes` is replaced on success and untouched otherwise.
KIV_STORAGE_EXPORT Result SaveTreeToMemory(KivGenerics::Tree* tree, std::vector<std::uint8_t>& bytes,
                                           const SaveOptions& options = {}) noexcept;

}  // namespace KivStorage
