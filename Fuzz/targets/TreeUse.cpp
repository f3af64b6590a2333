#include "targets/TreeUse.h"

#include <cstdint>
#include <vector>

#include <KivGenerics/Children.h>
#include <KivGenerics/Exception.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Iterator.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ToText.h>
#include <KivGenerics/VisitorNode.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>
#include <KivStorage/SizeArchive.h>
#include <KivStorage/SizeTotals.h>
#include <KivStorage/UnsavedParts.h>

#include "core/Invariants.h"
#include "targets/Require.h"

namespace KivFuzz {
namespace {

using namespace KivGenerics;

class Counter final : public VisitorNode {
public:
    VisitCode VisitNode(Node*, bool, NodeType) override {
        ++count;
        return VisitContinue;
    }
    int count = 0;
};

/// Every node finds itself again by its key. Keys are as long as the tree is deep, so of large trees the first nodes must do.
void CheckKeys(Tree& tree) {
    const auto iterator = tree.GetRoot()->GetIterator();
    KivBase::WString key;
    for (int i = 0; i < 16; ++i) {
        Node* const node = iterator->Next();
        if (node == nullptr) {
            return;
        }
        node->GetKey(key);
        Require(tree.FindNodeByKey(key) == node, "A node is not found by its own key.");
        node->GetSemanticTagKey(key);
    }
}

bool IsSameNode(Node* saved, Node* loaded, EnumOrvGenericsTemporality limit);

/// A vector closes the gaps of elements that are not saved, so that only in maps every index stays.
bool AreSameChildren(Node* saved, Node* loaded, EnumOrvGenericsTemporality limit) {
    auto children = Children(loaded);
    auto next = children.begin();
    for (Node* const child : Children(saved)) {
        if (!child->ShouldVisit(limit)) {
            continue;
        }
        if (!(next != children.end()) || !IsSameNode(child, *next, limit) ||
            (saved->GetType() == NodeTypeMap && child->GetIndex() != (*next)->GetIndex())) {
            return false;
        }
        ++next;
    }
    return !(next != children.end());
}

bool IsSameNode(Node* saved, Node* loaded, EnumOrvGenericsTemporality limit) {
    if (saved->GetType() != loaded->GetType() || saved->GetTemporality() != loaded->GetTemporality() ||
        saved->GetSemanticTag() != loaded->GetSemanticTag()) {
        return false;
    }
    return IsCompositeType(saved->GetType()) ? AreSameChildren(saved, loaded, limit) : ToText(saved) == ToText(loaded);
}

using Bytes = std::vector<std::uint8_t>;

KivStorage::SaveOptions Options(bool withTransient, bool saveDespiteLosses) {
    KivStorage::SaveOptions options;
    options.withTransient = withTransient;
    options.saveDespiteLosses = saveDespiteLosses;
    return options;
}

/// Copies what can be copied: a vector may hold elements of different kinds, and then a copy ends at the second kind.
void CopyTree(Tree& tree, Tree& copy) {
    try {
        copy.CopyFromTree(&tree);
    } catch (const Exception&) {
        // What was copied up to there stays, and must be sound.
    }
}

void UseCopy(Tree& tree) {
    Node* const root = tree.GetRoot();
    const auto copy = CreateGenericTree(EnumOrvObjectType(0));
    CopyTree(tree, *copy);
    Require(CheckInvariants(copy->GetRoot()) == 0, "The invariants of a copy do not hold.");
    root->Compare(copy->GetRoot(), TemporalityTemporary, true);
    try {
        copy->GetRoot()->MergeWith(root, false);
    } catch (const Exception&) {
        // A copy lacks the nodes that no walk sees, so that elements of different kinds may meet.
    }
    copy->ClearTemporaryNodes();
    Require(copy->IsEmpty() || CheckInvariants(copy->GetRoot()) == 0,
            "Clearing what is temporary breaks the tree's invariants.");
}

/// What a save would lose may be lost, and more: the file need not load.
void SaveDespiteLosses(Tree& tree, bool withTransient) {
    Bytes bytes;
    if (KivStorage::SaveTreeToMemory(&tree, bytes, Options(withTransient, true)).Ok()) {
        const auto loaded = KivStorage::LoadTreeFromMemory(bytes.data(), bytes.size());
        Require(loaded.result.Ok() == static_cast<bool>(loaded.tree), "A refused load hands over a tree.");
    }
}

}  // namespace

bool IsSameAsSaved(Tree& saved, Tree& loaded, bool withTransient) {
    const auto limit = withTransient ? TemporalityTransient : TemporalityPersistent;
    saved.UpdateDerivedTemporality();
    if (saved.IsEmpty() || !saved.GetRoot()->ShouldVisit(limit)) {
        return loaded.IsEmpty();
    }
    return !loaded.IsEmpty() && IsSameNode(saved.GetRoot(), loaded.GetRoot(), limit);
}

void UseTree(Tree& tree) {
    if (tree.IsEmpty()) {
        return;
    }
    Node* const root = tree.GetRoot();
    Require(CheckInvariants(root) == 0, "The tree's invariants do not hold.");
    tree.UpdateDerivedTemporality();
    Counter counter;
    root->Iterate(&counter, SemanticTagNone, IterateSelf | IterateChildren | IterateDeeper);
    CheckKeys(tree);
    UseCopy(tree);
    KivStorage::SizeTotals totals;
    tree.SizeArchive(&totals, true);
}

void CheckRoundTrip(Tree& tree, bool withTransient) {
    if (!KivStorage::FindUnsavedParts(&tree, withTransient).empty()) {
        SaveDespiteLosses(tree, withTransient);
        return;
    }
    Bytes first;
    const auto saved = KivStorage::SaveTreeToMemory(&tree, first, Options(withTransient, false));
    Require(saved.Ok(), "A tree without unsaved parts is not saved.");
    Require(KivStorage::PredictSize(&tree, withTransient).bytes == first.size(), "The predicted size is wrong.");
    const auto loaded = KivStorage::LoadTreeFromMemory(first.data(), first.size());
    Require(loaded.result.Ok(), "What was saved does not load.");
    Require(IsSameAsSaved(tree, *loaded.tree, withTransient), "What was saved comes back otherwise.");
    Bytes second;
    const auto again = KivStorage::SaveTreeToMemory(loaded.tree.Get(), second, Options(withTransient, false));
    Require(again.Ok(), "What was loaded is not saved again.");
    Require(first == second, "What was loaded is saved to other bytes.");
}

}  // namespace KivFuzz
