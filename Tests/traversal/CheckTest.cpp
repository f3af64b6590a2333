// What every kind does first when it is copied into, merged with or compared. The results on values are the kinds' own.

#include <limits>
#include <string>

#include <KivBase/Utf.h>
#include <KivGenerics/Exception.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>
#include <gtest/gtest.h>

#include "core/NodeAccess.h"
#include "support/TestTree.h"

namespace KivGenerics::Testing {
namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kGreatest = std::numeric_limits<int>::max();

/// What `call` throws: its kind and text; "" for nothing.
template <class Call>
std::string Thrown(Call&& call) {
    try {
        call();
    } catch (const Exception& exception) {
        EXPECT_EQ(KivBase::MESSAGE_DOMAIN_UNKNOWN, exception.GetDomain());
        EXPECT_EQ(-1, exception.GetID());
        return std::to_string(exception.GetExceptionKind()) + " " + KivBase::ToUtf8(exception.GetMessage());
    }
    return "";
}

EnumOrvGenericsTemporality T(int value) {
    return EnumOrvGenericsTemporality(value);
}

class CheckTest : public ::testing::Test {
protected:
    Node* Add(NodeType type) { return root_->NewNode(root_->GetSize(TemporalityTemporary), type); }
    Map* AddMap(int tag) {
        auto* const map = static_cast<Map*>(Add(NodeTypeMap));
        map->SetSemanticTag(SemanticTag(tag));
        return map;
    }
    static int Derived(const Node* node) { return NodeAccess::GetStoredDerived(*node); }

    KivBase::ReturnPtrI<Tree> tree_ = KivTests::NewTree();
    Map* root_ = static_cast<Map*>(tree_->NewRoot(NodeTypeMap));
    KivBase::ReturnPtrI<Tree> otherTree_ = KivTests::NewTree();
    Map* otherRoot_ = static_cast<Map*>(otherTree_->NewRoot(NodeTypeMap));
};

using PopulateCheckTest = CheckTest;
using MergeCheckTest = CheckTest;
using CompareCheckTest = CheckTest;

TEST_F(PopulateCheckTest, NullAndOtherKindsAreRefusedInThisOrderAfterTheGuard) {
    Node* const node = Add(NodeTypeInteger);
    const int before = tree_->GetChangeCount();
    EXPECT_EQ("0 Can't copy NULL node!", Thrown([&] { node->Populate(nullptr); }));
    EXPECT_EQ("0 Can't copy nodes of different type!", Thrown([&] { node->Populate(otherRoot_); }));
    EXPECT_EQ(before + 2, tree_->GetChangeCount());
    tree_->SetReadOnly();
    EXPECT_EQ("1 Operation not allowed on a read-only tree!", Thrown([&] { node->Populate(nullptr); }));
    EXPECT_EQ("1 Operation not allowed on a read-only tree!", Thrown([&] { node->Populate(otherRoot_); }));
    EXPECT_EQ(before + 2, tree_->GetChangeCount());
}

TEST_F(PopulateCheckTest, EveryOwnTemporalityIsTakenOverAsItIs) {
    Node* const node = Add(NodeTypeInteger);
    Node* const source = Add(NodeTypeInteger);
    for (const int mine : {0, 1, 2, 3, 4}) {
        for (const int theirs : {0, 1, 2, 3, 4, 5, -1}) {
            node->SetTemporality(T(mine));
            node->CalculateDerivedTemporality();
            source->SetTemporality(T(theirs));
            source->CalculateDerivedTemporality();
            node->Node::Populate(source);
            EXPECT_EQ(theirs, node->GetTemporality()) << mine;
            EXPECT_EQ(1, Derived(node)) << mine << " from " << theirs;
        }
    }
}

TEST_F(PopulateCheckTest, ACopyIsNotCalculatedUntilItsTreeRecalculates) {
    Node* const source = otherRoot_->NewNode(0, NodeTypeString);
    source->SetTemporality(TemporalityTransient);
    otherTree_->UpdateDerivedTemporality();
    EXPECT_EQ(3, Derived(source));
    tree_->UpdateDerivedTemporality();
    Node* const copy = root_->ReplaceWithCopy(0, source);
    EXPECT_EQ(1, Derived(copy));
    EXPECT_EQ(TemporalityTransient, copy->GetTemporality());
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(3, Derived(copy));
}

TEST_F(MergeCheckTest, NullAndOtherKindsAreRefusedInThisOrderAfterTheGuard) {
    Node* const node = Add(NodeTypeInteger);
    const int before = tree_->GetChangeCount();
    const auto merge = [&](Node* other) { return Thrown([&] { static_cast<void>(node->MergeWith(other, false)); }); };
    EXPECT_EQ("0 Cannot merge with NULL node!", merge(nullptr));
    EXPECT_EQ("0 Cannot merge with node of different type!", merge(otherRoot_));
    EXPECT_EQ(before + 2, tree_->GetChangeCount());
    tree_->SetReadOnly();
    EXPECT_EQ("1 Operation not allowed on a read-only tree!", merge(nullptr));
    EXPECT_EQ("1 Operation not allowed on a read-only tree!", merge(otherRoot_));
    EXPECT_EQ(before + 2, tree_->GetChangeCount());
}

struct VerdictRow {
    int mine;
    int theirs;
    bool agreed;
    int result;
};

// kept-on-purpose: merge-temporality-wins
TEST_F(MergeCheckTest, TheOthersTemporalityWinsAndAgreesOnlyWithADefaultOne) {
    const VerdictRow rows[] = {
        {2, 3, false, 3}, {1, 3, true, 3},  {2, 1, true, 2}, {3, 2, false, 2}, {4, 2, false, 2}, {1, 4, true, 4},
        {4, 1, true, 4},  {1, 1, true, 1},  {3, 3, true, 3}, {0, 1, true, 0},  {1, 0, true, 0},  {0, 2, false, 2},
        {2, 0, false, 0}, {2, 5, false, 5}, {5, 5, true, 5}, {5, 1, true, 5},
    };
    Node* const node = Add(NodeTypeInteger);
    Node* const other = Add(NodeTypeInteger);
    for (const VerdictRow& row : rows) {
        for (const bool flag : {false, true}) {
            node->SetTemporality(T(row.mine));
            other->SetTemporality(T(row.theirs));
            EXPECT_EQ(row.agreed, NodeAccess::MergeWithChecks(*node, other, flag)) << row.mine << " " << row.theirs;
            EXPECT_EQ(row.result, node->GetTemporality()) << row.mine << " " << row.theirs;
            EXPECT_EQ(row.theirs, other->GetTemporality());
        }
    }
}

TEST_F(MergeCheckTest, TheDerivedTemporalityStaysAsItWasStored) {
    Node* const node = Add(NodeTypeInteger);
    Node* const other = Add(NodeTypeInteger);
    other->SetTemporality(TemporalityTemporary);
    node->CalculateDerivedTemporality();
    EXPECT_FALSE(node->MergeWith(other, false));
    EXPECT_EQ(2, Derived(node));
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(4, Derived(node)) << "the merge has marked the tree stale";
}

TEST_F(MergeCheckTest, CompositesWithoutChildrenMergeByTheirTemporalitiesAlone) {
    for (const NodeType type : {NodeTypeVector, NodeTypeMap}) {
        Node* const node = Add(type);
        Node* const other = Add(type);
        EXPECT_TRUE(node->MergeWith(other, false));
        other->SetTemporality(TemporalityTransient);
        EXPECT_FALSE(node->MergeWith(other, false));
        EXPECT_EQ(TemporalityTransient, node->GetTemporality());
        EXPECT_TRUE(node->MergeWith(other, false));
        other->SetTemporality(TemporalityDefault);
        EXPECT_TRUE(node->MergeWith(other, false));
        EXPECT_EQ(TemporalityTransient, node->GetTemporality());
    }
}

TEST_F(CompareCheckTest, NullIsRefusedEvenInAReadOnlyTreeAndBeforeAnythingIsRecalculated) {
    Node* const node = Add(NodeTypeInteger);
    node->SetTemporality(TemporalityTemporary);
    tree_->SetReadOnly();
    for (const bool recalc : {false, true}) {
        EXPECT_EQ("0 Can't compare NULL node!",
                  Thrown([&] { static_cast<void>(node->Compare(nullptr, TemporalityPersistent, recalc)); }));
    }
    EXPECT_EQ(1, Derived(node));
    EXPECT_EQ(1, Derived(root_));
}

TEST_F(CompareCheckTest, KindsAreOrderedByTheDifferenceOfTheirNumbers) {
    EXPECT_EQ(-2, Add(NodeTypeInteger)->Compare(Add(NodeTypeString), TemporalityTemporary, false));
    EXPECT_EQ(2, Add(NodeTypeString)->Compare(Add(NodeTypeInteger), TemporalityTemporary, false));
    EXPECT_EQ(-11, Add(NodeTypeInteger)->Compare(Add(NodeTypeInteger64), TemporalityTemporary, false));
    EXPECT_EQ(1, AddMap(1)->Compare(Add(NodeTypeVector), TemporalityTemporary, false));
    EXPECT_EQ(6, AddMap(1)->Compare(Add(NodeTypeInteger), TemporalityTemporary, false));
    EXPECT_EQ(-5, AddMap(1)->Compare(Add(NodeTypeInteger64), TemporalityTemporary, false));
}

TEST_F(CompareCheckTest, TagsDecideBeforeKinds) {
    EXPECT_EQ(6, AddMap(7)->Compare(Add(NodeTypeVector), TemporalityTemporary, false));
    EXPECT_EQ(-6, Add(NodeTypeVector)->Compare(AddMap(7), TemporalityTemporary, false));
    EXPECT_EQ(-1, AddMap(0)->Compare(Add(NodeTypeInteger), TemporalityTemporary, false));
    EXPECT_EQ(1, Add(NodeTypeInteger64)->Compare(AddMap(0), TemporalityTemporary, false));
    EXPECT_EQ(4000, AddMap(4100)->Compare(AddMap(100), TemporalityTemporary, false));
    EXPECT_EQ(-4000, AddMap(100)->Compare(AddMap(4100), TemporalityTemporary, false));
    EXPECT_EQ(0, AddMap(100)->Compare(AddMap(100), TemporalityTemporary, false));
    EXPECT_EQ(-101, AddMap(-1)->Compare(AddMap(100), TemporalityTemporary, false));
}

TEST_F(CompareCheckTest, ATagDifferenceBeyond32BitsIsTheGreatestOrLeastNumber) {
    EXPECT_EQ(2147483647, AddMap(kGreatest)->Compare(AddMap(kLeast), TemporalityTemporary, false));
    EXPECT_EQ(-2147483647 - 1, AddMap(kLeast)->Compare(AddMap(kGreatest), TemporalityTemporary, false));
    EXPECT_EQ(2147483647, AddMap(kGreatest)->Compare(AddMap(-1), TemporalityTemporary, false));
    EXPECT_EQ(2147483647, AddMap(kGreatest)->Compare(AddMap(0), TemporalityTemporary, false));
    EXPECT_EQ(2147483646, AddMap(kGreatest)->Compare(Add(NodeTypeVector), TemporalityTemporary, false));
    EXPECT_EQ(-2147483647 - 1, AddMap(kLeast)->Compare(AddMap(1), TemporalityTemporary, false));
    EXPECT_EQ(-2147483647 - 1, AddMap(kLeast)->Compare(AddMap(0), TemporalityTemporary, false));
    EXPECT_EQ(-2147483647, AddMap(kLeast + 1)->Compare(AddMap(0), TemporalityTemporary, false));
}

TEST_F(CompareCheckTest, ANodeAboveTheTemporalityEqualsAnythingButNull) {
    Map* const map = AddMap(7);
    map->SetTemporality(TemporalityTransient);
    Map* const otherMap = AddMap(8);
    Node* const leaf = Add(NodeTypeInteger);
    EXPECT_EQ(0, map->Compare(otherMap, TemporalityPersistent, false));
    EXPECT_EQ(0, map->Compare(leaf, TemporalityPersistent, false));
    EXPECT_EQ(0, map->Compare(leaf, TemporalityReserved, false));
    EXPECT_EQ(-1, map->Compare(otherMap, TemporalityTransient, false));
    EXPECT_EQ(1, otherMap->Compare(map, TemporalityPersistent, false)) << "the other's temporality does not count";
}

TEST_F(CompareCheckTest, AnEmptyCompositeOfDefaultTemporalityIsTemporaryForAComparison) {
    Map* const map = AddMap(7);
    map->SetTemporality(TemporalityDefault);
    EXPECT_EQ(0, map->Compare(AddMap(8), TemporalityTransient, false));
    EXPECT_EQ(-1, map->Compare(AddMap(8), TemporalityTemporary, false));
}

TEST_F(CompareCheckTest, AValueThatHasNotBeenCalculatedIsCalculatedAndStored) {
    Node* const node = Add(NodeTypeInteger);
    node->SetTemporality(TemporalityTransient);
    ASSERT_EQ(1, Derived(node));
    EXPECT_EQ(0, node->Compare(Add(NodeTypeString), TemporalityPersistent, false));
    EXPECT_EQ(3, Derived(node));
}

TEST_F(CompareCheckTest, ACalculatedValueIsUsedAsItIsStored) {
    Node* const node = Add(NodeTypeInteger);
    Node* const other = Add(NodeTypeString);
    NodeAccess::SetDerived(*node, TemporalityTemporary);
    EXPECT_EQ(0, node->Compare(other, TemporalityTransient, false));
    NodeAccess::SetDerived(*node, TemporalityPersistent);
    EXPECT_EQ(-2, node->Compare(other, TemporalityTransient, false));
}

TEST_F(CompareCheckTest, RecalculationBringsBothTreesUpToDate) {
    Node* const node = Add(NodeTypeInteger);
    Node* const other = otherRoot_->NewNode(4, NodeTypeInteger);
    Node* const otherSibling = otherRoot_->NewNode(5, NodeTypeString);
    otherSibling->SetTemporality(TemporalityTemporary);
    EXPECT_EQ(0, node->Compare(other, TemporalityTemporary, false));
    EXPECT_EQ(1, Derived(root_));
    EXPECT_EQ(1, Derived(otherSibling));
    EXPECT_EQ(0, node->Compare(other, TemporalityTemporary, true));
    EXPECT_EQ(2, Derived(root_));
    EXPECT_EQ(2, Derived(otherRoot_));
    EXPECT_EQ(4, Derived(otherSibling));
}

TEST_F(CompareCheckTest, RecalculationHappensOnlyWhereSomethingChanged) {
    Node* const node = Add(NodeTypeInteger);
    Node* const other = otherRoot_->NewNode(4, NodeTypeString);
    tree_->UpdateDerivedTemporality();
    NodeAccess::SetDerived(*node, TemporalityTemporary);
    EXPECT_EQ(0, node->Compare(other, TemporalityTransient, true)) << "found up to date";
    node->SetTemporality(TemporalityPersistent);
    NodeAccess::SetDerived(*node, TemporalityTemporary);
    EXPECT_EQ(-2, node->Compare(other, TemporalityTransient, true));
}

TEST_F(CompareCheckTest, RecalculationComesBeforeTheTemporalityIsTested) {
    auto* const list = static_cast<Vector*>(Add(NodeTypeVector));
    list->Add(NodeTypeInteger)->SetTemporality(TemporalityPersistent);
    Node* const transient = list->Add(NodeTypeInteger);
    transient->SetTemporality(TemporalityTransient);
    static_cast<Integer*>(transient)->Set(5);
    auto* const other = static_cast<Integer*>(otherRoot_->NewNode(0, NodeTypeInteger));
    other->Set(7);
    EXPECT_EQ(0, transient->Compare(other, TemporalityPersistent, false));
    EXPECT_EQ(-1, transient->Compare(other, TemporalityPersistent, true)) << "the vector has made it persistent";
    EXPECT_EQ(2, Derived(transient));
}

TEST_F(CompareCheckTest, AReadOnlyTreeIsComparedAndRecalculated) {
    Node* const node = Add(NodeTypeInteger);
    node->SetTemporality(TemporalityTransient);
    tree_->SetReadOnly();
    otherTree_->SetReadOnly();
    const int before = tree_->GetChangeCount();
    EXPECT_EQ(-6, node->Compare(otherRoot_, TemporalityTemporary, true));
    EXPECT_EQ(3, Derived(node));
    EXPECT_EQ(before, tree_->GetChangeCount());
}

TEST_F(CompareCheckTest, AncestorsAreNotAsked) {
    Node* const node = Add(NodeTypeInteger);
    root_->SetTemporality(TemporalityTemporary);
    EXPECT_EQ(TemporalityTemporary, node->GetDerivedTemporality());
    EXPECT_EQ(-2, node->Compare(Add(NodeTypeString), TemporalityPersistent, true));
}

}  // namespace
}  // namespace KivGenerics::Testing
