// How deep a tree may be for each operation on a stack of 8 MiB, found by trying: each try runs in a process of its own,
// which a too deep tree ends.

#include <cstdio>
#include <cstdlib>
#include <functional>

#include <pthread.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <KivGenerics/Composite.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/VisitorNode.h>

#include "WordArchive.h"

using namespace KivGenerics;

namespace {

constexpr std::size_t kStackBytes = std::size_t{8} << 20;
constexpr int kDeepestTry = 200'000;

struct Shape {
    const char* name;
    NodeType odd;
    NodeType even;
};

struct Operation {
    const char* name;
    void (*run)(Tree& tree, const Shape& shape, int depth);
};

void Fill(Tree& tree, const Shape& shape, int depth) {
    auto* node = node_cast<Composite>(tree.NewRoot(NodeTypeMap));
    for (int level = 2; level <= depth; ++level) {
        node = node_cast<Composite>(node->NewNode(0, level % 2 == 0 ? shape.even : shape.odd));
    }
    node->NewNode(0, NodeTypeInteger);
}

KivBase::ReturnPtrI<Tree> NewFilled(const Shape& shape, int depth) {
    auto tree = CreateGenericTree(EnumOrvObjectType(55));
    Fill(*tree, shape, depth);
    return tree;
}

const Operation kOperations[] = {
    {"build and release", [](Tree&, const Shape&, int) {}},
    {"walk",
     [](Tree& tree, const Shape&, int) {
         class All final : public VisitorNode {
         } visitor;
         tree.GetRoot()->Iterate(&visitor, SemanticTagNone, 0);
     }},
    {"update temporalities", [](Tree& tree, const Shape&, int) { tree.UpdateDerivedTemporality(); }},
    {"copy", [](Tree& tree, const Shape&, int) { CreateGenericTree(EnumOrvObjectType(55))->CopyFromTree(&tree); }},
    {"compare",
     [](Tree& tree, const Shape& shape, int depth) {
         const auto other = NewFilled(shape, depth);
         tree.GetRoot()->Compare(other->GetRoot(), TemporalityTemporary, true);
     }},
    {"merge",
     [](Tree& tree, const Shape& shape, int depth) {
         const auto other = NewFilled(shape, depth);
         tree.GetRoot()->MergeWith(other->GetRoot(), false);
     }},
    {"save",
     [](Tree& tree, const Shape&, int) {
         WordWriteArchive archive;
         tree.SaveToArchive(&archive, true, 255);
     }},
    {"clear", [](Tree& tree, const Shape&, int) { tree.RemoveRoot(); }},
    {"clear temporary nodes", [](Tree& tree, const Shape&, int) { tree.ClearTemporaryNodes(); }},
};

void RunOnStack(std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kStackBytes);
    pthread_t thread{};
    const auto start = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    if (pthread_create(&thread, &attributes, start, &work) != 0) {
        std::abort();
    }
    pthread_join(thread, nullptr);
}

bool Survives(const Operation& operation, const Shape& shape, int depth) {
    const pid_t child = fork();
    if (child == 0) {
        const rlimit noCore = {0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        RunOnStack([&] {
            const auto tree = NewFilled(shape, depth);
            operation.run(*tree, shape, depth);
        });
        _exit(0);
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// To about one per cent.
int FindGreatestDepth(const Operation& operation, const Shape& shape) {
    if (Survives(operation, shape, kDeepestTry)) {
        return kDeepestTry;
    }
    int good = 1;
    int bad = kDeepestTry;
    while (bad - good > 1 + good / 100) {
        const int middle = good + (bad - good) / 2;
        (Survives(operation, shape, middle) ? good : bad) = middle;
    }
    return good;
}

}  // namespace

int main() {
    const Shape shapes[] = {{"maps", NodeTypeMap, NodeTypeMap},
                            {"vectors", NodeTypeVector, NodeTypeVector},
                            {"in turn", NodeTypeVector, NodeTypeMap}};
    std::printf("Levels that each operation survives on a stack of 8 MiB (%d: no deeper tree was tried)\n",
                kDeepestTry);
    std::printf("%-24s", "");
    for (const Shape& shape : shapes) {
        std::printf("%10s", shape.name);
    }
    for (const Operation& operation : kOperations) {
        std::printf("\n%-24s", operation.name);
        for (const Shape& shape : shapes) {
            std::printf("%10d", FindGreatestDepth(operation, shape));
            std::fflush(stdout);
        }
    }
    std::printf("\n");
    return 0;
}
