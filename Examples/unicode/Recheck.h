#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <KivGenerics/Tree.h>

namespace UnicodeExample {

struct Recheck {
    int codePoints = 0;                    ///< how many were looked up
    int values = 0;                        ///< how many values of them and of the totals were compared
    std::vector<std::string> differences;  ///< one line for each that differs
};

/// Reads the text files again, with a parser that shares nothing with the one that built the tree, and compares what
/// they say of some hundred code points, and of the whole, with what the tree answers by key. Throws DataError.
Recheck CheckAgainstFiles(const KivGenerics::Tree& tree, const std::filesystem::path& directory);

}  // namespace UnicodeExample
