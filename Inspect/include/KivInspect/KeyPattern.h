#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <KivGenerics/Node.h>
#include <KivInspect/Names.h>

namespace KivInspect {

/// A pattern of keys: a key in which a step may be "*", any one step, or "**", any number of steps, also none. Steps are numbers
/// or names, as in keys.
class KeyPattern {
public:
    explicit KeyPattern(std::string_view pattern);

    /// How far a walk from the root has come in the pattern: the steps that may be next.
    using State = std::vector<bool>;

    State Begin() const;
    /// The state below `parent` at `index`.
    State Advance(const State& state, const KivGenerics::Node* parent, int index, const Names* names) const;
    /// True when the node that was reached matches.
    bool Accepts(const State& state) const { return state.back(); }
    /// True when something below the node that was reached may match.
    bool MayGoOn(const State& state) const;

private:
    struct Step {
        bool any = false;
        bool deep = false;
        std::string text;  // as in a key, without the colon
    };

    void SkipDeep(State& state) const;

    std::vector<Step> steps_;
};

}  // namespace KivInspect
