#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Iterator.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>
#include <KivGenerics/VisitorNode.h>

#include "core/Tape.h"
#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::NewTree;

namespace {

constexpr SemanticTag kTag = SemanticTag(9);

class RemovingVisitor final : public VisitorNode {
public:
    explicit RemovingVisitor(const Node* victim) : victim_(victim) {}
    VisitCode VisitNode(Node* node, bool, NodeType) override { return node == victim_ ? VisitRemove : VisitContinue; }

private:
    const Node* victim_;
};

// A tree of 15 nodes and a free leaf.
struct Fixture {
    KivBase::ReturnPtrI<Tree> tree = NewTree();
    KivBase::ReturnPtrI<Tree> empty = NewTree();
    Map* root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Integer* leaf = static_cast<Integer*>(root->NewNode(0, NodeTypeInteger));
    Map* nested = static_cast<Map*>(root->NewNode(1, NodeTypeMap));            // 5 nodes
    Vector* vector = static_cast<Vector*>(root->NewNode(2, NodeTypeVector));   // 4 nodes
    Map* tagged = static_cast<Map*>(root->NewNode(3, NodeTypeMap, false, SemanticTag(7)));
    IntegerSet* set = static_cast<IntegerSet*>(root->NewNode(4, NodeTypeIntegerSet));
    Map* far = static_cast<Map*>(root->NewNode(100, NodeTypeMap));             // 2 nodes, in the overflow store
    Node* free = root->NewNode(7, NodeTypeInteger);

    Fixture() {
        auto* const list = static_cast<Vector*>(nested->NewNode(0, NodeTypeVector));
        list->Add(NodeTypeInteger);
        list->Add(NodeTypeInteger);
        nested->NewNode(1, NodeTypeInteger);
        for (int i = 0; i < 3; ++i) {
            vector->Add(NodeTypeInteger);
        }
        far->NewNode(0, NodeTypeInteger);
        free->Detach();
    }

    void RemoveOnWalk(Node* start, const Node* victim, int flags) const {
        RemovingVisitor visitor(victim);
        start->Iterate(&visitor, SemanticTagNone, flags);
    }
};

struct Row {
    const char* name;
    int changes;
    std::function<void(Fixture&, Fixture&)> change;  // this tree, and another of the same shape
};

void ExpectEach(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        Fixture here;
        Fixture other;
        here.tree->ResetChangeCount();
        other.tree->ResetChangeCount();
        row.change(here, other);
        EXPECT_EQ(here.tree->GetChangeCount() + here.empty->GetChangeCount(), row.changes) << row.name;
        EXPECT_EQ(other.tree->GetChangeCount(), 0) << row.name;
    }
}

}  // namespace

TEST(ChangeCountTest, ValuesAndSettingsCountOnceAndSetsNotAtAll) {
    ExpectEach({
        {"Set", 1, [](Fixture& f, Fixture&) { f.leaf->Set(5); }},
        {"Clear of a leaf", 1, [](Fixture& f, Fixture&) { f.leaf->Clear(); }},
        {"Clear of a set", 1, [](Fixture& f, Fixture&) { f.set->Clear(); }},
        {"SetTemporality", 1, [](Fixture& f, Fixture&) { f.root->SetTemporality(TemporalityTransient); }},
        {"SetSemanticTag", 1, [](Fixture& f, Fixture&) { f.root->SetSemanticTag(kTag); }},
        {"the operations of a set", 0,
         [](Fixture& f, Fixture&) {
             IntegerSet::Elements elements;
             f.set->Add(5);
             f.set->Get(elements);
             f.set->Set(elements);
             f.set->Remove(5);
         }},
        {"Populate of a leaf", 1, [](Fixture& f, Fixture& o) { f.leaf->Populate(o.leaf); }},
        {"Populate of a leaf from itself", 1, [](Fixture& f, Fixture&) { f.leaf->Populate(f.leaf); }},
        {"MergeWith of a leaf", 1, [](Fixture& f, Fixture& o) { f.leaf->MergeWith(o.leaf, false); }},
        {"MergeWith of empty maps", 1, [](Fixture& f, Fixture& o) { f.tagged->MergeWith(o.tagged, false); }},
    });
}

TEST(ChangeCountTest, ClearingACompositeCountsEveryNodeOfIt) {
    ExpectEach({
        {"an empty map", 1, [](Fixture& f, Fixture&) { f.tagged->Clear(); }},
        {"a vector", 4, [](Fixture& f, Fixture&) { f.vector->Clear(); }},
        {"a nested map", 5, [](Fixture& f, Fixture&) { f.nested->Clear(); }},
        {"the root", 15, [](Fixture& f, Fixture&) { f.root->Clear(); }},
    });
}

TEST(ChangeCountTest, Roots) {
    ExpectEach({
        {"NewRoot", 1, [](Fixture& f, Fixture&) { f.empty->NewRoot(NodeTypeMap); }},
        {"NewRoot of a tagged map", 2, [](Fixture& f, Fixture&) { f.empty->NewRoot(NodeTypeMap, true, kTag); }},
        {"NewRoot over a root", 16, [](Fixture& f, Fixture&) { f.tree->NewRoot(NodeTypeInteger); }},
        {"NewRoot over a root, tagged", 17, [](Fixture& f, Fixture&) { f.tree->NewRoot(NodeTypeMap, false, kTag); }},
        {"NewRoot keeping, a vector", 2, [](Fixture& f, Fixture&) { f.tree->NewRoot(NodeTypeVector, true); }},
        {"NewRoot keeping, a map", 2, [](Fixture& f, Fixture&) { f.tree->NewRoot(NodeTypeMap, true); }},
        {"NewRoot keeping, tagged", 3, [](Fixture& f, Fixture&) { f.tree->NewRoot(NodeTypeMap, true, kTag); }},
        {"RemoveRoot", 16, [](Fixture& f, Fixture&) { f.tree->RemoveRoot(); }},
        {"RemoveRoot of an empty tree", 1, [](Fixture& f, Fixture&) { f.empty->RemoveRoot(); }},
        {"SetRoot of a free node", 17, [](Fixture& f, Fixture&) { f.tree->SetRoot(f.free); }},
        {"SetRoot of a leaf below", 17, [](Fixture& f, Fixture&) { f.tree->SetRoot(f.leaf); }},
        {"SetRoot of a map below", 13, [](Fixture& f, Fixture&) { f.tree->SetRoot(f.nested); }},
        {"SetRoot of the root", 17, [](Fixture& f, Fixture&) { f.tree->SetRoot(f.root); }},
        {"ResetChangeCount", 0, [](Fixture& f, Fixture&) { f.tree->ResetChangeCount(); }},
        {"SetReadOnly", 0, [](Fixture& f, Fixture&) { f.tree->SetReadOnly(); }},
        {"ClearTemporaryNodes of nothing", 1, [](Fixture& f, Fixture&) { f.tree->ClearTemporaryNodes(); }},
        {"ClearTemporaryNodes of an empty tree", 1, [](Fixture& f, Fixture&) { f.empty->ClearTemporaryNodes(); }},
        {"ClearTemporaryNodes of a map of five, set transient", 8,
         [](Fixture& f, Fixture&) {
             f.nested->SetTemporality(TemporalityTransient);
             f.tree->ClearTemporaryNodes();
         }},
    });
}

TEST(ChangeCountTest, CopiesCountWhatTheyMakeAndWhatTheyReplace) {
    ExpectEach({
        {"CopyFromNode of a leaf into nothing", 4, [](Fixture& f, Fixture& o) { f.empty->CopyFromNode(o.leaf); }},
        {"CopyFromNode of a leaf", 19, [](Fixture& f, Fixture& o) { f.tree->CopyFromNode(o.leaf); }},
        {"CopyFromNode of a vector", 26, [](Fixture& f, Fixture& o) { f.tree->CopyFromNode(o.vector); }},
        {"CopyFromNode of a map of five", 32, [](Fixture& f, Fixture& o) { f.tree->CopyFromNode(o.nested); }},
        {"CopyFromNode of a root", 66, [](Fixture& f, Fixture& o) { f.tree->CopyFromNode(o.root); }},
        {"CopyFromTree", 67, [](Fixture& f, Fixture& o) { f.tree->CopyFromTree(o.tree.Get()); }},
        {"CopyFromTree into nothing", 52, [](Fixture& f, Fixture& o) { f.empty->CopyFromTree(o.tree.Get()); }},
        {"CopyFromTree of nothing", 17, [](Fixture& f, Fixture& o) { f.tree->CopyFromTree(o.empty.Get()); }},
        {"Populate of an empty map", 13, [](Fixture& f, Fixture& o) { f.tagged->Populate(o.nested); }},
        {"Populate of a full map", 17, [](Fixture& f, Fixture& o) { f.nested->Populate(o.nested); }},
        {"Populate of the root", 61, [](Fixture& f, Fixture& o) { f.root->Populate(o.root); }},
        {"Populate of a vector", 11, [](Fixture& f, Fixture& o) { f.vector->Populate(static_cast<Node*>(o.vector)); }},
        {"Populate of a vector from a vector", 10, [](Fixture& f, Fixture& o) { f.vector->Populate(o.vector); }},
        {"MergeWith that copies a missing child of five", 17,
         [](Fixture& f, Fixture& o) {
             o.tagged->SetSemanticTag(SemanticTag(1));
             o.tagged->Move(5, o.nested);
             o.tree->SetRoot(o.tagged);
             f.far->MergeWith(o.tagged, false);
             o.tree->ResetChangeCount();
         }},
    });
}

TEST(ChangeCountTest, MakingNodes) {
    ExpectEach({
        {"NewNode in a slot", 2, [](Fixture& f, Fixture&) { f.root->NewNode(5, NodeTypeInteger); }},
        {"NewNode of a tagged map", 3, [](Fixture& f, Fixture&) { f.root->NewNode(5, NodeTypeMap, false, kTag); }},
        {"NewNode in the overflow store", 2, [](Fixture& f, Fixture&) { f.root->NewNode(200, NodeTypeInteger); }},
        {"NewNode making the store", 2, [](Fixture& f, Fixture&) { f.nested->NewNode(200, NodeTypeInteger); }},
        {"NewNode over a leaf", 3, [](Fixture& f, Fixture&) { f.root->NewNode(0, NodeTypeInteger); }},
        {"NewNode over a map of five", 7, [](Fixture& f, Fixture&) { f.root->NewNode(1, NodeTypeInteger); }},
        {"the same, a tagged map", 8, [](Fixture& f, Fixture&) { f.root->NewNode(1, NodeTypeMap, false, kTag); }},
        {"NewNode over two in the store", 4, [](Fixture& f, Fixture&) { f.root->NewNode(100, NodeTypeString); }},
        {"NewNode keeping, a vector", 3, [](Fixture& f, Fixture&) { f.root->NewNode(1, NodeTypeVector, true); }},
        {"NewNode keeping, tagged", 4, [](Fixture& f, Fixture&) { f.root->NewNode(1, NodeTypeMap, true, kTag); }},
        {"NewNode keeping in the store", 3, [](Fixture& f, Fixture&) { f.root->NewNode(100, NodeTypeMap, true); }},
        {"NewNode at a vector's end", 2, [](Fixture& f, Fixture&) { f.vector->NewNode(3, NodeTypeInteger); }},
        {"NewNode over an element", 3, [](Fixture& f, Fixture&) { f.vector->NewNode(1, NodeTypeInteger); }},
        {"NewNode keeping an element", 3, [](Fixture& f, Fixture&) { f.vector->NewNode(1, NodeTypeVector, true); }},
        {"Add", 1, [](Fixture& f, Fixture&) { f.vector->Add(NodeTypeInteger); }},
        {"Insert", 1, [](Fixture& f, Fixture&) { f.vector->Insert(0, NodeTypeString); }},
        {"Insert of a tagged map", 2, [](Fixture& f, Fixture&) { f.vector->Insert(0, NodeTypeMap, kTag); }},
        {"AddCopy", 2, [](Fixture& f, Fixture& o) { f.vector->AddCopy(o.leaf); }},
        {"InsertCopy", 2, [](Fixture& f, Fixture& o) { f.vector->InsertCopy(1, o.leaf); }},
        {"InsertCopy of a map of five", 15, [](Fixture& f, Fixture& o) { f.vector->InsertCopy(1, o.nested); }},
        {"ReplaceWithCopy in a free slot", 3, [](Fixture& f, Fixture& o) { f.root->ReplaceWithCopy(5, o.leaf); }},
        {"ReplaceWithCopy over five", 8, [](Fixture& f, Fixture& o) { f.root->ReplaceWithCopy(1, o.leaf); }},
        {"ReplaceWithCopy of five", 16, [](Fixture& f, Fixture& o) { f.root->ReplaceWithCopy(5, o.nested); }},
    });
}

TEST(ChangeCountTest, MovingCountsOnceAndRemovingEveryNode) {
    ExpectEach({
        {"Move in a map", 1, [](Fixture& f, Fixture&) { f.root->Move(5, f.nested); }},
        {"Move into another map", 1, [](Fixture& f, Fixture&) { f.far->Move(5, f.nested); }},
        {"Move of a free node", 1, [](Fixture& f, Fixture&) { f.root->Move(5, f.free); }},
        {"Move into the store", 1, [](Fixture& f, Fixture&) { f.root->Move(200, f.nested); }},
        {"Move in a vector", 1, [](Fixture& f, Fixture&) { f.vector->Move(2, f.vector->Get(0)); }},
        {"Move into a vector", 1, [](Fixture& f, Fixture&) { f.vector->Move(3, f.nested); }},
        {"Move of a free node into a vector", 1, [](Fixture& f, Fixture&) { f.vector->Move(0, f.free); }},
        {"InsertNode", 1, [](Fixture& f, Fixture&) { f.vector->InsertNode(0, f.free); }},
        {"Detach(int)", 1, [](Fixture& f, Fixture&) { f.root->Detach(1); }},
        {"Detach(int) of an element", 1, [](Fixture& f, Fixture&) { f.vector->Detach(1); }},
        {"Detach()", 2, [](Fixture& f, Fixture&) { f.leaf->Detach(); }},
        {"Detach() of a free node", 1, [](Fixture& f, Fixture&) { f.free->Detach(); }},
        {"Remove(int) of a leaf", 2, [](Fixture& f, Fixture&) { f.root->Remove(0); }},
        {"Remove(int) of five", 6, [](Fixture& f, Fixture&) { f.root->Remove(1); }},
        {"Remove(int) of two from the store", 3, [](Fixture& f, Fixture&) { f.root->Remove(100); }},
        {"Remove(int) of an element", 2, [](Fixture& f, Fixture&) { f.vector->Remove(1); }},
        {"Remove() of a leaf", 3, [](Fixture& f, Fixture&) { f.leaf->Remove(); }},
        {"Remove() of five", 7, [](Fixture& f, Fixture&) { f.nested->Node::Remove(); }},
        {"Remove() of the root", 17, [](Fixture& f, Fixture&) { f.root->Node::Remove(); }},
        {"Remove() of a free node", 3, [](Fixture& f, Fixture&) { f.free->Remove(); }},
        {"RemoveCurrent of five", 7,
         [](Fixture& f, Fixture&) {
             const auto iterator = f.nested->GetIterator();
             iterator->Next();
             iterator->RemoveCurrent();
         }},
        {"VisitRemove of five in a slot", 6, [](Fixture& f, Fixture&) { f.RemoveOnWalk(f.root, f.nested, 0); }},
        {"VisitRemove of an element", 2, [](Fixture& f, Fixture&) { f.RemoveOnWalk(f.root, f.vector->Get(1), 0); }},
        {"VisitRemove of two in the store", 4, [](Fixture& f, Fixture&) { f.RemoveOnWalk(f.root, f.far, 0); }},
        {"VisitRemove of the start", 7, [](Fixture& f, Fixture&) { f.RemoveOnWalk(f.nested, f.nested, IterateSelf); }},
        {"VisitRemove of the root", 17, [](Fixture& f, Fixture&) { f.RemoveOnWalk(f.root, f.root, IterateSelf); }},
    });
}

TEST(ChangeCountTest, ReadingCountsNothing) {
    ExpectEach({
        {"UpdateDerivedTemporality", 0, [](Fixture& f, Fixture&) { f.tree->UpdateDerivedTemporality(); }},
        {"GetDerivedTemporality", 0, [](Fixture& f, Fixture&) { f.leaf->GetDerivedTemporality(); }},
        {"FindNodeByKey", 0, [](Fixture& f, Fixture&) { f.tree->FindNodeByKey(u"1:0:"); }},
        {"Compare", 0, [](Fixture& f, Fixture& o) { f.root->Compare(o.root, TemporalityTemporary, true); }},
        {"Iterate", 0, [](Fixture& f, Fixture&) { f.RemoveOnWalk(f.root, nullptr, 0); }},
        {"SaveToArchive", 0,
         [](Fixture& f, Fixture&) {
             KivTests::WriteTape tape;
             EXPECT_EQ(f.tree->SaveToArchive(&tape, true, 255), 0);
         }},
    });
}

TEST(ChangeCountTest, LoadingCountsEveryNodeByItsPlace) {
    Fixture source;
    source.root->Remove(100);  // a root saves only the composites in its slots
    KivTests::WriteTape saved;
    ASSERT_EQ(source.tree->SaveToArchive(&saved, true, 255), 0);
    const auto load = [&saved](Tree& tree) {
        KivTests::ReadTape tape(saved.items);
        EXPECT_EQ(tree.LoadFromArchive(&tape), 0);
    };
    // 2 for the envelope, 3 for the root; 3 each for two vectors and a leaf in maps; 4 each for two maps in a map;
    // 2 each for five elements. Leaves right below the root are not saved.
    ExpectEach({
        {"into nothing", 32, [&](Fixture& f, Fixture&) { load(*f.empty); }},
        {"over a root of 15", 47, [&](Fixture& f, Fixture&) { load(*f.tree); }},
    });
}
