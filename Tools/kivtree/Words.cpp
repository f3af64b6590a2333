#include "kivtree/Words.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <vector>

#include <KivGenerics/ToText.h>

#include "kivtree/Context.h"
#include "kivtree/Suggest.h"

namespace KivTree {
namespace {

using namespace KivGenerics;

std::optional<std::int32_t> ParseNumber(const std::string& word) {
    std::int32_t number = 0;
    const auto read = std::from_chars(word.data(), word.data() + word.size(), number);
    const bool whole = read.ec == std::errc() && read.ptr == word.data() + word.size();
    return whole ? std::optional<std::int32_t>(number) : std::nullopt;
}

std::string Lower(std::string word) {
    for (char& c : word) {
        c = 'A' <= c && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    }
    return word;
}

}  // namespace

EnumOrvGenericsTemporality ParseTemporality(const std::string& word) {
    std::vector<std::string> names;
    for (std::int32_t t = TemporalityReserved; t <= TemporalityTemporary; ++t) {
        const auto temporality = static_cast<EnumOrvGenericsTemporality>(t);
        names.emplace_back(ToText(temporality));
        if (word == names.back()) {
            return temporality;
        }
    }
    if (const auto number = ParseNumber(word)) {
        return static_cast<EnumOrvGenericsTemporality>(*number);
    }
    throw Trouble("'" + word + "' is no temporality." + Suggestion(word, names));
}

NodeType ParseKind(const std::string& word) {
    std::vector<std::string> names;
    for (std::int32_t kind = NodeTypeInteger; kind <= NodeTypeInteger64; ++kind) {
        names.emplace_back(ToText(static_cast<NodeType>(kind)));
        if (Lower(word) == Lower(names.back())) {
            return static_cast<NodeType>(kind);
        }
    }
    throw Trouble("'" + word + "' is no kind of node." + Suggestion(word, names));
}

SemanticTag ParseTag(const std::string& word, const KivInspect::Names& names) {
    if (const auto number = ParseNumber(word)) {
        return static_cast<SemanticTag>(*number);
    }
    const auto tag = names.FindTagByName(word);
    if (!tag) {
        throw Trouble("'" + word + "' is neither a number nor the name of a tag in the dictionary.");
    }
    return *tag;
}

}  // namespace KivTree
