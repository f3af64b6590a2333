#include "targets/Growing.h"

#include <algorithm>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/Exception.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Vector.h>

namespace KivFuzz {
namespace {

using namespace KivGenerics;

/// One composite is the present one; what is done, is done to it and its children.
class Grower {
public:
    Grower(Tree& tree, Input& input) : tree_(tree), input_(input), here_(nullptr), hasMany_(input.IsShort()) {
        here_ = node_cast<Composite>(tree.NewRoot(NodeTypeMap, false, TakeTag()));
    }

    void Step() {
        switch (input_.TakeByte() % 16) {
            case 0: Climb(); break;
            case 1: Enter(here_->Get(TakeIndex())); break;
            case 2: here_->Remove(TakeIndex()); break;
            case 3: here_->SetTemporality(TakeTemporality()); break;
            case 4: MakeRoot(); break;
            case 5: Retag(); break;
            case 6: Insert(); break;
            case 7: MoveChild(); break;
            case 8: Enter(Put(TakeIndex(), NodeTypeMap)); break;
            case 9: Enter(Put(TakeIndex(), NodeTypeVector)); break;
            case 10: PutMany(); break;
            default: FillValue(Put(TakeIndex(), TakeType())); break;
        }
    }

private:
    // Deeper than any load goes, but not so deep that the checks, which recurse, use up the stack.
    static constexpr int kDeepest = 1100;

    void Climb() {
        if (here_->GetParent() != nullptr) {
            here_ = here_->GetParent();
            --depth_;
        }
    }

    void Enter(Node* child) {
        if (auto* const composite = node_cast<Composite>(child); composite != nullptr && depth_ < kDeepest) {
            here_ = composite;
            height_ = std::max(height_, ++depth_);
        }
    }

    void MakeRoot() {
        const bool keepOld = height_ < kDeepest;
        const NodeType type = input_.TakeByte() % 8 == 0 ? NodeTypeVector : NodeTypeMap;
        here_ = node_cast<Composite>(tree_.NewRoot(type, keepOld, TakeTag()));
        height_ = keepOld ? height_ + 1 : 0;
        depth_ = 0;
    }

    void Retag() {
        if (auto* const map = node_cast<Map>(here_)) {
            map->SetSemanticTag(SemanticTag(input_.TakeLong()));
        }
    }

    void Insert() {
        if (auto* const vector = node_cast<Vector>(here_)) {
            FillValue(vector->Insert(TakeIndex(), TakeType(), TakeTag()));
        }
    }

    void MoveChild() {
        if (Node* const child = here_->Get(TakeIndex())) {
            here_->Move(TakeIndex(), child);
        }
    }

    Node* Put(int index, NodeType type) {
        const SemanticTag tag = type == NodeTypeMap ? TakeTag() : SemanticTagNone;
        Node* const child = here_->NewNode(index, type, false, tag);
        child->SetTemporality(TakeTemporality());
        return child;
    }

    /// More children than one byte counts, or more levels than a load takes: once, since it takes so long.
    void PutMany() {
        const std::uint8_t choice = input_.TakeByte();
        if (hasMany_ || choice < 0xFE) {
            FillValue(Put(choice, TakeType()));
            return;
        }
        hasMany_ = true;
        if (choice == 0xFF) {
            Nest(kDeepest);
        } else {
            PutLeaves(TakeType(), 130);
        }
    }

    void PutLeaves(NodeType type, int count) {
        for (int index = 0; index < count; ++index) {
            here_->NewNode(index, type);
        }
    }

    void Nest(int levels) {
        for (int level = 0; level < levels; ++level) {
            Enter(Put(0, level % 2 == 0 ? NodeTypeMap : NodeTypeVector));
        }
    }

    template <class T, class Value>
    static bool SetIf(Node* node, const Value& value) {
        auto* const leaf = node_cast<T>(node);
        if (leaf != nullptr) {
            leaf->Set(value);
        }
        return leaf != nullptr;
    }
    template <class T, class Value>
    static bool AddIf(Node* node, const Value& value) {
        auto* const set = node_cast<T>(node);
        if (set != nullptr) {
            set->Add(value);
        }
        return set != nullptr;
    }

    void FillValue(Node* node) {
        switch (node->GetType()) {
            case NodeTypeInteger: SetIf<Integer>(node, input_.TakeLong()); break;
            case NodeTypeGlobalID: SetIf<GlobalID>(node, input_.TakeId()); break;
            case NodeTypeString: SetIf<String>(node, input_.TakeText(input_.TakeByte())); break;
            case NodeTypeDouble: SetIf<Double>(node, input_.TakeDouble()); break;
            case NodeTypeBoolean: SetIf<Boolean>(node, input_.TakeByte() % 2 == 1); break;
            case NodeTypeInteger64: SetIf<Integer64>(node, input_.TakeInt64()); break;
            case NodeTypeVector:
            case NodeTypeMap: break;
            case NodeTypeIntegerSet:
            case NodeTypeIdSet:
            case NodeTypeStringSet:
            case NodeTypeDoubleSet: FillSet(node); break;
        }
    }

    void FillSet(Node* node) {
        for (int left = input_.TakeByte() % 8; left > 0; --left) {
            switch (node->GetType()) {
                case NodeTypeIntegerSet: AddIf<IntegerSet>(node, input_.TakeLong()); break;
                case NodeTypeIdSet: AddIf<IdSet>(node, input_.TakeId()); break;
                case NodeTypeStringSet: AddIf<StringSet>(node, input_.TakeText(input_.TakeByte() % 16)); break;
                default: AddIf<DoubleSet>(node, input_.TakeDouble()); break;
            }
        }
    }

    /// Mostly small; behind 0xFE of two bytes, behind 0xFF any.
    int TakeIndex() noexcept {
        const std::uint8_t index = input_.TakeByte();
        if (index == 0xFE) {
            return input_.TakeShort();
        }
        return index < 0xFF ? index : input_.TakeLong();
    }
    SemanticTag TakeTag() noexcept {
        constexpr int kTags[] = {0, 1, 2, 100, 102, 107, 4100, 4107, 4162, 24576, 28727, 32767, 32768, 0x7FFFFFFF, -1};
        const std::uint8_t choice = input_.TakeByte() % 16;
        return SemanticTag(choice < 15 ? kTags[choice] : input_.TakeLong());
    }
    NodeType TakeType() noexcept { return NodeType(1 + input_.TakeByte() % 12); }
    EnumOrvGenericsTemporality TakeTemporality() noexcept {
        constexpr int kTemporalities[] = {2, 2, 2, 2, 1, 3, 4, 0};
        const std::uint8_t choice = input_.TakeByte();
        const int any = choice - 0x80;
        return EnumOrvGenericsTemporality(choice < 0xF0 ? kTemporalities[choice % 8] : any);
    }

    Tree& tree_;
    Input& input_;
    Composite* here_;
    int depth_ = 0;  // of the present composite
    int height_ = 0;  // at least that of the tree
    bool hasMany_;
};

}  // namespace

void GrowTree(Tree& tree, Input& input) {
    Grower grower(tree, input);
    while (!input.IsEmpty()) {
        try {
            grower.Step();
        } catch (const Exception&) {
            // A tree may refuse what it is told to do; it is as it was then.
        }
    }
}

}  // namespace KivFuzz
