#include <KivInspect/Find.h>

#include <algorithm>
#include <vector>

#include <KivBase/Utf.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivInspect/ValueText.h>

namespace KivInspect {
namespace {

using namespace KivGenerics;

bool IsText(const char16_t* units, std::size_t count, const std::string& value) {
    return KivBase::ToUtf8(units, count) == value;
}

/// Whether one of the elements in "{a, b}" is `value`; none but those of texts has a comma in it.
bool HasElement(const std::string& elements, const std::string& value) {
    return (", " + elements.substr(1, elements.size() - 2) + ", ").find(", " + value + ", ") != std::string::npos;
}

bool HasValue(Node* node, const std::string& value) {
    if (IsCompositeType(node->GetType())) {
        return false;
    }
    if (const String* const text = node_cast<String>(node);
        text != nullptr && IsText(text->Get(), text->GetLength(), value)) {
        return true;
    }
    if (const StringSet* const set = node_cast<StringSet>(node)) {
        return std::any_of(set->Get().begin(), set->Get().end(), [&value](const KivBase::WString& element) {
            return IsText(element.data(), element.size(), value);
        });
    }
    std::string text;
    AppendValue(text, node);
    const bool isSet = NodeTypeIntegerSet <= node->GetType() && node->GetType() <= NodeTypeDoubleSet;
    return text == value || (isSet && HasElement(text, value));
}

bool IsMatched(Node* node, const Regex& regex) {
    if (const String* const text = node_cast<String>(node)) {
        return regex.Matches(text->Get(), text->GetLength());
    }
    const StringSet* const set = node_cast<StringSet>(node);
    return set != nullptr &&
           std::any_of(set->Get().begin(), set->Get().end(), [&regex](const KivBase::WString& element) {
               return regex.Matches(element.data(), element.size());
           });
}

bool IsFound(Node* node, const FindQuery& query) {
    const Map* const map = node_cast<Map>(node);
    return (!query.kind || node->GetType() == *query.kind) &&
           (!query.tag || (map != nullptr && map->GetSemanticTagNV() == *query.tag)) &&
           (!query.temporality || node->GetTemporality() == *query.temporality) &&
           (!query.value || HasValue(node, *query.value)) && (!query.regex || IsMatched(node, *query.regex));
}

/// Keeps the state of the pattern for each node on the way down.
class PatternWalk {
public:
    PatternWalk(const KeyPattern& pattern, const Names* names) : pattern_(pattern), names_(names) {}

    /// Whether the node that the walk has come to matches; it skips what cannot match below.
    bool Accepts(Walk& walk) {
        const KeyPattern::State& state = Enter(walk.GetNode(), walk.GetDepth());
        if (!pattern_.MayGoOn(state)) {
            walk.SkipChildren();
        }
        return pattern_.Accepts(state);
    }

private:
    const KeyPattern::State& Enter(Node* node, int depth) {
        const auto level = static_cast<std::size_t>(depth);
        states_.resize(level);
        states_.push_back(depth == 0 ? pattern_.Begin()
                                     : pattern_.Advance(states_.back(), node->GetParent(), node->GetIndex(), names_));
        return states_.back();
    }

    const KeyPattern& pattern_;
    const Names* names_;
    std::vector<KeyPattern::State> states_;
};

}  // namespace

void Find(const Tree* tree, const FindQuery& query, const Names* names, const OnFound& onFound) {
    std::optional<PatternWalk> path;
    if (query.key) {
        path.emplace(*query.key, names);
    }
    Walk walk(tree->GetRoot());
    while (Node* const node = walk.Next()) {
        const bool matches = !path || path->Accepts(walk);
        if (matches && IsFound(node, query) && !onFound(node, walk)) {
            return;
        }
    }
}

}  // namespace KivInspect
