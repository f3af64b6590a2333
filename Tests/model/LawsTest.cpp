// What holds of any trees: a copy is equal and shares nothing, comparing orders all nodes, and merging a node with itself
// changes nothing. What is kept on purpose breaks some of it, so trees with numbers that are none, with NUL in a text or
// with nodes that no walk shows are left out.

#include <cmath>
#include <set>
#include <string>
#include <vector>

#include <KivGenerics/Composite.h>
#include <gtest/gtest.h>

#include "model/Random.h"

using namespace KivGenerics;

namespace {

constexpr int kWorlds = 300;
constexpr int kStepsInWorld = 60;

bool IsPlainValue(const Model::Value& value) {
    if (const auto* const number = std::get_if<double>(&value)) {
        return !std::isnan(*number);
    }
    const auto* const text = std::get_if<Model::Text>(&value);
    return text == nullptr || text->find(u'\0') == Model::Text::npos;
}

bool IsPlain(const Model::Item& item) {
    bool plain = item.temporality != 0 && IsPlainValue(item.value);
    for (const Model::Item* child = Model::FindAfter(item, -1); child != nullptr && plain;
         child = Model::FindAfter(item, child->index)) {
        const bool alike = item.IsMap() || child->type == item.elements.front()->type;
        plain = alike && IsPlain(*child);
    }
    return plain;
}

void AddNodes(Node* node, std::set<const Node*>& nodes) {
    nodes.insert(node);
    if (IsCompositeType(node->GetType())) {
        auto* const composite = static_cast<Composite*>(node);
        for (Node* child = composite->GetNext(-1); child != nullptr; child = composite->GetNext(child->GetIndex())) {
            AddNodes(child, nodes);
        }
    }
}

int SignOf(int number) {
    return number < 0 ? -1 : (number > 0 ? 1 : 0);
}

int Order(const Model::Item* a, const Model::Item* b) {
    return SignOf(a->twin->Compare(b->twin, TemporalityTemporary, true));
}

class LawsTest : public testing::Test {
protected:
    /// Calls `check` with the plain nodes of many worlds, which it may change.
    template <class Check>
    void ForManyWorlds(Check check) {
        for (int i = 0; i < kWorlds && !HasFailure(); ++i) {
            SCOPED_TRACE(i);
            Model::World world;
            Model::DoRandomSteps(world, random_, kStepsInWorld);
            std::vector<Model::Item*> plain;
            for (std::size_t tree = 0; tree < Model::World::kTrees; ++tree) {
                for (Model::Item* const item : world.At(tree).items) {
                    if (IsPlain(*item)) {
                        plain.push_back(item);
                    }
                }
            }
            nodes_ += plain.size();
            if (!plain.empty()) {
                check(world, plain);
            }
        }
        EXPECT_GT(nodes_, 1000U);
    }

    Model::Item* AnyOf(const std::vector<Model::Item*>& items) { return items[random_() % items.size()]; }

    std::mt19937 random_{4};
    std::size_t nodes_ = 0;
};

TEST_F(LawsTest, ACopyIsEqualAndSharesNothing) {
    ForManyWorlds([&](Model::World& world, const std::vector<Model::Item*>& plain) {
        Model::Item* const source = AnyOf(plain);
        const auto tree = CreateGenericTree(EnumOrvObjectType(0));
        Node* const copy = tree->CopyFromNode(source->twin);
        EXPECT_EQ(copy->Compare(source->twin, TemporalityTemporary, true), 0);
        EXPECT_EQ(source->twin->Compare(copy, TemporalityTemporary, true), 0);
        std::set<const Node*> copied;
        AddNodes(copy, copied);
        EXPECT_EQ(copied.size(), static_cast<std::size_t>(Model::CountNodes(*source)));
        std::set<const Node*> both = copied;
        AddNodes(source->twin, both);
        EXPECT_EQ(both.size(), copied.size() * 2);
        tree->RemoveRoot();
        // Nothing has changed but what comparing calculates, and the model calculates it in the same way.
        Model::Compare(*source, source, TemporalityTemporary, true);
        world.CheckAll();
    });
}

TEST_F(LawsTest, ComparingIsATotalOrder) {
    ForManyWorlds([&](Model::World&, const std::vector<Model::Item*>& plain) {
        for (int i = 0; i < 200; ++i) {
            const Model::Item* const a = AnyOf(plain);
            const Model::Item* const b = AnyOf(plain);
            const Model::Item* const c = AnyOf(plain);
            EXPECT_EQ(Order(a, a), 0);
            EXPECT_EQ(Order(a, b), -Order(b, a));
            if (Order(a, b) <= 0 && Order(b, c) <= 0) {
                EXPECT_LE(Order(a, c), 0);
                EXPECT_EQ(Order(a, c) == 0, Order(a, b) == 0 && Order(b, c) == 0);
            }
        }
    });
}

TEST_F(LawsTest, MergingWithItselfAgreesAndChangesNothing) {
    ForManyWorlds([&](Model::World& world, const std::vector<Model::Item*>& plain) {
        Model::Item* const item = AnyOf(plain);
        if (!item->tree->readOnly) {
            EXPECT_TRUE(item->twin->MergeWith(item->twin, false));
            // All that changes is the count, by one for each node.
            item->tree->changes += Model::CountNodes(*item);
            item->tree->stale = true;
            world.CheckAll();
        }
    });
}

}  // namespace
