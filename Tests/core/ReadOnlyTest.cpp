#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Iterator.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Vector.h>
#include <KivGenerics/VisitorNode.h>

#include "support/Kinds.h"
#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::kAllKinds;
using KivTests::NewTree;
using KivTests::TextOf;

namespace {

constexpr const char* kReadOnly = "Operation not allowed on a read-only tree!";

struct Row {
    const char* name;
    std::function<void()> change;
};

class Remover final : public VisitorNode {
public:
    VisitCode VisitNode(Node*, bool, NodeType) override { return VisitRemove; }
};

// A tree with a node of every kind in `map`, at the index of its kind's number, and its copy in `other`.
class ReadOnlyTest : public ::testing::Test {
protected:
    KivBase::ReturnPtrI<Tree> tree = NewTree();
    KivBase::ReturnPtrI<Tree> other = NewTree();
    Map* map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Vector* vector = nullptr;
    Map* inner = nullptr;
    Node* free = nullptr;

    void SetUp() override {
        for (const NodeType kind : kAllKinds) {
            map->NewNode(kind, kind);
        }
        vector = At<Vector>();
        inner = At<Map>();
        vector->Add(NodeTypeInteger);
        vector->Add(NodeTypeInteger);
        inner->NewNode(0, NodeTypeInteger);
        inner->NewNode(100, NodeTypeInteger);
        free = map->NewNode(20, NodeTypeInteger);
        free->Detach();
        other->CopyFromTree(tree.Get());
        tree->SetReadOnly();
    }

    template <class T>
    T* At() const {
        return static_cast<T*>(map->Get(T::StaticType));
    }
    template <class T>
    T* Theirs() const {
        return static_cast<T*>(static_cast<Map*>(other->GetRoot())->Get(T::StaticType));
    }

    void ExpectEachThrows(const std::vector<Row>& rows, const std::string& text = kReadOnly) {
        const int count = tree->GetChangeCount();
        for (const Row& row : rows) {
            EXPECT_EQ(TextOf(row.change), text) << row.name;
            EXPECT_EQ(tree->GetChangeCount(), count) << row.name;
            EXPECT_EQ(map->Compare(other->GetRoot(), TemporalityTemporary, false), 0) << row.name;
            EXPECT_TRUE(tree->IsReadOnly()) << row.name;
        }
    }
};

}  // namespace

TEST_F(ReadOnlyTest, EveryChangeOfTheTreeIsRefused) {
    ExpectEachThrows({
        {"RemoveRoot", [this] { tree->RemoveRoot(); }},
        {"ClearTemporaryNodes", [this] { tree->ClearTemporaryNodes(); }},
        {"SetRoot", [this] { tree->SetRoot(free); }},
        {"SetRoot of the root", [this] { tree->SetRoot(map); }},
        {"NewRoot", [this] { tree->NewRoot(NodeTypeMap); }},
        {"NewRoot keeping", [this] { tree->NewRoot(NodeTypeMap, true); }},
        {"CopyFromTree", [this] { tree->CopyFromTree(other.Get()); }},
        {"CopyFromNode", [this] { tree->CopyFromNode(other->GetRoot()); }},
        {"ResetChangeCount", [this] { tree->ResetChangeCount(); }},
        {"LoadFromStream", [this] { tree->LoadFromStream(nullptr); }},
        {"LoadFromArchive", [this] { tree->LoadFromArchive(nullptr); }},
    });
}

TEST_F(ReadOnlyTest, EveryChangeThatAllKindsShareIsRefused) {
    for (const NodeType kind : kAllKinds) {
        SCOPED_TRACE(kind);
        Node* const node = map->Get(kind);
        Node* const theirs = static_cast<Map*>(other->GetRoot())->Get(kind);
        ExpectEachThrows({
            {"SetTemporality", [&] { node->SetTemporality(TemporalityTransient); }},
            {"Clear", [&] { node->Clear(); }},
            {"Remove", [&] { node->Remove(); }},
            {"Detach", [&] { node->Detach(); }},
            {"Populate", [&] { node->Populate(theirs); }},
            {"Populate from itself", [&] { node->Populate(node); }},
            {"MergeWith", [&] { node->MergeWith(theirs, false); }},
        });
    }
}

TEST_F(ReadOnlyTest, EveryChangeOfAValueIsRefused) {
    ExpectEachThrows({
        {"Integer::Set", [this] { At<Integer>()->Set(1); }},
        {"Integer64::Set", [this] { At<Integer64>()->Set(1); }},
        {"Double::Set", [this] { At<Double>()->Set(1); }},
        {"Boolean::Set", [this] { At<Boolean>()->Set(true); }},
        {"GlobalID::Set", [this] { At<GlobalID>()->Set(GUID{1, 2, 3, {}}); }},
        {"String::Set", [this] { At<String>()->Set(u"text"); }},
        {"String::Set of a text", [this] { At<String>()->Set(KivBase::WString(u"text")); }},
        {"Integer::Populate", [this] { At<Integer>()->Populate(Theirs<Integer>()); }},
        {"Integer64::Populate", [this] { At<Integer64>()->Populate(Theirs<Integer64>()); }},
        {"Double::Populate", [this] { At<Double>()->Populate(Theirs<Double>()); }},
        {"Boolean::Populate", [this] { At<Boolean>()->Populate(Theirs<Boolean>()); }},
        {"GlobalID::Populate", [this] { At<GlobalID>()->Populate(Theirs<GlobalID>()); }},
        {"String::Populate", [this] { At<String>()->Populate(Theirs<String>()); }},
        {"IntegerSet::Populate", [this] { At<IntegerSet>()->Populate(Theirs<IntegerSet>()); }},
        {"IdSet::Populate", [this] { At<IdSet>()->Populate(Theirs<IdSet>()); }},
        {"StringSet::Populate", [this] { At<StringSet>()->Populate(Theirs<StringSet>()); }},
        {"DoubleSet::Populate", [this] { At<DoubleSet>()->Populate(Theirs<DoubleSet>()); }},
    });
}

TEST_F(ReadOnlyTest, EveryChangeOfAMapIsRefused) {
    ExpectEachThrows({
        {"SetSemanticTag", [this] { inner->SetSemanticTag(SemanticTag(9)); }},
        {"NewNode in a free slot", [this] { inner->NewNode(3, NodeTypeInteger); }},
        {"NewNode over a child", [this] { inner->NewNode(0, NodeTypeInteger); }},
        {"NewNode keeping", [this] { inner->NewNode(0, NodeTypeMap, true); }},
        {"NewNode in the overflow store", [this] { inner->NewNode(50, NodeTypeInteger); }},
        {"NewNode making the overflow store", [this] { map->NewNode(50, NodeTypeInteger); }},
        {"ReplaceWithCopy", [this] { inner->ReplaceWithCopy(0, other->GetRoot()); }},
        {"Move", [this] { inner->Move(3, vector->Get(0)); }},
        {"Move into the overflow store", [this] { inner->Move(50, vector->Get(0)); }},
        {"Move of a free node", [this] { inner->Move(3, free); }},
        {"Remove", [this] { inner->Remove(0); }},
        {"Remove from the overflow store", [this] { inner->Remove(100); }},
        {"Detach", [this] { inner->Detach(0); }},
        {"Detach from the overflow store", [this] { inner->Detach(100); }},
    });
    EXPECT_EQ(inner->Get(50), nullptr);
}

TEST_F(ReadOnlyTest, EveryChangeOfAVectorIsRefused) {
    ExpectEachThrows({
        {"NewNode at the end", [this] { vector->NewNode(2, NodeTypeInteger); }},
        {"NewNode over a child", [this] { vector->NewNode(0, NodeTypeInteger); }},
        {"NewNode keeping", [this] { vector->NewNode(0, NodeTypeVector, true); }},
        {"ReplaceWithCopy", [this] { vector->ReplaceWithCopy(0, other->GetRoot()); }},
        {"Add", [this] { vector->Add(NodeTypeInteger); }},
        {"Insert", [this] { vector->Insert(0, NodeTypeString); }},
        {"AddCopy", [this] { vector->AddCopy(Theirs<Integer>()); }},
        {"InsertCopy", [this] { vector->InsertCopy(0, other->GetRoot()); }},
        {"InsertNode", [this] { vector->InsertNode(0, free); }},
        {"Move of an element", [this] { vector->Move(1, vector->Get(0)); }},
        {"Move of another node", [this] { vector->Move(1, At<Integer>()); }},
        {"Move of a free node", [this] { vector->Move(1, free); }},
        {"Remove", [this] { vector->Remove(0); }},
        {"Detach", [this] { vector->Detach(0); }},
        {"Populate", [this] { vector->Populate(Theirs<Vector>()); }},
    });
    EXPECT_EQ(free->GetParent(), nullptr);
}

TEST_F(ReadOnlyTest, RemovingOnAWalkIsRefused) {
    ExpectEachThrows({
        {"RemoveCurrent",
         [this] {
             const auto iterator = map->GetIterator();
             iterator->Next();
             iterator->Next();
             iterator->RemoveCurrent();
         }},
        {"VisitRemove",
         [this] {
             Remover remover;
             map->Iterate(&remover, SemanticTagNone, IterateChildren);
         }},
        {"VisitRemove of the start",
         [this] {
             Remover remover;
             map->Iterate(&remover, SemanticTagNone, IterateSelf);
         }},
        {"VisitRemove in a vector",
         [this] {
             Remover remover;
             vector->Iterate(&remover, SemanticTagNone, 0);
         }},
    });
}

TEST_F(ReadOnlyTest, AnArgumentThatIsCheckedFirstIsRefusedWithItsOwnText) {
    const struct {
        const char* text;
        std::function<void()> change;
    } rows[] = {
        {"Index out of range", [this] { inner->NewNode(-1, NodeTypeInteger); }},
        {"Index out of range", [this] { vector->NewNode(3, NodeTypeInteger); }},
        {"Index out of range", [this] { vector->Insert(-1, NodeTypeInteger); }},
        {"Index out of range", [this] { vector->Move(3, free); }},
        {"Move::Index already in use!", [this] { inner->Move(0, free); }},
        {"Index out of range", [this] { inner->Move(-1, free); }},
        {"Move::Node can't be NULL!", [this] { inner->Move(3, nullptr); }},
        {"Move::Node can't be NULL!", [this] { vector->Move(0, nullptr); }},
        {"Move::Node can't be NULL!", [this] { inner->ReplaceWithCopy(3, nullptr); }},
        {"Move::Node can't be NULL!", [this] { vector->AddCopy(nullptr); }},
        {"Move::Node can't be NULL!", [this] { vector->InsertCopy(0, nullptr); }},
        {"Can't perform this operation on an ancestor", [this] { inner->Move(3, map); }},
        {"Can't perform this operation on an ancestor", [this] { vector->ReplaceWithCopy(0, map); }},
        {"Move::Can't move a node from a different tree!", [this] { inner->Move(3, other->GetRoot()); }},
        {"Move::Index out of range!", [this] { vector->Move(2, vector->Get(0)); }},
        {"Vector::Add::Different children type", [this] { vector->Add(NodeTypeString); }},
        {"Vector::Add::Different children type", [this] { vector->AddCopy(other->GetRoot()); }},
        {"Can't copy NULL node!", [this] { vector->Populate(static_cast<Vector*>(nullptr)); }},
        {"Stream is NULL!", [this] { tree->SaveToStream(nullptr, true); }},
        {"Archive is NULL!", [this] { tree->SaveToArchive(nullptr, true, 255); }},
        {"Archive is NULL!", [this] { tree->SizeArchive(nullptr, true); }},
    };
    for (const auto& row : rows) {
        ExpectEachThrows({{row.text, row.change}}, row.text);
    }
}

TEST_F(ReadOnlyTest, AnArgumentThatIsCheckedLaterIsNotLookedAt) {
    ExpectEachThrows({
        {"SetRoot(null)", [this] { tree->SetRoot(nullptr); }},
        {"NewRoot of no kind", [this] { tree->NewRoot(NodeType(13)); }},
        {"NewRoot of a leaf keeping", [this] { tree->NewRoot(NodeTypeInteger, true); }},
        {"CopyFromTree(null)", [this] { tree->CopyFromTree(nullptr); }},
        {"CopyFromNode(null)", [this] { tree->CopyFromNode(nullptr); }},
        {"Populate(null)", [this] { inner->Populate(static_cast<Node*>(nullptr)); }},
        {"Populate from another kind", [this] { inner->Populate(vector); }},
        {"MergeWith(null)", [this] { inner->MergeWith(nullptr, true); }},
        {"NewNode of no kind", [this] { inner->NewNode(0, NodeType(13)); }},
        {"NewNode of a leaf keeping", [this] { inner->NewNode(0, NodeTypeInteger, true); }},
        {"Map::Remove of nothing", [this] { inner->Remove(-5); }},
        {"Map::Detach of nothing", [this] { inner->Detach(3); }},
        {"Vector::Remove of nothing", [this] { vector->Remove(99); }},
        {"InsertNode at no index", [this] { vector->InsertNode(-1, nullptr); }},
    });
}

TEST_F(ReadOnlyTest, WhatChangesNothingIsAllowed) {
    const int count = tree->GetChangeCount();
    EXPECT_EQ(TextOf([this] {
                  tree->SetReadOnly();
                  vector->Reserve(100);
                  const auto iterator = map->GetIterator();
                  iterator->RemoveCurrent();
                  tree->CreateTreeInForest()->NewRoot(NodeTypeInteger);
                  other->CopyFromTree(tree.Get());
              }),
              "");
    EXPECT_EQ(tree->GetChangeCount(), count);
    EXPECT_EQ(map->Compare(other->GetRoot(), TemporalityTemporary, true), 0);
}
