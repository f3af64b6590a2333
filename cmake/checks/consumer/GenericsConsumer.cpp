// Uses the installed library alone: makes a tree, reads it back, and catches what the library throws.

#include <cstdio>

#include <KivGenerics/Exception.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/Tree.h>

int main() {
    using namespace KivGenerics;
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const root = node_cast<Map>(tree->NewRoot(NodeTypeMap));
    node_cast<Integer>(root->NewNode(3, NodeTypeInteger))->Set(42);
    const auto* const found = node_cast<Integer>(tree->FindNodeByKey(u"3:"));
    if (found == nullptr || found->Get() != 42) {
        std::puts("the tree does not hold what was put into it");
        return 1;
    }
    tree->SetReadOnly();
    try {
        root->SetSemanticTag(SemanticTagDefault);
    } catch (const ReadOnlyException& exception) {
        if (exception.GetMessage() == u"Operation not allowed on a read-only tree!") {
            std::puts("KivGenerics works");
            return 0;
        }
    }
    std::puts("a change of a read-only tree was not refused");
    return 1;
}
