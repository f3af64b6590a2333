#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <vector>

#include "model/World.h"

namespace Model {

/// One operation with all that has to be chosen for it, as plain numbers: whatever they are, they mean something, so that
/// any step may be left out and any number made smaller.
struct Step {
    std::array<std::uint16_t, 8> numbers{};
};

/// Reads a step's numbers one after the other, as choices.
class Choices {
public:
    Choices(World& world, const Step& step) : world_(world), step_(step) {}

    /// A number from 0 to n - 1.
    std::uint32_t Below(std::uint32_t n) { return step_.numbers[next_++ % step_.numbers.size()] % n; }
    bool OneIn(std::uint32_t n) { return Below(n) == n - 1; }
    Pair& AnyTree() { return world_.At(Below(World::kTrees)); }
    /// Null when there is none in any tree.
    Item* AnyItem();
    Item* AnyLeaf();
    Item* AnyVector();
    Item* AnyMap();
    Item* AnyComposite();
    KivGenerics::NodeType AnyType();
    KivGenerics::SemanticTag AnyTag();
    KivGenerics::EnumOrvGenericsTemporality AnyTemporality();
    /// A place for a child, now and then an impossible one.
    int AnyIndex(const Item& composite);
    std::int32_t AnyNumber();
    Text AnyText();
    Id AnyId();

private:
    Item* From(bool (*suits)(const Item& item));

    World& world_;
    const Step& step_;
    std::size_t next_ = 1;
};

struct Operation {
    const char* name;
    /// How often it is chosen, beside the others: what takes much away is chosen seldom, or trees would stay small.
    int weight;
    void (*run)(World& world, Choices& choices);
};

// The operations, by what they are about; each stands in one table, and once.
extern const std::vector<Operation> kTreeOperations;
extern const std::vector<Operation> kNodeOperations;
extern const std::vector<Operation> kCompositeOperations;
extern const std::vector<Operation> kValueOperations;
extern const std::vector<Operation> kWalkOperations;

const Operation& OperationOf(const Step& step);
/// Runs the steps from the beginning; throws Difference where the library does something else than the model.
void Run(const std::vector<Step>& steps);

/// Whether so many nodes more leave the trees small enough to be compared after every step.
bool HasRoom(World& world, const Item& target, int more);
inline KivGenerics::Node* TwinOf(const Item* item) {
    return item != nullptr ? item->twin : nullptr;
}

}  // namespace Model
