// A first program: makes a tree, saves it, loads it, and looks a node up in what was loaded.

// [quickstart]
#include <iostream>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/ToText.h>
#include <KivGenerics/Tree.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>

int main() {
    using namespace KivGenerics;

    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    auto* const person = static_cast<Map*>(root->NewNode(0, NodeTypeMap));
    static_cast<String*>(person->NewNode(0, NodeTypeString))->Set(u"Ada Lovelace");
    static_cast<Integer*>(person->NewNode(1, NodeTypeInteger))->Set(1815);

    const auto saved = KivStorage::SaveTree(tree.Get(), "person.kiv");
    if (!saved.Ok()) {
        std::cerr << saved.sentence << "\n";
        return 1;
    }
    const auto loaded = KivStorage::LoadTree("person.kiv");
    if (!loaded.result.Ok()) {
        std::cerr << loaded.result.sentence << "\n";
        return 1;
    }

    Node* const name = loaded.tree->FindNodeByKey(u"0:0:");
    const int difference = loaded.tree->GetRoot()->Compare(tree->GetRoot(), TemporalityPersistent, true);
    std::cout << ToText(name) << ", difference " << difference << "\n";  // "Ada Lovelace", difference 0
    return difference == 0 ? 0 : 1;
}
// [/quickstart]
