#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Tree.h>
#include <KivInspect/FileSource.h>
#include <KivStorage/Options.h>
#include <KivStorage/Result.h>

namespace KivInspect {

/// The forms that a tree is kept in.
enum class Form {
    Binary,  ///< as KivStorage saves it
    Text,    ///< lines of text
    Json,    ///< a JSON document
};

/// The form that begins with these bytes. What is neither of the other two counts as binary, whose reader says what is wrong.
Form DetectForm(std::string_view firstBytes) noexcept;

struct LoadFileOptions {
    KivStorage::LoadOptions load;
    Progress progress;
};

/// What a load answers: the tree, or null and the reason, and the form that was found.
struct LoadedFile {
    KivStorage::Result result;
    Form form = Form::Binary;
    KivBase::ReturnPtrI<KivGenerics::Tree> tree;
};

/// Loads a tree in whatever form it is kept. The tree is handed over only when it is whole. Never throws.
LoadedFile LoadFile(const std::filesystem::path& path, const LoadFileOptions& options = {}) noexcept;

/// The same from memory; `place` is how messages call it.
LoadedFile LoadBytes(std::string_view bytes, const std::string& place, const LoadFileOptions& options = {}) noexcept;

}  // namespace KivInspect
