#include <KivInspect/Regex.h>

#include <algorithm>

#include "text/RegexParser.h"
#include "text/Utf.h"

namespace KivInspect {
namespace {

/// The other case of an ASCII letter, or the character itself: what "ignore case" goes by.
char32_t OtherCase(char32_t c) noexcept {
    const bool lower = U'a' <= c && c <= U'z';
    const bool upper = U'A' <= c && c <= U'Z';
    return lower || upper ? c ^ 0x20U : c;
}

}  // namespace

Regex::Compiled Regex::Compile(std::string_view utf8, bool ignoreCase) {
    Compiled compiled;
    compiled.regex.ignoreCase_ = ignoreCase;
    compiled.problem = RegexParser(utf8, compiled.regex).Parse();
    return compiled;
}

bool Regex::Holds(const Class& group, char32_t c) const noexcept {
    const auto inside = [&group](char32_t each) {
        return std::any_of(group.ranges.begin(), group.ranges.end(),
                           [each](const Range& range) { return range.first <= each && each <= range.last; });
    };
    return (inside(c) || (ignoreCase_ && inside(OtherCase(c)))) != group.negated;
}

/// Adds a step to the states, or what it leads to without a character.
void Regex::Follow(std::size_t step, bool atBegin, bool atEnd, std::vector<std::size_t>& states,
                   std::vector<bool>& seen) const {
    std::vector<std::size_t> pending = {step};
    while (!pending.empty()) {
        const std::size_t each = pending.back();
        pending.pop_back();
        if (seen[each]) {
            continue;
        }
        seen[each] = true;
        const Step& at = steps_[each];
        switch (at.kind) {
            case Step::Kind::Split: pending.push_back(at.second); [[fallthrough]];
            case Step::Kind::Jump: pending.push_back(at.first); break;
            case Step::Kind::Begin:
            case Step::Kind::End:
                if (at.kind == Step::Kind::Begin ? atBegin : atEnd) {
                    pending.push_back(each + 1);
                }
                break;
            case Step::Kind::Class:
            case Step::Kind::Match: states.push_back(each); break;
        }
    }
}

bool Regex::Matches(const char16_t* units, std::size_t count) const {
    std::vector<std::size_t> states;
    std::vector<std::size_t> next;
    std::vector<bool> seen(steps_.size());
    Follow(0, true, count == 0, states, seen);
    for (std::size_t i = 0;;) {
        const auto matches = [this](std::size_t state) { return steps_[state].kind == Step::Kind::Match; };
        if (std::any_of(states.begin(), states.end(), matches)) {
            return true;
        }
        if (i == count) {
            return false;
        }
        const char32_t c = TakeCharacter(units, count, i);
        next.clear();
        std::fill(seen.begin(), seen.end(), false);
        for (const std::size_t state : states) {
            if (Holds(classes_[steps_[state].first], c)) {
                Follow(state + 1, false, i == count, next, seen);
            }
        }
        // A match may begin at every character.
        Follow(0, false, i == count, next, seen);
        states.swap(next);
    }
}

}  // namespace KivInspect
