#pragma once

#include <string>
#include <string_view>

#include <KivGenerics/Tree.h>
#include <KivStorage/LoadTree.h>

namespace KivFuzz {

std::string TextOf(const KivGenerics::Tree& tree);
std::string JsonOf(const KivGenerics::Tree& tree);
KivStorage::LoadResult LoadText(std::string_view text);
KivStorage::LoadResult LoadJson(std::string_view text);

/// What every read of a form must answer: a tree or a sentence that names the place, and memory in proportion to the bytes. The
/// tree must be sound, and come back from both forms as it was.
void CheckForm(KivStorage::LoadResult (*load)(std::string_view text), std::string_view text);

}  // namespace KivFuzz
