#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivStorage/SaveTree.h>
#include <KivStorage/UnsavedParts.h>
#include <gtest/gtest.h>

#include "storage/Support.h"

using namespace KivGenerics;
using namespace KivStorage;
using namespace StorageTest;

namespace {

const char* NameOf(UnsavedReason reason) {
    switch (reason) {
        case UnsavedReason::RootNotAMap: return "RootNotAMap";
        case UnsavedReason::RootNotSaved: return "RootNotSaved";
        case UnsavedReason::RootLeaf: return "RootLeaf";
        case UnsavedReason::RootChildOutsideSlots: return "RootChildOutsideSlots";
        case UnsavedReason::RootSlotCountChanges: return "RootSlotCountChanges";
        case UnsavedReason::EmptyComposite: return "EmptyComposite";
        case UnsavedReason::MixedKinds: return "MixedKinds";
        case UnsavedReason::MixedTemporality: return "MixedTemporality";
        case UnsavedReason::TransientElement: return "TransientElement";
        case UnsavedReason::TemporalityNotHeld: return "TemporalityNotHeld";
        case UnsavedReason::SemanticTagNotHeld: return "SemanticTagNotHeld";
        case UnsavedReason::Integer64Bit31: return "Integer64Bit31";
        case UnsavedReason::TextHasNul: return "TextHasNul";
        case UnsavedReason::TextTooLong: return "TextTooLong";
        case UnsavedReason::NestingTooDeep: return "NestingTooDeep";
    }
    return "unknown";
}

/// `0:3: TextHasNul; 0:4: TextTooLong`
std::string Find(Tree* tree, bool withTransient = false) {
    std::string text;
    for (const UnsavedPart& part : FindUnsavedParts(tree, withTransient)) {
        text += (text.empty() ? "" : "; ") + std::string(part.key.begin(), part.key.end());
        text += (part.key.empty() ? "" : " ") + std::string(NameOf(part.reason));
        EXPECT_GT(part.sentence.size(), 20u);
        EXPECT_EQ('.', part.sentence.back());
        EXPECT_NE(nullptr, tree->FindNodeByKey(part.key));
    }
    return text;
}

class UnsavedPartsTest : public testing::Test {
protected:
    Node* Set(Node* node, EnumOrvGenericsTemporality t) {
        node->SetTemporality(t);
        return node;
    }
    Vector* AddVector() { return static_cast<Vector*>(map->NewNode(1, NodeTypeVector)); }

    KivBase::ReturnPtrI<Tree> tree = NewTree();
    Map* root = NewRootMap(tree.Get());
    Map* map = static_cast<Map*>(root->NewNode(0, NodeTypeMap));
};

TEST_F(UnsavedPartsTest, NothingIsFoundWhereEverythingIsSaved) {
    EXPECT_EQ("", Find(TreeOfEveryKind().Get()));
    EXPECT_EQ("", Find(NewTree().Get()));
    EXPECT_EQ("", Find(tree.Get()));
    EXPECT_TRUE(FindUnsavedParts(nullptr).empty());
}

TEST_F(UnsavedPartsTest, ARootThatIsNoMap) {
    tree->NewRoot(NodeTypeInteger);
    EXPECT_EQ("RootNotAMap", Find(tree.Get()));
    Set(tree->NewRoot(NodeTypeVector), TemporalityPersistent);
    EXPECT_EQ("RootNotAMap", Find(tree.Get()));
    Set(tree->NewRoot(NodeTypeVector), TemporalityTransient);
    EXPECT_EQ("RootNotAMap; RootNotSaved", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, ARootThatIsTooTransientOrEmptyOfDefaultTemporality) {
    Set(root, TemporalityTransient);
    EXPECT_EQ("RootNotSaved", Find(tree.Get()));
    EXPECT_EQ("", Find(tree.Get(), true));
    Set(root, TemporalityTemporary);
    EXPECT_EQ("RootNotSaved", Find(tree.Get(), true));
    Set(root, TemporalityDefault);
    root->Clear();
    EXPECT_EQ("RootNotSaved", Find(tree.Get()));
    Set(root, TemporalityPersistent);
    EXPECT_EQ("", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, AValueInTheRoot) {
    root->NewNode(1, NodeTypeInteger);
    root->NewNode(9, NodeTypeString);
    EXPECT_EQ("1: RootLeaf; 9: RootLeaf", Find(tree.Get()));
    Set(root->Get(1), TemporalityTransient);
    Set(root->Get(9), TemporalityTemporary);
    EXPECT_EQ("", Find(tree.Get()));
    EXPECT_EQ("1: RootLeaf", Find(tree.Get(), true));
}

TEST_F(UnsavedPartsTest, AChildOfTheRootBeyondItsFixedSlots) {
    root->NewNode(7, NodeTypeMap);
    EXPECT_EQ("", Find(tree.Get()));
    root->NewNode(8, NodeTypeVector);
    EXPECT_EQ("8: RootChildOutsideSlots", Find(tree.Get()));
    root->Get(8)->SetTemporality(TemporalityTransient);
    EXPECT_EQ("", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, ARootWhoseTagGivesAnotherNumberOfSlots) {
    root->SetSemanticTag(SemanticTag(2));  // 4 slots
    EXPECT_EQ("RootSlotCountChanges", Find(tree.Get()));
    root->SetSemanticTag(SemanticTag(103));  // 8 slots
    EXPECT_EQ("", Find(tree.Get()));
    root->SetSemanticTag(SemanticTag(4213));  // 25 slots asked for, 8 given
    EXPECT_EQ("", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, ASemanticTagOfZeroOrBelow) {
    map->SetSemanticTag(SemanticTag(0));
    EXPECT_EQ("0: SemanticTagNotHeld", Find(tree.Get()));
    map->SetSemanticTag(SemanticTag(-5));
    EXPECT_EQ("0: SemanticTagNotHeld", Find(tree.Get()));
    map->SetSemanticTag(SemanticTag(0x7FFFFFFF));
    EXPECT_EQ("", Find(tree.Get()));
    root->SetSemanticTag(SemanticTag(0));
    EXPECT_EQ("SemanticTagNotHeld", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, AnEmptyCompositeOfDefaultTemporality) {
    Set(map->NewNode(1, NodeTypeVector), TemporalityDefault);
    Set(map->NewNode(2, NodeTypeMap), TemporalityDefault);
    map->NewNode(3, NodeTypeMap);
    EXPECT_EQ("0:1: EmptyComposite; 0:2: EmptyComposite", Find(tree.Get()));
    EXPECT_EQ("0:1: EmptyComposite; 0:2: EmptyComposite", Find(tree.Get(), true));
}

TEST_F(UnsavedPartsTest, AnEmptyCompositeBelowOthersThatAreLostForItsSake) {
    auto* const outer = static_cast<Map*>(Set(map->NewNode(1, NodeTypeMap), TemporalityDefault));
    auto* const middle = static_cast<Vector*>(Set(outer->NewNode(4, NodeTypeVector), TemporalityDefault));
    middle->Add(NodeTypeMap);
    Set(outer->NewNode(5, NodeTypeInteger), TemporalityTemporary);
    EXPECT_EQ("0:1:4:0: EmptyComposite", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, AnEmptyCompositeInAVectorThatIsSavedIsSavedWithIt) {
    AddVector()->Add(NodeTypeMap);
    EXPECT_EQ("", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, WhatIsLeftOutOnPurposeIsNoLossAndNothingBelowItIs) {
    auto* const left = static_cast<Map*>(Set(map->NewNode(1, NodeTypeMap), TemporalityTransient));
    left->SetSemanticTag(SemanticTag(-1));
    Set(left->NewNode(1, NodeTypeMap), TemporalityDefault);
    static_cast<Integer64*>(left->NewNode(2, NodeTypeInteger64))->Set(0x80000000LL);
    EXPECT_EQ("", Find(tree.Get()));
    EXPECT_EQ("0:1: SemanticTagNotHeld; 0:1:1: EmptyComposite; 0:1:2: Integer64Bit31", Find(tree.Get(), true));
    // A composite of default temporality all of whose children are left out on purpose goes with them.
    auto* const with = static_cast<Map*>(Set(map->NewNode(2, NodeTypeMap), TemporalityDefault));
    Set(with->NewNode(0, NodeTypeInteger), TemporalityTemporary);
    EXPECT_EQ("", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, ElementsOfMixedKinds) {
    Vector* const vector = AddVector();
    vector->Add(NodeTypeInteger);
    vector->Insert(1, NodeTypeBoolean);
    vector->Insert(2, NodeTypeInteger);
    vector->Insert(3, NodeTypeMap);
    EXPECT_EQ("0:1:1: MixedKinds; 0:1:3: MixedKinds", Find(tree.Get()));
    vector->Clear();
    vector->Add(NodeTypeVector);
    vector->Insert(1, NodeTypeMap);
    EXPECT_EQ("0:1:1: MixedKinds", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, ElementsOfMixedTemporality) {
    Vector* const vector = AddVector();
    vector->Add(NodeTypeInteger);
    vector->Add(NodeTypeInteger);
    Set(vector->Add(NodeTypeInteger), TemporalityPersistent);
    EXPECT_EQ("0:1:2: MixedTemporality", Find(tree.Get()));
    vector->Clear();
    // Composites are saved with their own.
    vector->Add(NodeTypeMap);
    Set(vector->Add(NodeTypeMap), TemporalityPersistent);
    EXPECT_EQ("", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, ATransientElementInAPersistentVector) {
    Vector* const vector = AddVector();
    Set(vector->Add(NodeTypeInteger), TemporalityTransient);
    EXPECT_EQ("0:1:0: TransientElement", Find(tree.Get()));
    EXPECT_EQ("", Find(tree.Get(), true));
    vector->Clear();
    vector->Add(NodeTypeMap);
    Set(vector->Add(NodeTypeMap), TemporalityTransient);
    EXPECT_EQ("0:1:1: TransientElement", Find(tree.Get()));
    // A vector of default temporality takes on that of its least transient element.
    Set(vector, TemporalityDefault);
    Set(vector->Get(0), TemporalityPersistent);
    EXPECT_EQ("0:1:1: TransientElement", Find(tree.Get()));
    Set(vector->Get(0), TemporalityTransient);
    EXPECT_EQ("", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, ATemporalityOfFourOrAboveInTheFirstElement) {
    Vector* const vector = AddVector();
    Set(vector->Add(NodeTypeInteger), TemporalityTemporary);
    EXPECT_EQ("0:1:0: TransientElement; 0:1:0: TemporalityNotHeld", Find(tree.Get()));
    Set(vector->Get(0), static_cast<EnumOrvGenericsTemporality>(9));
    EXPECT_EQ("0:1:0: TransientElement; 0:1:0: TemporalityNotHeld", Find(tree.Get(), true));
    Set(vector->Add(NodeTypeInteger), static_cast<EnumOrvGenericsTemporality>(9));
    EXPECT_EQ("0:1:0: TransientElement; 0:1:0: TemporalityNotHeld; 0:1:1: TransientElement", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, ATemporalityBelowZero) {
    const auto below = static_cast<EnumOrvGenericsTemporality>(-1);
    Set(map->NewNode(3, NodeTypeInteger), below);
    Set(map->NewNode(4, NodeTypeMap), below);
    EXPECT_EQ("0:3: TemporalityNotHeld; 0:4: TemporalityNotHeld", Find(tree.Get()));
    Set(map->Get(3), TemporalityReserved);
    Set(map->Get(4), TemporalityReserved);
    EXPECT_EQ("", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, A64BitNumberWithBit31Set) {
    auto* const number = static_cast<Integer64*>(map->NewNode(3, NodeTypeInteger64));
    for (const std::int64_t value : {std::int64_t{0x80000000}, std::int64_t{-1}, std::int64_t{0x1FFFFFFFF}}) {
        number->Set(value);
        EXPECT_EQ("0:3: Integer64Bit31", Find(tree.Get())) << value;
    }
    for (const std::int64_t value : {std::int64_t{0x7FFFFFFF}, std::int64_t{0x100000000}, -std::int64_t{0x100000000}}) {
        number->Set(value);
        EXPECT_EQ("", Find(tree.Get())) << value;
    }
}

TEST_F(UnsavedPartsTest, ATextWithNul) {
    auto* const text = static_cast<String*>(map->NewNode(3, NodeTypeString));
    text->Set(KivBase::WString(u"a\0b", 3));
    EXPECT_EQ("0:3: TextHasNul", Find(tree.Get()));
    text->Set(KivBase::WString(u"a\0", 2));
    EXPECT_EQ("0:3: TextHasNul", Find(tree.Get()));
    text->Set(u"a");
    EXPECT_EQ("", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, ATextThatIsTooLongAlsoInASet) {
    auto* const text = static_cast<String*>(map->NewNode(3, NodeTypeString));
    auto* const texts = static_cast<StringSet*>(map->NewNode(4, NodeTypeStringSet));
    text->Set(KivBase::WString(256000, u'x'));
    texts->Add(KivBase::WString(256000, u'x'));
    EXPECT_EQ("", Find(tree.Get()));
    text->Set(KivBase::WString(256001, u'x'));
    texts->Add(KivBase::WString(256001, u'x'));
    EXPECT_EQ("0:3: TextTooLong; 0:4: TextTooLong", Find(tree.Get()));
}

TEST_F(UnsavedPartsTest, NestingBeyondTheLimit) {
    Map* last = map;
    for (int level = 3; level <= 1000; ++level) {
        last = static_cast<Map*>(last->NewNode(0, NodeTypeMap));
    }
    EXPECT_EQ("", Find(tree.Get()));
    Map* const beyond = static_cast<Map*>(last->NewNode(2, NodeTypeMap));
    beyond->NewNode(0, NodeTypeMap);
    const auto parts = FindUnsavedParts(tree.Get());
    ASSERT_EQ(1u, parts.size());
    EXPECT_EQ(UnsavedReason::NestingTooDeep, parts[0].reason);
    EXPECT_EQ(beyond, tree->FindNodeByKey(parts[0].key));
}

TEST_F(UnsavedPartsTest, ATreeTooDeepForAnyStackIsLookedAtAllTheSame) {
    Composite* last = map;
    for (int level = 0; level < 1000000; ++level) {
        last = static_cast<Composite*>(last->NewNode(0, NodeTypeMap));
    }
    const auto parts = FindUnsavedParts(tree.Get());
    ASSERT_EQ(1u, parts.size());
    EXPECT_EQ(UnsavedReason::NestingTooDeep, parts[0].reason);
    Bytes bytes;
    SaveOptions options;
    options.saveDespiteLosses = true;
    EXPECT_EQ(StorageTreeTooDeep, SaveTreeToMemory(tree.Get(), bytes, options).code);
}

TEST_F(UnsavedPartsTest, LookingChangesNothing) {
    map->NewNode(1, NodeTypeInteger);
    const int changes = tree->GetChangeCount();
    tree->SetReadOnly();
    EXPECT_EQ("", Find(tree.Get()));
    EXPECT_EQ(changes, tree->GetChangeCount());
    EXPECT_TRUE(tree->IsReadOnly());
}

}  // namespace
