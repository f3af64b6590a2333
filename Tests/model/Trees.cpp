#include "model/Model.h"

using namespace KivGenerics;

namespace Model {
namespace {

// A root that is replaced is emptied, but not removed: whoever holds it may place it again.
void Forget(Tree& tree) {
    Clear(*tree.root);
    tree.free.push_back(std::move(tree.root));
}

}  // namespace

void RemoveRoot(Tree& tree) {
    Guard(tree);
    if (tree.root) {
        Forget(tree);
    }
}

void SetRoot(Tree& tree, Item* item) {
    Guard(tree);
    if (item == nullptr || item->tree != &tree) {
        throw Refusal{u"New root is either NULL or from a different tree!"};
    }
    if (item == tree.root.get()) {
        Guard(tree);
        Clear(*item);
        return;
    }
    Owned root = item->parent != nullptr ? DetachChild(*item->parent, item->index) : TakeOut(*item);
    RemoveRoot(tree);
    tree.root = std::move(root);
}

Item& NewRoot(Tree& tree, NodeType type, bool keepOld, int tag) {
    Owned root = Create(tree, type, tag);
    if (tree.root && keepOld) {
        if (!root->IsComposite()) {
            throw Refusal{u"NewRoot:Invalid node type for keeping old root"};
        }
        Move(*root, 0, tree.root.get());
    } else if (tree.root) {
        Forget(tree);
    }
    tree.root = std::move(root);
    return *tree.root;
}

Item& CopyFromNode(Tree& tree, Item* source) {
    Guard(tree);
    if (source == nullptr || source->tree == &tree) {
        throw Refusal{u"Original node is either NULL or from the same tree!"};
    }
    RemoveRoot(tree);
    Item& root = NewRoot(tree, source->type, false, source->tag);
    Populate(root, source);
    return root;
}

Item* CopyFromTree(Tree& tree, Tree* other) {
    Guard(tree);
    if (other == nullptr || other == &tree) {
        throw Refusal{u"Original tree is either NULL or the same tree!"};
    }
    if (other->root) {
        CopyFromNode(tree, other->root.get());
    } else {
        RemoveRoot(tree);
    }
    return tree.root.get();
}

void ClearTemporaryNodes(Tree& tree) {
    Guard(tree);
    if (!tree.root) {
        return;
    }
    Update(tree);
    const auto see = [](Item& item, bool) {
        return GetEffective(item) == TemporalityPersistent ? VisitContinue : VisitRemove;
    };
    Iterate(*tree.root, see, 0, 0x700000);
}

Item* FindByKey(const Tree& tree, const Text& key) {
    Item* item = tree.root.get();
    std::uint32_t number = 0;
    for (const char16_t unit : key) {
        if (item == nullptr) {
            return nullptr;
        }
        if (unit >= u'0' && unit <= u'9') {
            number = number * 10 + (unit - u'0');
        } else if (unit == u':' && item->IsComposite()) {
            item = Get(*item, static_cast<int>(number));
            number = 0;
        } else {
            return nullptr;
        }
    }
    return item;
}

}  // namespace Model
