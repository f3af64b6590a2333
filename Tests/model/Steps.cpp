#include "model/Steps.h"

using namespace KivGenerics;

namespace Model {
namespace {

constexpr int kMostNodes = 60;

std::vector<Operation> AllOperations() {
    std::vector<Operation> all;
    for (const auto* each :
         {&kTreeOperations, &kNodeOperations, &kCompositeOperations, &kValueOperations, &kWalkOperations}) {
        for (const Operation& operation : *each) {
            all.insert(all.end(), static_cast<std::size_t>(operation.weight), operation);
        }
    }
    return all;
}

}  // namespace

NodeType Choices::AnyType() {
    // A composite more often than by chance, so that trees get some depth; now and then none of the twelve kinds.
    const std::uint32_t choice = Below(32);
    if (choice == 31) {
        return NodeType(Below(2) * 13);
    }
    return choice < 24 ? NodeType(1 + choice % 12) : (choice % 2 == 0 ? NodeTypeMap : NodeTypeVector);
}

SemanticTag Choices::AnyTag() {
    // Of 8, 8, 4, 13, 1, 3, 16, 1 and again 8 slots.
    constexpr int kTags[] = {0, 1, 2, 100, 107, 101, 4107, 4097, -5, 0x7FFFFFFF, -0x7FFFFFFF - 1, 4213};
    return SemanticTag(kTags[Below(12)]);
}

EnumOrvGenericsTemporality Choices::AnyTemporality() {
    const std::uint32_t choice = Below(16);
    return EnumOrvGenericsTemporality(choice == 15 ? 0 : 1 + choice % 4);
}

int Choices::AnyIndex(const Item& composite) {
    const std::uint32_t choice = Below(64);
    if (composite.IsVector()) {
        return choice == 63 ? -1 : static_cast<int>(choice) % (CountChildren(composite) + (choice < 60 ? 1 : 2));
    }
    // Among them both ends of what a key of one byte, of two and of four holds.
    constexpr int kRare[] = {-1, -7, 0x20000000, 0x1FFFFFFF, 100, 70000, 63, 64, 5000, 8191, 8192};
    return choice >= 53 ? kRare[choice - 53] : static_cast<int>(choice % 11);
}

std::int32_t Choices::AnyNumber() {
    constexpr std::int32_t kRare[] = {0x7FFFFFFF, -0x7FFFFFFF - 1, -1, 1000};
    const std::uint32_t choice = Below(16);
    return choice >= 12 ? kRare[choice - 12] : static_cast<std::int32_t>(choice % 4);
}

Text Choices::AnyText() {
    Text text;
    for (std::uint32_t length = Below(12); length > 0; --length) {
        text += u"ab\0\uFFFFc"[(length * 7 + Below(5)) % 5];
    }
    return text.size() == 11 ? Text(40, u'x') : text;
}

Id Choices::AnyId() {
    const std::uint32_t choice = Below(5);
    return {choice == 1, choice == 2 ? 0x10002U : 0, choice == 3 ? 0x80000000U : 0, choice == 4};
}

// One of the first tree that has any, beginning with a tree that is chosen.
Item* Choices::From(bool (*suits)(const Item& item)) {
    const std::uint32_t first = Below(World::kTrees);
    const std::uint32_t choice = Below(0x10000);
    for (std::uint32_t i = 0; i < World::kTrees; ++i) {
        const std::vector<Item*>& items = world_.At(first + i).items;
        for (std::size_t j = 0; j < items.size(); ++j) {
            Item* const item = items[(choice + j) % items.size()];
            if (suits(*item)) {
                return item;
            }
        }
    }
    return nullptr;
}

Item* Choices::AnyItem() {
    return From([](const Item&) { return true; });
}

Item* Choices::AnyLeaf() {
    return From([](const Item& item) { return !item.IsComposite(); });
}

Item* Choices::AnyVector() {
    return From([](const Item& item) { return item.IsVector(); });
}

Item* Choices::AnyMap() {
    return From([](const Item& item) { return item.IsMap(); });
}

Item* Choices::AnyComposite() {
    return From([](const Item& item) { return item.IsComposite(); });
}

bool HasRoom(World& world, const Item& target, int more) {
    return static_cast<int>(world.Of(target).items.size()) + more <= kMostNodes;
}

const Operation& OperationOf(const Step& step) {
    static const std::vector<Operation> all = AllOperations();
    return all[step.numbers[0] % all.size()];
}

void Run(const std::vector<Step>& steps) {
    World world;
    for (const Step& step : steps) {
        Choices choices(world, step);
        OperationOf(step).run(world, choices);
        world.CheckAll();
    }
}

}  // namespace Model
