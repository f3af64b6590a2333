#include <string>

#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>

#include "targets/Input.h"
#include "targets/Require.h"
#include "targets/Targets.h"

namespace KivFuzz {
namespace {

using namespace KivGenerics;

/// Maps with children in slots, beyond them and at the greatest index, and vectors, each in the other.
KivBase::ReturnPtrI<Tree> NewTree() {
    auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const root = node_cast<Map>(tree->NewRoot(NodeTypeMap, false, SemanticTag(4107)));
    for (const int index : {0, 3, 15, 16, 42, 8192, 0x1FFFFFFF}) {
        auto* const vector = node_cast<Vector>(root->NewNode(index, NodeTypeVector));
        for (int element = 0; element < 12; ++element) {
            node_cast<Map>(vector->Add(NodeTypeMap))->NewNode(element, NodeTypeInteger);
        }
    }
    return tree;
}

/// The node that a key names, found in another way: by its parts, each a number of any length modulo 2^32.
Node* Find(Tree& tree, const KivBase::WString& key) {
    Node* node = tree.GetRoot();
    std::string part;
    for (const char16_t unit : key) {
        if (unit != u':' && (unit < u'0' || unit > u'9')) {
            return nullptr;
        }
        if (unit != u':') {
            part += static_cast<char>(unit);
            continue;
        }
        std::uint64_t index = 0;
        for (const char digit : part) {
            index = (index * 10 + static_cast<std::uint64_t>(digit - '0')) % 0x100000000;
        }
        part.clear();
        auto* const composite = node_cast<Composite>(node);
        node = composite != nullptr && index <= 0x7FFFFFFF ? composite->Get(static_cast<int>(index)) : nullptr;
        if (node == nullptr) {
            return nullptr;
        }
    }
    return node;
}

}  // namespace

void RunKey(const std::uint8_t* bytes, std::size_t count) {
    static const auto tree = NewTree();
    const KivBase::WString key = Input(bytes, count).TakeText(count / 2);
    Node* const node = tree->FindNodeByKey(key);
    Require(node == Find(*tree, key), "A key names another node than it says.");
    if (node != nullptr) {
        KivBase::WString own;
        node->GetKey(own);
        Require(tree->FindNodeByKey(own) == node, "A node is not found by its own key.");
    }
}

}  // namespace KivFuzz
