#pragma once

#include <cstddef>
#include <iterator>
#include <string>
#include <vector>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ToText.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>
#include <gtest/gtest.h>

#include "core/NodeAccess.h"
#include "support/TestTree.h"

namespace KivGenerics::Testing {

using KivTests::ChangesOf;
using KivTests::TextOf;

inline constexpr const char* kReadOnlyText = "Operation not allowed on a read-only tree!";

/// A node and what is below it as text: an Integer by its value, another leaf by its kind, a vector as "[1 2]", a map as
/// "{0:1 8:[]}", with its tag in front unless that is 1: "100{}". A child that does not name its parent and its place is
/// followed by '?'.
inline std::string Show(Node* node) {
    if (node == nullptr) {
        return "null";
    }
    if (auto* const number = node_cast<Integer>(node)) {
        return std::to_string(number->Get());
    }
    auto* const composite = node_cast<Composite>(node);
    if (composite == nullptr) {
        return ToText(node->GetType());
    }
    const bool isMap = node->GetType() == NodeTypeMap;
    std::string text = isMap ? "{" : "[";
    if (node->GetSemanticTag() != SemanticTagDefault) {
        text.insert(0, std::to_string(node->GetSemanticTag()));
    }
    int last = -1;
    for (Node* child = composite->GetNext(-1); child != nullptr; child = composite->GetNext(last)) {
        text += last == -1 ? "" : " ";
        last = isMap ? child->GetIndex() : last + 1;
        text += isMap ? std::to_string(last) + ":" : "";
        text += Show(child);
        if (child->GetParent() != composite || child->GetIndex() != last || composite->Get(last) != child) {
            text += "?";
        }
    }
    return text + (isMap ? "}" : "]");
}

/// The indexes of the children, as GetNext leads to them.
inline std::vector<int> IndexesOf(const Composite& composite) {
    std::vector<int> indexes;
    for (Node* child = composite.GetNext(-1); child != nullptr; child = composite.GetNext(child->GetIndex())) {
        indexes.push_back(child->GetIndex());
    }
    return indexes;
}

/// The derived temporality as it is stored.
inline int Stored(const Node* node) {
    return NodeAccess::GetStoredDerived(*node);
}

/// A new Integer of this value at `index`, in place of what stood there, of own temporality TemporalityPersistent.
inline Integer* Put(Composite* composite, int index, int value) {
    auto* const node = static_cast<Integer*>(composite->NewNode(index, NodeTypeInteger));
    node->Set(value);
    return node;
}

/// A new Integer at the end, of default temporality.
inline Integer* Append(Vector* vector, int value) {
    auto* const node = static_cast<Integer*>(vector->Add(NodeTypeInteger));
    node->Set(value);
    return node;
}

inline Vector* PutVector(Composite* composite, int index) {
    return static_cast<Vector*>(composite->NewNode(index, NodeTypeVector));
}

inline Map* PutMap(Composite* composite, int index, int tag = 0) {
    return static_cast<Map*>(composite->NewNode(index, NodeTypeMap, false, SemanticTag(tag)));
}

/// A map made with this tag has this many fixed slots.
struct SlotCase {
    int slots;
    int tag;
};

inline constexpr SlotCase kEverySlotCount[] = {
    {1, 102},  {2, 111},   {3, 101},    {4, 106},   {5, 4262}, {6, 4146}, {7, 4163},  {8, 103},
    {9, 4152}, {10, 4338}, {11, 28675}, {12, 4228}, {13, 100}, {14, 110}, {15, 4264}, {16, 4107},
};

/// Gives suites that run over all slot counts the names ".../1" to ".../16".
inline std::string NameOfSlotCase(const ::testing::TestParamInfo<SlotCase>& info) {
    return std::to_string(info.param.slots);
}

/// A tree whose root is a map, of default temporality and with eight slots.
class ContainerTest : public ::testing::Test {
protected:
    /// A new child of the root, of own temporality TemporalityPersistent.
    Map* NewMap(int tag = 0) { return PutMap(root_, next_++, tag); }
    Vector* NewVector() { return PutVector(root_, next_++); }
    Node* NewLeaf(NodeType type = NodeTypeInteger) { return root_->NewNode(next_++, type); }
    /// A map of that many slots and tag 1: once a map is made, its tag does not matter to its slots.
    Map* NewMap(const SlotCase& slots) {
        Map* const map = NewMap(slots.tag);
        map->SetSemanticTag(SemanticTagDefault);
        return map;
    }

    KivBase::ReturnPtrI<Tree> tree_ = KivTests::NewTree();
    Map* root_ = static_cast<Map*>(tree_->NewRoot(NodeTypeMap));

private:
    int next_ = 100;
};

}  // namespace KivGenerics::Testing
