// The first update of a tree in which everything is persistent begins a new round instead of going through the tree, however
// the tree has been filled.

#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>

#include "core/TreeImpl.h"
#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::NewTree;

namespace {

int GetRound(Tree& tree) {
    return static_cast<TreeImpl&>(tree).GetRound();
}

bool IsQuick(Tree& tree) {
    const int round = GetRound(tree);
    tree.UpdateDerivedTemporality();
    return GetRound(tree) == round + 1;
}

/// Whether an update is quick where a composite of this class, an element of the root, has been filled so. There is another
/// one with two numbers, to take them from.
template <class T>
bool IsQuickWhereFilled(const std::function<void(T& composite, T& other)>& fill) {
    const auto tree = NewTree();
    auto* const root = static_cast<Vector*>(tree->NewRoot(NodeTypeVector));
    T* const composite = root->Add<T>();
    T* const other = root->Add<T>();
    other->NewNode(0, NodeTypeInteger);
    other->NewNode(1, NodeTypeInteger);
    fill(*composite, *other);
    return IsQuick(*tree);
}

}  // namespace

TEST(QuickUpdateTest, CountingChangesAnewHidesNoneFromTheUpdate) {
    const auto tree = NewTree();
    auto* const root = static_cast<Vector*>(tree->NewRoot(NodeTypeVector));
    auto* const leaf = root->Add<Integer>();
    tree->UpdateDerivedTemporality();
    leaf->SetTemporality(TemporalityTransient);
    tree->ResetChangeCount();
    tree->UpdateDerivedTemporality();
    EXPECT_FALSE(root->ShouldVisit(TemporalityPersistent));

    const int round = GetRound(*tree);
    tree->UpdateDerivedTemporality();
    EXPECT_EQ(round, GetRound(*tree));
    EXPECT_EQ(0, tree->GetChangeCount());
}

TEST(QuickUpdateTest, AnEmptyElementIsNotPersistent) {
    EXPECT_FALSE(IsQuickWhereFilled<Vector>([](Vector&, Vector&) {}));
    EXPECT_FALSE(IsQuickWhereFilled<Map>([](Map&, Map&) {}));
}

TEST(QuickUpdateTest, AVectorMayHaveBeenFilledInAnyWay) {
    EXPECT_TRUE(IsQuickWhereFilled<Vector>([](Vector& vector, Vector&) { vector.Add(NodeTypeInteger); }));
    EXPECT_TRUE(IsQuickWhereFilled<Vector>([](Vector& vector, Vector&) { vector.Add<Integer>(); }));
    EXPECT_TRUE(IsQuickWhereFilled<Vector>([](Vector& vector, Vector&) { vector.Insert(0, NodeTypeInteger); }));
    EXPECT_TRUE(IsQuickWhereFilled<Vector>([](Vector& vector, Vector&) { vector.NewNode(0, NodeTypeInteger); }));
    EXPECT_TRUE(IsQuickWhereFilled<Vector>([](Vector& vector, Vector& other) { vector.Move(0, other.Get(1)); }));
    EXPECT_TRUE(IsQuickWhereFilled<Vector>([](Vector& vector, Vector& other) { vector.Populate(&other); }));
}

TEST(QuickUpdateTest, AMapMayHaveBeenFilledInAnyWay) {
    EXPECT_TRUE(IsQuickWhereFilled<Map>([](Map& map, Map&) { map.NewNode(0, NodeTypeInteger); }));
    EXPECT_TRUE(IsQuickWhereFilled<Map>([](Map& map, Map&) { map.NewNode<Integer>(0); }));
    EXPECT_TRUE(IsQuickWhereFilled<Map>([](Map& map, Map&) { map.NewNode(70, NodeTypeInteger); }));
    EXPECT_TRUE(IsQuickWhereFilled<Map>([](Map& map, Map& other) { map.Move(0, other.Get(1)); }));
    EXPECT_TRUE(IsQuickWhereFilled<Map>([](Map& map, Map& other) { map.Move(70, other.Get(1)); }));
    EXPECT_TRUE(IsQuickWhereFilled<Map>([](Map& map, Map& other) { map.Populate(&other); }));
}

TEST(QuickUpdateTest, WhatIsPersistentByItselfMayBeEmpty) {
    EXPECT_TRUE(IsQuickWhereFilled<Vector>([](Vector& vector, Vector&) { vector.NewNode(0, NodeTypeVector); }));
    EXPECT_TRUE(IsQuickWhereFilled<Map>([](Map& map, Map&) { map.NewNode(0, NodeTypeMap); }));
}

TEST(QuickUpdateTest, ACopyIsUpdatedAsItsSource) {
    const auto tree = NewTree();
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    root->NewNode<Vector>(0);
    root->NewNode<Map>(70);
    auto* const list = root->NewNode<Vector>(1);
    for (int i = 0; i < 3; ++i) {
        list->Add<Vector>()->Add<Integer>();
    }
    EXPECT_TRUE(IsQuick(*tree));
    const auto copy = NewTree();
    copy->CopyFromTree(tree.Get());
    EXPECT_TRUE(IsQuick(*copy));
}

TEST(QuickUpdateTest, RoundsGoFrom1To127) {
    const auto tree = NewTree();
    auto* const number = static_cast<Integer*>(static_cast<Map*>(tree->NewRoot(NodeTypeMap))->NewNode<Integer>(0));
    std::vector<int> rounds = {GetRound(*tree)};
    for (int i = 0; i < 127; ++i) {
        number->Set(i);
        tree->UpdateDerivedTemporality();
        rounds.push_back(GetRound(*tree));
    }
    EXPECT_EQ(1, rounds.front());
    EXPECT_EQ(127, rounds[126]);
    EXPECT_EQ(1, rounds[127]);
}
