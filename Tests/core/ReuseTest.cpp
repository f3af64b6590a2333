#include <gtest/gtest.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Vector.h>

#include "core/NodeAccess.h"
#include "support/Kinds.h"
#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::kAllKinds;
using KivTests::NewTree;

namespace {

// Tags by the number of slots that they give: 107 and 4099 also by what they want.
constexpr SemanticTag kTagOf1 = SemanticTag(102);
constexpr SemanticTag kTagOf4 = SemanticTag(2);
constexpr SemanticTag kTagOf8 = SemanticTag(1);
constexpr SemanticTag kTagOf16 = SemanticTag(4107);
constexpr SemanticTag kTagOf4WithOverflow = SemanticTag(4099);
constexpr SemanticTag kTagOf1Learned = SemanticTag(107);

class ReuseTest : public ::testing::Test {
protected:
    KivBase::ReturnPtrI<Tree> tree = NewTree();
    Vector* root = static_cast<Vector*>(tree->NewRoot(NodeTypeVector));

    Map* Make(SemanticTag tag, bool overflow = false) {
        auto* const map = static_cast<Map*>(root->Add(NodeTypeMap, tag));
        if (overflow) {
            map->NewNode(100, NodeTypeInteger);
            map->Remove(100);
        }
        EXPECT_EQ(map->HasOverflow(), overflow);
        return map;
    }
    /// Makes a map and releases it: it waits now.
    Map* Wait(SemanticTag tag, bool overflow = false) {
        Map* const map = Make(tag, overflow);
        root->Remove(map->GetIndex());
        return map;
    }
};

}  // namespace

TEST_F(ReuseTest, AReleasedNodeOfEveryKindIsHandedOutAgain) {
    for (const NodeType kind : kAllKinds) {
        const auto other = NewTree();  // where nothing else waits
        auto* const vector = static_cast<Vector*>(other->NewRoot(NodeTypeVector));
        Node* const node = vector->NewNode(0, kind);
        vector->Remove(0);
        EXPECT_EQ(vector->NewNode(0, kind), node) << kind;
    }
}

TEST_F(ReuseTest, AReusedNodeIsAsNew) {
    auto* const text = static_cast<String*>(root->Add(NodeTypeString));
    text->Set(u"old");
    text->SetTemporality(TemporalityTransient);
    text->GetDerivedTemporality();
    root->Remove(0);
    auto* const again = static_cast<String*>(root->Add(NodeTypeString));
    EXPECT_EQ(again, text);
    EXPECT_EQ(again->GetLength(), 0U);
    EXPECT_EQ(again->GetTemporality(), TemporalityDefault);
    EXPECT_EQ(NodeAccess::GetStoredDerived(*again), TemporalityDefault);
    EXPECT_EQ(again->GetParent(), root);
    EXPECT_EQ(again->GetIndex(), 0);
}

TEST_F(ReuseTest, TemporalitiesThatAWaitingNodeWasGivenAreGoneWhenItIsHandedOut) {
    Node* const leaf = root->Add(NodeTypeInteger);
    root->Remove(0);
    leaf->SetTemporality(TemporalityTemporary);
    leaf->CalculateDerivedTemporality();
    Node* const again = root->Add(NodeTypeInteger);
    EXPECT_EQ(again, leaf);
    EXPECT_EQ(again->GetTemporality(), TemporalityDefault);
    EXPECT_EQ(NodeAccess::GetStoredDerived(*again), TemporalityDefault);
}

// kept-on-purpose: reuse-one-node
TEST_F(ReuseTest, OnlyTheNodeReleasedLastWaits) {
    for (const NodeType kind : kAllKinds) {
        Node* const first = root->NewNode(0, kind);
        Node* const second = root->NewNode(1, kind);
        root->Remove(0);
        root->Remove(0);
        Node* const one = root->NewNode(0, kind);
        Node* const two = root->NewNode(1, kind);
        EXPECT_EQ(one, second) << kind;
        EXPECT_NE(two, first) << kind;
        EXPECT_NE(two, second) << kind;
        root->Clear();
    }
}

TEST_F(ReuseTest, KindsWaitApart) {
    Node* const number = root->NewNode(0, NodeTypeInteger);
    Node* const text = root->NewNode(1, NodeTypeString);
    root->Remove(0);
    root->Remove(0);
    EXPECT_EQ(root->NewNode(0, NodeTypeInteger), number);
    EXPECT_EQ(root->NewNode(1, NodeTypeString), text);
}

TEST_F(ReuseTest, ANodeIsHandedToAnyTreeOfTheForest) {
    auto* const leaf = static_cast<Integer*>(root->Add(NodeTypeInteger));
    leaf->Set(5);
    root->Remove(0);
    const auto sibling = tree->CreateTreeInForest();
    Node* const again = sibling->NewRoot(NodeTypeInteger);
    EXPECT_EQ(again, leaf);
    EXPECT_EQ(again->GetTree().Get(), sibling.Get());
    EXPECT_EQ(again->GetIndex(), -1);
    EXPECT_EQ(again->GetParent(), nullptr);
    EXPECT_EQ(leaf->Get(), 0);
    EXPECT_EQ(static_cast<Integer*>(again)->Get(), 0);
}

TEST_F(ReuseTest, AnotherForestNeverSeesIt) {
    Node* const leaf = root->Add(NodeTypeInteger);
    root->Remove(0);
    const auto other = NewTree();
    EXPECT_NE(other->NewRoot(NodeTypeInteger), leaf);
}

TEST_F(ReuseTest, ReplacingAndClearingReleaseToo) {
    Node* const leaf = root->NewNode(0, NodeTypeInteger);
    root->NewNode(0, NodeTypeString);
    EXPECT_EQ(root->NewNode(1, NodeTypeInteger), leaf);
    root->Clear();
    EXPECT_EQ(root->NewNode(0, NodeTypeInteger), leaf);
}

TEST_F(ReuseTest, ADetachedNodeDoesNotWait) {
    Node* const leaf = root->Add(NodeTypeInteger);
    EXPECT_EQ(root->Detach(0), leaf);
    EXPECT_NE(root->Add(NodeTypeInteger), leaf);
}

// kept-on-purpose: root-not-recycled
TEST_F(ReuseTest, ARemovedRootIsNotHandedOutAgain) {
    const auto other = NewTree();
    Node* const leaf = other->NewRoot(NodeTypeInteger);
    other->RemoveRoot();
    EXPECT_NE(other->NewRoot(NodeTypeInteger), leaf);
}

TEST_F(ReuseTest, AReusedMapHasAtLeastTheSlotsThatItsTagAsksFor) {
    Map* const large = Wait(kTagOf16);
    Map* const map = Make(kTagOf4);
    EXPECT_EQ(map, large);
    EXPECT_EQ(map->GetSlotCount(), 16);
    EXPECT_EQ(map->GetSemanticTag(), 2);
}

TEST_F(ReuseTest, AMapWithTooFewSlotsIsNotReused) {
    Map* const small = Wait(kTagOf4);
    EXPECT_NE(Make(kTagOf8), small);
    EXPECT_EQ(Make(kTagOf4), small);
}

TEST_F(ReuseTest, TheMapWithTheFewestSlotsThatSuffices) {
    Map* const one = Wait(kTagOf1);
    Map* const four = Wait(kTagOf4);
    Map* const sixteen = Wait(kTagOf16);
    // Taking them from the smallest up: each wait made a fresh map, since none before it had slots enough.
    EXPECT_EQ(Make(kTagOf1), one);
    EXPECT_EQ(Make(kTagOf1), four);
    EXPECT_EQ(Make(kTagOf1), sixteen);
}

TEST_F(ReuseTest, AReusedMapForgetsItsTag) {
    Map* const map = Wait(kTagOf4);
    EXPECT_EQ(map->GetSemanticTag(), 1);
    Map* const four = Make(kTagOf4);
    EXPECT_EQ(four, map);
    root->Remove(four->GetIndex());
    // Tag 0 asks for eight slots.
    EXPECT_NE(root->Add(NodeTypeMap, SemanticTagNone), map);
    Map* const eight = Wait(SemanticTag(3));
    EXPECT_EQ(static_cast<Map*>(root->Add(NodeTypeMap, SemanticTagNone)), eight);
    EXPECT_EQ(eight->GetSemanticTag(), 1);
}

TEST_F(ReuseTest, AnOrdinaryTagTakesTheMapWithoutAnOverflowStoreFirst) {
    // Released in one go, so that neither serves for the other.
    Map* const with = Make(kTagOf4, true);
    Map* const without = Make(kTagOf4);
    root->Clear();
    EXPECT_EQ(Make(kTagOf4), without);
    Map* const second = static_cast<Map*>(root->Add(NodeTypeMap, kTagOf4));
    EXPECT_EQ(second, with);
    EXPECT_TRUE(second->HasOverflow());
}

TEST_F(ReuseTest, AnOrdinaryTagPrefersFewSlotsToTheMissingOverflowStore) {
    Map* const with = Make(kTagOf4, true);
    Map* const larger = Make(kTagOf8);
    root->Clear();
    EXPECT_EQ(static_cast<Map*>(root->Add(NodeTypeMap, kTagOf4)), with);
    EXPECT_EQ(static_cast<Map*>(root->Add(NodeTypeMap, kTagOf4)), larger);
}

TEST_F(ReuseTest, ATagThatWantsOverflowPrefersItToFewSlots) {
    Map* const plain = Make(kTagOf4);
    Map* const large = Make(kTagOf16, true);
    root->Clear();
    EXPECT_EQ(static_cast<Map*>(root->Add(NodeTypeMap, kTagOf4WithOverflow)), large);
    EXPECT_EQ(static_cast<Map*>(root->Add(NodeTypeMap, kTagOf4WithOverflow)), plain);
}

TEST_F(ReuseTest, TagsOutsideOneToSixteenSlotsReuseNothing) {
    Map* const eight = Wait(kTagOf8);
    Map* const map = Make(SemanticTag(4213));
    EXPECT_NE(map, eight);
    EXPECT_EQ(map->GetSlotCount(), 8);
    EXPECT_EQ(Make(kTagOf8), eight);
}

TEST_F(ReuseTest, Tag107WantsOverflowUntilAMapOfItWasReleased) {
    Map* const plain = Make(kTagOf1);
    Map* const with = Make(kTagOf16, true);
    root->Clear();
    EXPECT_EQ(static_cast<Map*>(root->Add(NodeTypeMap, kTagOf1Learned)), with);
    EXPECT_EQ(static_cast<Map*>(root->Add(NodeTypeMap, kTagOf1Learned)), plain);
}

// kept-on-purpose: tag-107-first-decides
TEST_F(ReuseTest, TheFirstReleasedMapOfTag107DecidesForTheWholeForest) {
    Wait(kTagOf1Learned);        // without an overflow store: decided
    root->Add(NodeTypeMap, kTagOf1Learned);
    Map* const learned = Make(kTagOf1Learned, true);
    root->Remove(learned->GetIndex());  // too late to change it
    static_cast<void>(root->Add(NodeTypeMap, kTagOf1));  // takes the waiting map away
    const auto sibling = tree->CreateTreeInForest();
    auto* const vector = static_cast<Vector*>(sibling->NewRoot(NodeTypeVector));
    auto* const plain = static_cast<Map*>(vector->Add(NodeTypeMap, kTagOf8));
    auto* const with = static_cast<Map*>(vector->Add(NodeTypeMap, kTagOf16));
    with->NewNode(100, NodeTypeInteger);
    vector->Clear();
    // It wants none now, so the fewest slots decide.
    EXPECT_EQ(static_cast<Map*>(vector->Add(NodeTypeMap, kTagOf1Learned)), plain);
    EXPECT_EQ(static_cast<Map*>(vector->Add(NodeTypeMap, kTagOf1Learned)), with);
}

TEST_F(ReuseTest, AFirstMapOfTag107WithOverflowDecidesTheOtherWay) {
    Wait(kTagOf1Learned, true);  // decided: with
    static_cast<void>(root->Add(NodeTypeMap, kTagOf1Learned));
    Map* const second = Make(kTagOf1Learned);
    root->Remove(second->GetIndex());  // without, but too late
    static_cast<void>(root->Add(NodeTypeMap, kTagOf1));
    const auto sibling = tree->CreateTreeInForest();
    auto* const vector = static_cast<Vector*>(sibling->NewRoot(NodeTypeVector));
    auto* const plain = static_cast<Map*>(vector->Add(NodeTypeMap, kTagOf8));
    auto* const with = static_cast<Map*>(vector->Add(NodeTypeMap, kTagOf16));
    with->NewNode(100, NodeTypeInteger);
    vector->Clear();
    EXPECT_EQ(static_cast<Map*>(vector->Add(NodeTypeMap, kTagOf1Learned)), with);
    EXPECT_EQ(static_cast<Map*>(vector->Add(NodeTypeMap, kTagOf1Learned)), plain);
}
