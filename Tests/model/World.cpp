#include "model/World.h"

#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>

using namespace KivGenerics;

namespace Model {

void Expect(bool same, const char* what) {
    if (!same) {
        throw Difference(what);
    }
}

World::World() {
    for (std::size_t i = 0; i < kTrees; ++i) {
        Renew(i);
    }
}

void World::Renew(std::size_t i) {
    Pair& pair = At(i);
    const bool alone = i % kTrees == 2 || !pairs_[0].library;
    const auto type = EnumOrvObjectType(71);  // whose memory comes in the smallest blocks
    pair.library = alone ? CreateGenericTree(type) : At(1 - i % kTrees).library->CreateTreeInForest();
    pair.model = std::make_unique<Tree>();
    pair.items.clear();
}

Pair& World::Of(const Item& item) {
    for (Pair& pair : pairs_) {
        if (pair.model.get() == item.tree) {
            return pair;
        }
    }
    throw std::logic_error("an item of no tree");
}

void World::Settle(const Answer& library, const Answer& plain) {
    Expect(library.refusal == plain.refusal, "one refuses, the other does not, or with another text");
    Expect(library.readOnly == plain.readOnly, "the kind of the exception");
    Expect(library.number == plain.number, "the answer");
    Expect((library.node == nullptr) == (plain.item == nullptr), "one answers a node, the other none");
    answeredNode_ = library.node;
    answeredItem_ = plain.item;
}

void World::CheckAll() {
    for (Pair& pair : pairs_) {
        Check(pair);
    }
}

void World::Check(Pair& pair) {
    pair.items.clear();
    pair.model->removed.clear();
    KivGenerics::Tree& tree = *pair.library;
    Expect(tree.GetChangeCount() == pair.model->changes, "the change count");
    Expect(tree.IsReadOnly() == pair.model->readOnly, "whether the tree is read-only");
    Expect(tree.IsEmpty() == (pair.model->root == nullptr), "whether the tree is empty");
    if (pair.model->root) {
        CheckItem(pair, *pair.model->root, tree.GetRoot());
    }
    for (const Owned& item : pair.model->free) {
        Expect(item->twin != nullptr, "a free node that was never seen");
        CheckItem(pair, *item, item->twin);
    }
    if (answeredItem_ != nullptr && answeredItem_->tree == pair.model.get()) {
        Expect(answeredItem_->twin == answeredNode_, "which node is answered");
        answeredItem_ = nullptr;
    }
}

void World::CheckItem(Pair& pair, Item& item, Node* node) {
    Expect(node != nullptr, "a node is missing");
    if (item.twin == nullptr) {
        item.twin = node;
        item.slots = item.IsMap() ? static_cast<Map*>(node)->GetSlotCount() : 0;
    }
    Expect(item.twin == node, "another node stands there");
    Expect(item.type == node->GetType(), "the kind");
    Expect(item.index == node->GetIndex(), "the index");
    Expect(node->GetParent() == (item.parent != nullptr ? item.parent->twin : nullptr), "the parent");
    Expect(node->IsRoot() == (item.parent == nullptr), "whether it is a root");
    Expect(item.temporality == node->GetTemporality(), "the own temporality");
    Expect(node->ShouldVisit(EnumOrvGenericsTemporality(item.derived)) &&
               !node->ShouldVisit(EnumOrvGenericsTemporality(item.derived - 1)),
           "the derived temporality");
    Expect(item.tag == node->GetSemanticTag(), "the semantic tag");
    pair.items.push_back(&item);
    if (!item.IsComposite()) {
        CheckValue(item, node);
        return;
    }
    auto* const composite = static_cast<Composite*>(node);
    Expect(composite->GetSize(TemporalityTemporary) == CountChildren(item), "the number of children");
    for (const Owned& element : item.elements) {
        CheckItem(pair, *element, composite->Get(element->index));
    }
    for (const auto& entry : item.entries) {
        Expect(entry.first < item.slots || static_cast<Map*>(node)->HasOverflow(), "the overflow store");
        CheckItem(pair, *entry.second, composite->Get(entry.first));
    }
}

}  // namespace Model
