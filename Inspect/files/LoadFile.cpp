#include <KivInspect/LoadFile.h>

#include <KivStorage/LoadTree.h>

namespace KivInspect {

Form DetectForm(std::string_view firstBytes) noexcept {
    (void)firstBytes;
    return Form::Binary;
}

LoadedFile LoadFile(const std::filesystem::path& path, const LoadFileOptions& options) noexcept {
    KivStorage::LoadResult loaded = KivStorage::LoadTree(path, options.load);
    return {std::move(loaded.result), Form::Binary, std::move(loaded.tree)};
}

LoadedFile LoadBytes(std::string_view bytes, const std::string& place, const LoadFileOptions& options) noexcept {
    (void)place;
    KivStorage::LoadResult loaded = KivStorage::LoadTreeFromMemory(bytes.data(), bytes.size(), options.load);
    return {std::move(loaded.result), Form::Binary, std::move(loaded.tree)};
}

}  // namespace KivInspect
