#include "Shapes.h"

#include <algorithm>
#include <cstdint>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Vector.h>
#include <KivGenerics/VisitorNode.h>

using namespace KivGenerics;

namespace {

Vector& NewList(Tree& tree) {
    auto* const root = node_cast<Map>(tree.NewRoot(NodeTypeMap));
    return *node_cast<Vector>(root->NewNode(0, NodeTypeVector));
}

/// Makes numbers one by one, as `By` makes any node.
template <class By>
class OneByOne {
public:
    static void AddNumbers(Vector& vector, int count) {
        for (int i = 0; i < count; ++i) {
            By::template Add<Integer>(vector)->Set(i);
        }
    }
    static void NewNumbers(Map& map, int count, int step) {
        for (int i = 0; i < count; ++i) {
            By::template New<Integer>(map, i * step)->Set(i);
        }
    }

private:
    OneByOne() = default;
    friend By;
};

/// Makes nodes of kinds that are known only when the program runs.
struct ByType : OneByOne<ByType> {
    template <class T>
    static T* Add(Vector& vector) {
        return node_cast<T>(vector.Add(T::StaticType));
    }
    template <class T>
    static T* New(Map& map, int index, SemanticTag tag = SemanticTagNone) {
        return node_cast<T>(map.NewNode(index, T::StaticType, false, tag));
    }
};

/// Makes nodes of kinds that the compiler knows.
struct ByKind : OneByOne<ByKind> {
    template <class T>
    static T* Add(Vector& vector) {
        return vector.Add<T>();
    }
    template <class T>
    static T* New(Map& map, int index, SemanticTag tag = SemanticTagNone) {
        return map.NewNode<T>(index, tag);
    }
};

/// The same, but numbers that come together are made together.
struct ByRun : ByKind {
    static void AddNumbers(Vector& vector, int count) {
        ForEachRun(count, 1, [&](const int*, const std::int32_t* values, int some) { vector.AddLeaves(values, some); });
    }
    static void NewNumbers(Map& map, int count, int step) {
        ForEachRun(count, step, [&](const int* indexes, const std::int32_t* values, int some) {
            map.NewLeaves(indexes, values, some);
        });
    }

private:
    template <class Make>
    static void ForEachRun(int count, int step, Make make) {
        constexpr int kMost = 64;
        int indexes[kMost];
        std::int32_t values[kMost];
        for (int done = 0, some = 0; done < count; done += some) {
            some = (std::min)(count - done, kMost);
            for (int i = 0; i < some; ++i) {
                indexes[i] = (done + i) * step;
                values[i] = done + i;
            }
            make(indexes, values, some);
        }
    }
};

template <class By>
void AddRecord(Vector& list, int number) {
    Map& record = *By::template Add<Map>(list);
    By::template New<Integer>(record, 0)->Set(number);
    By::template New<String>(record, 1)->Set(u"a name of some length");
    By::template New<Double>(record, 2)->Set(number * 0.5);
    By::template New<Boolean>(record, 3)->Set(number % 2 == 0);
    By::template New<Integer64>(record, 4)->Set(number);
    By::template New<GlobalID>(record, 5)->Set(GUID{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}});
    By::NewNumbers(*By::template New<Map>(record, 6, SemanticTag(24576)), 3, 1);
    By::AddNumbers(*By::template New<Vector>(record, 7), 4);
}

template <class By>
void AddRecords(Tree& tree, std::size_t nodes) {
    constexpr std::size_t kNodesOfRecord = 16;
    Vector& list = NewList(tree);
    for (std::size_t i = 0; i < nodes / kNodesOfRecord; ++i) {
        AddRecord<By>(list, static_cast<int>(i));
    }
}

template <class By>
void AddSparse(Tree& tree, std::size_t nodes) {
    constexpr int kFields = 40;
    Vector& list = NewList(tree);
    for (std::size_t i = 0; i < nodes / (kFields + 1); ++i) {
        By::NewNumbers(*By::template Add<Map>(list), kFields, 7);
    }
}

// Vectors are copied only when their children are of one kind, so the numbers of a level stand in a vector of their own.
template <class By>
void AddNested(Tree& tree, std::size_t nodes) {
    constexpr std::size_t kLevels = 500;
    constexpr std::size_t kNodesOfLevel = 5;
    Vector& list = NewList(tree);
    for (std::size_t i = 0; i < nodes / (kLevels * kNodesOfLevel); ++i) {
        Vector* vector = By::template Add<Vector>(list);
        for (std::size_t level = 1; level < kLevels; ++level) {
            Vector& inner = *By::template Add<Vector>(*vector);
            inner.SetTemporality(level % 2 == 0 ? TemporalityPersistent : TemporalityTransient);
            By::AddNumbers(*By::template Add<Vector>(*vector), 3);
            vector = &inner;
        }
    }
}

class Counter final : public VisitorNode {
public:
    VisitCode VisitNode(Node*, bool, NodeType) override {
        ++count;
        return VisitContinue;
    }
    std::size_t count = 0;
};

}  // namespace

void FillNumbers(Tree& tree, std::size_t nodes) {
    ByType::AddNumbers(NewList(tree), static_cast<int>(nodes));
}

void FillNumbersTyped(Tree& tree, std::size_t nodes) {
    ByKind::AddNumbers(NewList(tree), static_cast<int>(nodes));
}

void FillNumbersInRuns(Tree& tree, std::size_t nodes) {
    ByRun::AddNumbers(NewList(tree), static_cast<int>(nodes));
}

void FillRecords(Tree& tree, std::size_t nodes) {
    AddRecords<ByType>(tree, nodes);
}

void FillRecordsTyped(Tree& tree, std::size_t nodes) {
    AddRecords<ByKind>(tree, nodes);
}

void FillRecordsInRuns(Tree& tree, std::size_t nodes) {
    AddRecords<ByRun>(tree, nodes);
}

void FillSparse(Tree& tree, std::size_t nodes) {
    AddSparse<ByType>(tree, nodes);
}

void FillSparseTyped(Tree& tree, std::size_t nodes) {
    AddSparse<ByKind>(tree, nodes);
}

void FillSparseInRuns(Tree& tree, std::size_t nodes) {
    AddSparse<ByRun>(tree, nodes);
}

void FillNested(Tree& tree, std::size_t nodes) {
    AddNested<ByType>(tree, nodes);
}

void FillNestedTyped(Tree& tree, std::size_t nodes) {
    AddNested<ByKind>(tree, nodes);
}

void FillNestedInRuns(Tree& tree, std::size_t nodes) {
    AddNested<ByRun>(tree, nodes);
}

std::size_t CountNodes(Tree& tree) {
    Counter counter;
    if (Node* const root = tree.GetRoot()) {
        root->Iterate(&counter, SemanticTagNone, IterateSelf | IterateChildren | IterateDeeper);
    }
    return counter.count;
}
