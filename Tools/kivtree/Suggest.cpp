#include "kivtree/Suggest.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace KivTree {
namespace {

/// How many letters have to be added, taken away or replaced to make one word of the other.
std::size_t Distance(const std::string& from, const std::string& to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (const char letter : from) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (letter == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string Suggestion(const std::string& word, const std::vector<std::string>& known) {
    // Something of the word must be right.
    std::size_t least = std::min(word.size(), word.size() / 2 + 2);
    const std::string* best = nullptr;
    for (const std::string& each : known) {
        const std::size_t distance = Distance(word, each);
        if (distance < least) {
            least = distance;
            best = &each;
        }
    }
    return best != nullptr ? " Did you mean '" + *best + "'?" : "";
}

}  // namespace KivTree
