#include "faults/Documents.h"

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Children.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ToText.h>

using namespace KivGenerics;

namespace {

template <class T>
T* New(Map& map, int index, SemanticTag tag = SemanticTagNone) {
    return node_cast<T>(map.NewNode(index, T::StaticType, false, tag));
}

void DescribeNode(Node* node, std::string& text) {
    KivBase::WString key;
    node->GetKey(key);
    text += KivBase::ToUtf8(key) + ' ' + ToText(node->GetType()) + ' ' + ToText(node->GetTemporality()) + ' ' +
            ToText(node) + '\n';
    for (Node* const child : Children(node)) {
        DescribeNode(child, text);
    }
}

int CountUnsound(Node* node) {
    int unsound = 0;
    int last = -1;
    for (Node* const child : Children(node)) {
        const bool sound = child->GetParent() == node && child->GetIndex() > last &&
                           node_cast<Composite>(node)->Get(child->GetIndex()) == child &&
                           child->GetTree().Get() == node->GetTree().Get();
        unsound += (sound ? 0 : 1) + CountUnsound(child);
        last = child->GetIndex();
    }
    return unsound;
}

}  // namespace

void FillDocument(Tree& tree) {
    auto* const root = node_cast<Map>(tree.NewRoot(NodeTypeMap, false, SemanticTag(4107)));
    auto* const leaves = New<Map>(*root, 0, SemanticTag(100));
    New<Integer>(*leaves, 0)->Set(42);
    New<Integer64>(*leaves, 1)->Set(0x123456789);
    New<Double>(*leaves, 2)->Set(2.5);
    New<Boolean>(*leaves, 3)->Set(true);
    New<String>(*leaves, 4)->Set(u"a text that is too long to stand inside the node itself");
    New<GlobalID>(*leaves, 5)->Set(GUID{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}});
    for (int i = 0; i < 5; ++i) {
        New<Integer>(*leaves, 100 + i)->Set(i);  // in the overflow store
    }
    auto* const sets = New<Map>(*root, 1);
    New<IntegerSet>(*sets, 0)->Add(3);
    New<DoubleSet>(*sets, 1)->Add(0.25);
    New<StringSet>(*sets, 2)->Add(u"an element that is too long to stand inside its node");
    New<IdSet>(*sets, 3)->Add(GUID{9, 8, 7, {6, 5, 4, 3, 2, 1, 0, 0}});
    auto* const list = New<Vector>(*root, 2);
    for (int i = 0; i < 9; ++i) {
        node_cast<Integer>(list->Add(NodeTypeInteger))->Set(i);
    }
    auto* const nested = New<Vector>(*root, 3);
    for (int i = 0; i < 3; ++i) {
        auto* const inner = node_cast<Vector>(nested->Add(NodeTypeVector));
        node_cast<String>(inner->Add(NodeTypeString))->Set(u"another text that is too long to stand inside the node");
    }
    root->Get(3)->SetTemporality(TemporalityTransient);
}

KivBase::ReturnPtrI<Tree> NewDocument() {
    auto tree = CreateGenericTree(EnumOrvObjectType(8));
    FillDocument(*tree);
    return tree;
}

std::string Describe(Tree& tree) {
    std::string text;
    if (!tree.IsEmpty()) {
        DescribeNode(tree.GetRoot(), text);
    }
    return text;
}

int CountUnsoundNodes(Tree& tree) {
    return tree.IsEmpty() ? 0 : CountUnsound(tree.GetRoot());
}
