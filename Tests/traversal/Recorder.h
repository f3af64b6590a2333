#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <KivBase/Utf.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/RowVisitor.h>
#include <KivGenerics/String.h>
#include <KivGenerics/VisitorNode.h>

#include "containers/TestNodes.h"

namespace KivGenerics::Testing {

/// A visitor that writes down what it is shown: an Integer as its value, another leaf as its kind, a composite as its key
/// after "(" before its children and after ")" behind them. Answers VisitContinue unless told otherwise.
class Recorder final : public VisitorNode {
public:
    using Answer = std::function<VisitCode(Node*, bool)>;

    Recorder() = default;
    explicit Recorder(Answer answer) : answer_(std::move(answer)) {}

    std::string text;

    VisitCode VisitNode(Node* node, bool postOrder, NodeType type) override {
        EXPECT_EQ(type, node->GetType());
        text += text.empty() ? "" : " ";
        if (node_cast<Composite>(node) != nullptr) {
            KivBase::WString key;
            node->GetKey(key);
            text += (postOrder ? ")" : "(") + KivBase::ToUtf8(key);
        } else {
            EXPECT_FALSE(postOrder);
            text += Show(node);
        }
        return answer_ ? answer_(node, postOrder) : VisitContinue;
    }

private:
    Answer answer_;
};

/// The same for walks in rows; answers VisitContinue. Every kind that can comes in rows; `rows` tells how many leaves each had.
class RowRecorder final : public RowVisitor {
public:
    explicit RowRecorder(SlotRows slotRows = SlotRows::OfOneKind)
        : RowVisitor({NodeTypeBoolean, NodeTypeDouble, NodeTypeGlobalID, NodeTypeInteger, NodeTypeInteger64,
                      NodeTypeString},
                     slotRows) {}

    Recorder single;
    std::vector<int> rows;

    VisitCode VisitBooleans(LeafRow<Boolean> row) override { return Note(row); }
    VisitCode VisitDoubles(LeafRow<Double> row) override { return Note(row); }
    VisitCode VisitGlobalIDs(LeafRow<GlobalID> row) override { return Note(row); }
    VisitCode VisitIntegers(LeafRow<Integer> row) override { return Note(row); }
    VisitCode VisitInteger64s(LeafRow<Integer64> row) override { return Note(row); }
    VisitCode VisitStrings(LeafRow<String> row) override { return Note(row); }
    VisitCode VisitSlots(LeafRow<Node> row) override {
        EXPECT_EQ(SlotRows::OfAnyKinds, GetSlotRows());
        return Note(row);
    }
    VisitCode VisitDoubleSet(DoubleSet* node) override { return single.VisitDoubleSet(node); }
    VisitCode VisitIdSet(IdSet* node) override { return single.VisitIdSet(node); }
    VisitCode VisitIntegerSet(IntegerSet* node) override { return single.VisitIntegerSet(node); }
    VisitCode VisitStringSet(StringSet* node) override { return single.VisitStringSet(node); }
    VisitCode VisitMap(Map* node, bool postOrder) override { return single.VisitMap(node, postOrder); }
    VisitCode VisitVector(Vector* node, bool postOrder) override { return single.VisitVector(node, postOrder); }

private:
    template <class T>
    VisitCode Note(LeafRow<T> row) {
        for (T* const leaf : row) {
            single.VisitNode(leaf, false, leaf->GetType());
        }
        rows.push_back(row.GetSize());
        return VisitContinue;
    }
};

/// What a walk shows. One that only looks is done in rows, too, which must show the same.
inline std::string Walk(Node* start, int flags = 0, int tag = 0, Recorder::Answer answer = {}) {
    const bool onlyLooks = !answer;
    Recorder recorder(std::move(answer));
    start->Iterate(&recorder, SemanticTag(tag), flags);
    if (onlyLooks) {
        for (const SlotRows slotRows : {SlotRows::OfOneKind, SlotRows::OfAnyKinds}) {
            RowRecorder inRows(slotRows);
            start->IterateRows(&inRows, SemanticTag(tag), flags);
            EXPECT_EQ(recorder.text, inRows.single.text) << "in rows";
        }
    }
    return recorder.text;
}

}  // namespace KivGenerics::Testing
