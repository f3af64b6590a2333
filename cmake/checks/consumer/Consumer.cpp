// Uses the installed host streams: saves a tree to a file, loads it and compares.

#include <cstdio>
#include <filesystem>

#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Tree.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>

int main() {
    using namespace KivGenerics;
    const std::filesystem::path path = "consumer.tree";
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const part = node_cast<Map>(node_cast<Map>(tree->NewRoot(NodeTypeMap))->NewNode(0, NodeTypeMap));
    node_cast<String>(part->NewNode(0, NodeTypeString))->Set(u"kept");
    const auto saved = KivStorage::SaveTree(tree.Get(), path);
    if (!saved.Ok()) {
        std::puts(saved.sentence.c_str());
        return 1;
    }
    const auto loaded = KivStorage::LoadTree(path);
    std::filesystem::remove(path);
    if (!loaded.result.Ok()) {
        std::puts(loaded.result.sentence.c_str());
        return 1;
    }
    if (tree->GetRoot()->Compare(loaded.tree->GetRoot(), TemporalityTemporary, true) != 0) {
        std::puts("the loaded tree differs from the saved one");
        return 1;
    }
    std::puts("KivStorage works");
    return 0;
}
