#include <memory>
#include <random>
#include <set>
#include <utility>

#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/Vector.h>

#include "InstructionCounts.h"

using namespace KivGenerics;

namespace {

struct Form {
    const char* name;
    std::size_t sets;
    std::size_t elements;  // of each
};

constexpr Form kForms[] = {
    {"sets-of-8", 250, 8},
    {"sets-of-64", 32, 64},
    {"set-of-10000", 1, 10'000},
};

using Values = std::vector<std::vector<std::int32_t>>;

/// Distinct values in random order, the same everywhere: the standard prescribes what the generator yields.
Values ChooseValues(const Form& form) {
    std::mt19937 random;
    Values values(form.sets);
    for (auto& ofSet : values) {
        std::set<std::int32_t> chosen;
        while (ofSet.size() < form.elements) {
            const auto value = static_cast<std::int32_t>(random() >> 1U);
            if (chosen.insert(value).second) {
                ofSet.push_back(value);
            }
        }
    }
    return values;
}

/// Half of them are there, in another order than they were added.
Values ChooseQuestions(const Values& values) {
    std::mt19937 random;
    Values questions = values;
    for (auto& ofSet : questions) {
        for (std::size_t i = 0; i < ofSet.size(); ++i) {
            std::swap(ofSet[i], ofSet[random() % ofSet.size()]);
        }
        for (std::size_t i = 0; i < ofSet.size(); i += 2) {
            ofSet[i] = static_cast<std::int32_t>(random() >> 1U);
        }
    }
    return questions;
}

/// Chosen only when they are used: that takes longer than to use them.
struct Chosen {
    void Choose(const Form& form) {
        if (values.empty()) {
            values = ChooseValues(form);
            questions = ChooseQuestions(values);
        }
    }

    Values values;
    Values questions;
};

Vector& GetList(const Input& input) {
    return *node_cast<Vector>(node_cast<Map>(input.tree->GetRoot())->Get(0));
}

void MakeSets(Input& input, std::size_t count) {
    input.tree = NewTree();
    node_cast<Map>(input.tree->NewRoot(NodeTypeMap))->NewNode(0, NodeTypeVector);
    for (std::size_t i = 0; i < count; ++i) {
        GetList(input).Add(NodeTypeIntegerSet);
    }
}

/// Shows each value with the set it is meant for.
template <class Use>
void ForEachValue(const Input& input, const Values& values, Use use) {
    const Vector& list = GetList(input);
    for (std::size_t i = 0; i < values.size(); ++i) {
        auto& set = *static_cast<IntegerSet*>(list.GetNV(static_cast<int>(i)));
        for (const std::int32_t value : values[i]) {
            use(set, value);
        }
    }
}

void AddAll(Input& input, const Values& values) {
    ForEachValue(input, values, [](IntegerSet& set, std::int32_t value) { set.Add(value); });
}

void AskAll(Input& input, const Values& questions) {
    std::int64_t present = 0;
    ForEachValue(input, questions,
                 [&present](const IntegerSet& set, std::int32_t value) { present += set.Exists(value) ? 1 : 0; });
    Keep(present);
}

}  // namespace

std::vector<Count> ListSetCounts() {
    std::vector<Count> counts;
    for (const Form& form : kForms) {
        const auto chosen = std::make_shared<Chosen>();
        const auto getUnits = [size = form.sets * form.elements] { return size; };
        const auto makeEmpty = [&form, chosen](Input& input) {
            chosen->Choose(form);
            MakeSets(input, form.sets);
        };
        const auto add = [chosen](Input& input) { AddAll(input, chosen->values); };
        const auto fill = [makeEmpty, add](Input& input) {
            makeEmpty(input);
            add(input);
        };
        counts.push_back({"add", form.name, getUnits, makeEmpty, add});
        counts.push_back(
            {"contains", form.name, getUnits, fill, [chosen](Input& input) { AskAll(input, chosen->questions); }});
        ListCommonCounts(counts, form.name, fill, getUnits);
    }
    return counts;
}
