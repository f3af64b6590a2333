#include <KivInspect/Names.h>

#include <utility>

namespace KivInspect {

using KivGenerics::SemanticTag;

namespace {

/// Makes `number` what a name stands for, unless a smaller one does already.
template <class Index, class Number>
void Take(Index& index, const std::string& name, Number number) {
    const auto place = index.emplace(name, number).first;
    if (number < place->second) {
        place->second = number;
    }
}

}  // namespace

void Names::SetTag(SemanticTag tag, std::string name) {
    Take(byName_, name, tag);
    tags_[tag].name = std::move(name);
}

void Names::SetIndex(SemanticTag tag, int index, std::string name) {
    OfTag& of = tags_[tag];
    Take(of.byName, name, index);
    of.byIndex[index] = std::move(name);
}

const std::string* Names::FindTag(SemanticTag tag) const {
    const auto found = tags_.find(tag);
    if (found == tags_.end()) {
        return nullptr;
    }
    const std::optional<std::string>& name = found->second.name;
    return name ? &*name : nullptr;
}

const std::string* Names::FindIndex(SemanticTag tag, int index) const {
    const auto found = tags_.find(tag);
    if (found == tags_.end()) {
        return nullptr;
    }
    const auto name = found->second.byIndex.find(index);
    return name != found->second.byIndex.end() ? &name->second : nullptr;
}

std::optional<SemanticTag> Names::FindTagByName(std::string_view name) const {
    const auto found = byName_.find(name);
    return found != byName_.end() ? std::optional<SemanticTag>(found->second) : std::nullopt;
}

std::optional<int> Names::FindIndexByName(SemanticTag tag, std::string_view name) const {
    const auto of = tags_.find(tag);
    if (of == tags_.end()) {
        return std::nullopt;
    }
    const auto found = of->second.byName.find(name);
    return found != of->second.byName.end() ? std::optional<int>(found->second) : std::nullopt;
}

}  // namespace KivInspect
