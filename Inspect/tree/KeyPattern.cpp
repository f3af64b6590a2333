#include <KivInspect/KeyPattern.h>

#include <algorithm>

#include <KivInspect/Key.h>

namespace KivInspect {
namespace {

/// The text up to the next colon that no backslash stands before; it is taken off the front, colon included.
std::string TakeStep(std::string_view& rest) {
    std::size_t end = 0;
    while (end < rest.size() && rest[end] != ':') {
        end += rest[end] == '\\' && end + 1 < rest.size() ? 2 : 1;
    }
    std::string step(rest.substr(0, end));
    rest.remove_prefix((std::min)(end + 1, rest.size()));
    return step;
}

}  // namespace

KeyPattern::KeyPattern(std::string_view pattern) {
    if (pattern == ":") {
        return;
    }
    while (!pattern.empty()) {
        Step step;
        step.text = TakeStep(pattern);
        step.any = step.text == "*" || step.text == "**";
        step.deep = step.text == "**";
        steps_.push_back(step);
    }
}

/// Where "**" may be next, what follows it may be, too.
void KeyPattern::SkipDeep(State& state) const {
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        if (state[i] && steps_[i].deep) {
            state[i + 1] = true;
        }
    }
}

KeyPattern::State KeyPattern::Begin() const {
    State state(steps_.size() + 1);
    state[0] = true;
    SkipDeep(state);
    return state;
}

KeyPattern::State KeyPattern::Advance(const State& state, const KivGenerics::Node* parent, int index,
                                      const Names* names) const {
    std::string named;
    AppendStep(named, parent, index, names);
    named.pop_back();
    const std::string number = std::to_string(index);
    State next(state.size());
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        if (state[i] && (steps_[i].any || steps_[i].text == number || steps_[i].text == named)) {
            next[steps_[i].deep ? i : i + 1] = true;
        }
    }
    SkipDeep(next);
    return next;
}

bool KeyPattern::MayGoOn(const State& state) const {
    return std::find(state.begin(), state.end() - 1, true) != state.end() - 1;
}

}  // namespace KivInspect
