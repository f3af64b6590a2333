#pragma once

#include <cstddef>
#include <filesystem>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Tree.h>
#include <KivStorage/Export.h>
#include <KivStorage/Options.h>
#include <KivStorage/Result.h>

namespace KivStorage {

/// What a load answers: the tree, or null and the reason.
struct LoadResult {
    Result result;
    KivBase::ReturnPtrI<KivGenerics::Tree> tree;
};

/// Loads a tree from a file into a new tree of its own forest, which is handed over only when it is whole: every block
/// verified, nothing left over, the trailer's totals right. Never throws.
KIV_STORAGE_EXPORT LoadResult LoadTree(const std::filesystem::path& path, const LoadOptions& options = {}) noexcept;

/// The same from memory.
KIV_STORAGE_EXPORT LoadResult LoadTreeFromMemory(const void* bytes, std::size_t count,
                                                 const LoadOptions& options = {}) noexcept;

}  // namespace KivStorage
