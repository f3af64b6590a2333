#include <KivInspect/Key.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

#include <KivGenerics/Composite.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivInspect/ValueText.h>

namespace KivInspect {
namespace {

using KivGenerics::Composite;
using KivGenerics::Map;
using KivGenerics::Node;
using KivGenerics::node_cast;

bool IsNumber(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return '0' <= c && c <= '9'; });
}

/// Takes one step off the front of a key, its escapes undone; `escaped` tells whether there were any.
std::string TakeStep(std::string_view& key, bool& escaped) {
    std::string step;
    escaped = false;
    while (!key.empty()) {
        const char c = key.front();
        key.remove_prefix(1);
        if (c == ':') {
            break;
        }
        if (c == '\\' && !key.empty()) {
            escaped = true;
            step += key.front();
            key.remove_prefix(1);
        } else {
            step += c;
        }
    }
    return step;
}

/// The index that a step means, or nothing.
std::optional<int> IndexOf(const std::string& step, bool escaped, const Node* parent, const Names* names) {
    if (!escaped && IsNumber(step)) {
        int index = 0;
        const auto read = std::from_chars(step.data(), step.data() + step.size(), index);
        return read.ec == std::errc() ? std::optional<int>(index) : std::nullopt;
    }
    const Map* const map = node_cast<Map>(parent);
    return map != nullptr && names != nullptr ? names->FindIndexByName(map->GetSemanticTagNV(), step) : std::nullopt;
}

std::string Called(const std::string& key) {
    return key.empty() ? "the root" : "\"" + key + "\"";
}

}  // namespace

void AppendStep(std::string& key, const Node* parent, int index, const Names* names) {
    const Map* const map = names != nullptr ? node_cast<Map>(parent) : nullptr;
    const std::string* const name = map != nullptr ? names->FindIndex(map->GetSemanticTagNV(), index) : nullptr;
    if (name == nullptr || name->empty() || IsNumber(*name)) {
        AppendValue(key, std::int32_t{index});
    } else {
        for (const char c : *name) {
            key += c == ':' || c == '\\' ? "\\" : "";
            key += c;
        }
    }
    key += ':';
}

std::string GetKey(const Node* node, const Names* names) {
    std::vector<const Node*> path;
    for (; node != nullptr && node->GetParent() != nullptr; node = node->GetParent()) {
        path.push_back(node);
    }
    std::string key;
    for (auto step = path.rbegin(); step != path.rend(); ++step) {
        AppendStep(key, (*step)->GetParent(), (*step)->GetIndex(), names);
    }
    return key;
}

FoundNode FindNode(const KivGenerics::Tree* tree, std::string_view key, const Names* names) {
    FoundNode found{tree->GetRoot(), {}};
    if (found.node == nullptr) {
        return {nullptr, "The tree is empty."};
    }
    if (key == ":") {
        return found;
    }
    std::string reached;
    while (!key.empty()) {
        bool escaped = false;
        const std::string step = TakeStep(key, escaped);
        Composite* const composite = node_cast<Composite>(found.node);
        if (composite == nullptr) {
            return {nullptr, Called(reached) + " is a value: nothing stands below it."};
        }
        const std::optional<int> index = IndexOf(step, escaped, composite, names);
        found.node = index ? composite->Get(*index) : nullptr;
        if (found.node == nullptr) {
            return {nullptr, Called(reached) + " has no child \"" + step + "\"."};
        }
        AppendStep(reached, composite, *index, names);
    }
    return found;
}

}  // namespace KivInspect
