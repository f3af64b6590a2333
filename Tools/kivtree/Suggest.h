#pragma once

#include <string>
#include <vector>

namespace KivTree {

/// " Did you mean 'WORD'?" with the one of `known` that is most like `word`; nothing when none is like it.
std::string Suggestion(const std::string& word, const std::vector<std::string>& known);

}  // namespace KivTree
