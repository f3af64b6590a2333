#include <gtest/gtest.h>

#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>
#include <KivGenerics/VisitorNode.h>

#include "core/NodeAccess.h"
#include "support/Kinds.h"
#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::kAllKinds;
using KivTests::NewTree;
using KivTests::TextOf;

namespace {

class CountingVisitor final : public VisitorNode {
public:
    int visits = 0;
    VisitCode VisitNode(Node*, bool, NodeType) override {
        ++visits;
        return VisitContinue;
    }
};

int VisitsOf(Node* node, int flags) {
    CountingVisitor visitor;
    node->Iterate(&visitor, SemanticTagNone, flags);
    return visitor.visits;
}

EnumOrvGenericsTemporality Stored(const Node* node) {
    return NodeAccess::GetStoredDerived(*node);
}

}  // namespace

// kept-on-purpose: empty-composite-is-temporary
TEST(TemporalityTest, ANewRootIsPersistentAsALeafAndTemporaryAsAnEmptyComposite) {
    const auto tree = NewTree();
    for (const NodeType kind : kAllKinds) {
        Node* const root = tree->NewRoot(kind);
        EXPECT_EQ(root->GetTemporality(), TemporalityDefault);
        EXPECT_EQ(root->GetDerivedTemporality(),
                  kind == NodeTypeVector || kind == NodeTypeMap ? TemporalityTemporary : TemporalityPersistent)
            << kind;
    }
}

TEST(TemporalityTest, SettingItForgetsTheDerivedValueOfThisNodeAlone) {
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Node* const leaf = map->NewNode(0, NodeTypeInteger);
    map->CalculateDerivedTemporality();
    EXPECT_EQ(Stored(map), TemporalityPersistent);
    EXPECT_EQ(Stored(leaf), TemporalityPersistent);
    map->SetTemporality(TemporalityTransient);
    EXPECT_EQ(map->GetTemporality(), TemporalityTransient);
    EXPECT_EQ(Stored(map), TemporalityDefault);
    EXPECT_EQ(Stored(leaf), TemporalityPersistent);
}

TEST(TemporalityTest, AReadOnlyTreeKeepsBothValues) {
    const auto tree = NewTree();
    Node* const root = tree->NewRoot(NodeTypeInteger);
    root->SetTemporality(TemporalityTransient);
    root->GetDerivedTemporality();
    tree->SetReadOnly();
    EXPECT_EQ(TextOf([&] { root->SetTemporality(TemporalityTemporary); }),
              "Operation not allowed on a read-only tree!");
    EXPECT_EQ(root->GetTemporality(), TemporalityTransient);
    EXPECT_EQ(Stored(root), TemporalityTransient);
}

TEST(TemporalityTest, ALeafDerivesFromItsOwnSetting) {
    const struct {
        EnumOrvGenericsTemporality own, derived;
    } rows[] = {{TemporalityReserved, TemporalityReserved},
                {TemporalityDefault, TemporalityPersistent},
                {TemporalityPersistent, TemporalityPersistent},
                {TemporalityTransient, TemporalityTransient},
                {TemporalityTemporary, TemporalityTemporary}};
    for (const NodeType kind : kAllKinds) {
        if (IsCompositeType(kind)) {
            continue;
        }
        const auto tree = NewTree();
        Node* const root = tree->NewRoot(kind);
        for (const auto& row : rows) {
            root->SetTemporality(row.own);
            EXPECT_EQ(root->CalculateDerivedTemporality(), row.derived);
            EXPECT_EQ(Stored(root), row.derived);
            EXPECT_EQ(root->GetDerivedTemporality(), row.derived);
        }
    }
}

TEST(TemporalityTest, AMapOfDefaultTemporalityTakesTheLeastOfItsChildren) {
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Node* const first = map->NewNode(0, NodeTypeInteger);
    Node* const far = map->NewNode(100, NodeTypeInteger);
    first->SetTemporality(TemporalityTemporary);
    far->SetTemporality(TemporalityTransient);
    EXPECT_EQ(map->CalculateDerivedTemporality(), TemporalityTransient);
    EXPECT_EQ(Stored(map), TemporalityTransient);
    EXPECT_EQ(Stored(first), TemporalityTemporary);
    EXPECT_EQ(Stored(far), TemporalityTransient);
}

TEST(TemporalityTest, ACompositeOfItsOwnTemporalityStillRecalculatesItsChildren) {
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    auto* const inner = static_cast<Map*>(map->NewNode(0, NodeTypeMap));
    Node* const leaf = inner->NewNode(0, NodeTypeInteger);
    map->SetTemporality(TemporalityTransient);
    leaf->SetTemporality(TemporalityTemporary);
    EXPECT_EQ(Stored(leaf), TemporalityDefault);
    EXPECT_EQ(map->CalculateDerivedTemporality(), TemporalityTransient);
    EXPECT_EQ(Stored(inner), TemporalityPersistent);
    EXPECT_EQ(Stored(leaf), TemporalityTemporary);
}

TEST(TemporalityTest, TheEffectiveValueIsTheGreatestOnTheWayToTheRootAndIsNotStored) {
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Node* const leaf = map->NewNode(0, NodeTypeInteger);
    map->SetTemporality(TemporalityTemporary);
    EXPECT_EQ(leaf->GetDerivedTemporality(), TemporalityTemporary);
    EXPECT_EQ(Stored(leaf), TemporalityPersistent);
    EXPECT_TRUE(leaf->ShouldVisit(TemporalityPersistent));
    EXPECT_FALSE(map->ShouldVisit(TemporalityTransient));
    EXPECT_TRUE(map->ShouldVisit(TemporalityTemporary));
}

TEST(TemporalityTest, ATemporaryNodeDoesNotAskItsParent) {
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Node* const leaf = map->NewNode(0, NodeTypeInteger);
    leaf->SetTemporality(TemporalityTemporary);
    EXPECT_EQ(leaf->GetDerivedTemporality(), TemporalityTemporary);
    EXPECT_EQ(Stored(map), TemporalityDefault);
}

TEST(TemporalityTest, ShouldVisitReadsTheStoredValueAsItIs) {
    const auto tree = NewTree();
    Node* const root = tree->NewRoot(NodeTypeInteger);
    root->SetTemporality(TemporalityTemporary);
    EXPECT_TRUE(root->ShouldVisit(TemporalityDefault));
    EXPECT_FALSE(root->ShouldVisit(TemporalityReserved));
    root->GetDerivedTemporality();
    EXPECT_FALSE(root->ShouldVisit(TemporalityTransient));
    EXPECT_TRUE(root->ShouldVisit(TemporalityTemporary));
}

// kept-on-purpose: vector-pushes-temporality
TEST(TemporalityTest, AVectorGivesItsDerivedValueToItsElements) {
    const auto tree = NewTree();
    auto* const vector = static_cast<Vector*>(tree->NewRoot(NodeTypeVector));
    Node* const persistent = vector->Add(NodeTypeInteger);
    Node* const transient = vector->Add(NodeTypeInteger);
    persistent->SetTemporality(TemporalityPersistent);
    transient->SetTemporality(TemporalityTransient);
    EXPECT_EQ(vector->CalculateDerivedTemporality(), TemporalityPersistent);
    EXPECT_EQ(Stored(vector), TemporalityPersistent);
    EXPECT_EQ(Stored(persistent), TemporalityPersistent);
    EXPECT_EQ(Stored(transient), TemporalityPersistent);
    EXPECT_EQ(transient->GetTemporality(), TemporalityTransient);
    tree->ClearTemporaryNodes();
    EXPECT_EQ(vector->GetSize(TemporalityTemporary), 2);
}

TEST(TemporalityTest, AVectorsPushReachesOneLevelIntoMaps) {
    const auto tree = NewTree();
    auto* const vector = static_cast<Vector*>(tree->NewRoot(NodeTypeVector));
    auto* const map = static_cast<Map*>(vector->Add(NodeTypeMap));
    Node* const leaf = map->NewNode(0, NodeTypeInteger);
    vector->SetTemporality(TemporalityTransient);
    EXPECT_EQ(vector->CalculateDerivedTemporality(), TemporalityTransient);
    EXPECT_EQ(Stored(map), TemporalityTransient);
    EXPECT_EQ(Stored(leaf), TemporalityPersistent);
}

TEST(TemporalityTest, AVectorsPushReachesThroughVectors) {
    const auto tree = NewTree();
    auto* const outer = static_cast<Vector*>(tree->NewRoot(NodeTypeVector));
    auto* const inner = static_cast<Vector*>(outer->Add(NodeTypeVector));
    Node* const leaf = inner->Add(NodeTypeInteger);
    outer->SetTemporality(TemporalityTransient);
    EXPECT_EQ(outer->CalculateDerivedTemporality(), TemporalityTransient);
    EXPECT_EQ(Stored(inner), TemporalityTransient);
    EXPECT_EQ(Stored(leaf), TemporalityTransient);
}

TEST(TemporalityTest, ANodeReadsItsOwnValueAgainAfterItsVectorHasPushed) {
    const auto tree = NewTree();
    auto* const vector = static_cast<Vector*>(tree->NewRoot(NodeTypeVector));
    Node* const persistent = vector->Add(NodeTypeInteger);
    Node* const transient = vector->Add(NodeTypeInteger);
    transient->SetTemporality(TemporalityTransient);
    EXPECT_EQ(Stored(vector), TemporalityDefault);
    // Asking calculates the vector, which replaces the 3 of this element.
    EXPECT_EQ(transient->GetDerivedTemporality(), TemporalityPersistent);
    EXPECT_EQ(persistent->GetDerivedTemporality(), TemporalityPersistent);
}

// kept-on-purpose: temporality-out-of-range
TEST(TemporalityTest, AValueOutsideTheScaleIsStoredAndHidesTheNode) {
    const auto tree = NewTree();
    Node* const root = tree->NewRoot(NodeTypeInteger);
    EXPECT_EQ(VisitsOf(root, IterateSelf), 1);
    for (const int value : {0, 5, 100, -1}) {
        root->SetTemporality(EnumOrvGenericsTemporality(value));
        EXPECT_EQ(root->GetTemporality(), value);
        EXPECT_EQ(root->CalculateDerivedTemporality(), value);
        EXPECT_EQ(VisitsOf(root, IterateSelf), 0) << value;
        EXPECT_EQ(VisitsOf(root, IterateSelf | IterateUpToTemporary), 0) << value;
    }
    root->SetTemporality(TemporalityTemporary);
    EXPECT_EQ(VisitsOf(root, IterateSelf), 1);
}

TEST(TemporalityTest, UpdatingCalculatesTheWholeTreeOnceAfterEachChange) {
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Node* const leaf = map->NewNode(0, NodeTypeInteger);
    tree->UpdateDerivedTemporality();
    EXPECT_EQ(Stored(map), TemporalityPersistent);
    EXPECT_EQ(Stored(leaf), TemporalityPersistent);
    // Nothing has changed since: what was planted stays.
    NodeAccess::SetDerived(*leaf, TemporalityTemporary);
    tree->UpdateDerivedTemporality();
    EXPECT_EQ(Stored(leaf), TemporalityTemporary);
    map->SetSemanticTag(SemanticTag(5));
    tree->UpdateDerivedTemporality();
    EXPECT_EQ(Stored(leaf), TemporalityPersistent);
}

TEST(TemporalityTest, UpdatingAnEmptyTreeDoesNothing) {
    const auto tree = NewTree();
    tree->UpdateDerivedTemporality();
    EXPECT_TRUE(tree->IsEmpty());
    EXPECT_EQ(tree->GetChangeCount(), 0);
}
