#pragma once

#include <type_traits>
#include <utility>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/ChildRuns.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Prefetch.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>

namespace KivGenerics {

/// How a walk goes on behind a node that it has shown.
enum class WalkStep {
    Continue,
    SkipChildren,  ///< leave out what is below this composite; for a leaf as Continue
    Stop,  ///< abandon the whole walk at once
};

/// The walk of WalkNodes.
///
/// The arrays that it has come out of, and has to go back to, are kept for so many levels. Deeper down it finds back by the
/// nodes' parents and indexes. So it needs no memory, however deep the tree is, and next to nothing of the stack.
template <class Visitor>
class NodeWalker {
public:
    explicit NodeWalker(Visitor visitor) : visitor_(std::move(visitor)) {}

    /// Walks over `top` and what is below it, and answers the visitor.
    [[gnu::always_inline]] Visitor Run(Node& top) {
        ChildRuns children;
        if (Show(top, children) == WalkStep::Continue) {
            while (Node* const child = Next(children)) {
                if (Show(*child, children) == WalkStep::Stop) {
                    break;
                }
            }
        }
        return std::move(visitor_);
    }

private:
    static constexpr int kKept = 32;

    template <class T>
    [[gnu::always_inline]] WalkStep Call(Node& node) {
        using Answer = decltype(visitor_(static_cast<T&>(node)));
        static_assert(std::is_void_v<Answer> || std::is_same_v<Answer, WalkStep>,
                      "a visitor answers a WalkStep, or nothing");
        if constexpr (std::is_void_v<Answer>) {
            visitor_(static_cast<T&>(node));
            return WalkStep::Continue;
        } else {
            return visitor_(static_cast<T&>(node));
        }
    }

    [[gnu::always_inline]] WalkStep Show(Node& node, ChildRuns& children) {
        switch (node.GetType()) {
            case NodeTypeVector: return ShowComposite<Vector>(node, children);
            case NodeTypeMap: return ShowComposite<Map>(node, children);
            case NodeTypeInteger: return ShowLeaves<Integer>(node, children);
            case NodeTypeGlobalID: return ShowLeaves<GlobalID>(node, children);
            case NodeTypeString: return ShowLeaves<String>(node, children);
            case NodeTypeDouble: return ShowLeaves<Double>(node, children);
            case NodeTypeBoolean: return ShowLeaves<Boolean>(node, children);
            case NodeTypeIntegerSet: return ShowLeaves<IntegerSet>(node, children);
            case NodeTypeIdSet: return ShowLeaves<IdSet>(node, children);
            case NodeTypeStringSet: return ShowLeaves<StringSet>(node, children);
            case NodeTypeDoubleSet: return ShowLeaves<DoubleSet>(node, children);
            case NodeTypeInteger64: return ShowLeaves<Integer64>(node, children);
        }
        return WalkStep::Continue;
    }
    /// Shows a leaf, and those of its kind that stand right behind it.
    template <class T>
    [[gnu::always_inline]] WalkStep ShowLeaves(Node& first, ChildRuns& siblings) {
        Node* leaf = &first;
        do {
            PrefetchBehind(*leaf);
            if (Call<T>(*leaf) == WalkStep::Stop) {
                return WalkStep::Stop;
            }
            leaf = siblings.NextLike(T::StaticType);
        } while (leaf != nullptr);
        return WalkStep::Continue;
    }
    /// Shows a composite, and goes down to its children, which `siblings` are then.
    template <class T>
    [[gnu::always_inline]] WalkStep ShowComposite(Node& node, ChildRuns& siblings) {
        PrefetchBehind(node);
        const WalkStep step = Call<T>(node);
        if (step == WalkStep::Continue) {
            // A composite that is the last of its siblings is never come back to them from.
            if (siblings.MayHaveNext()) {
                if (left_ < kKept) {
                    kept_[left_] = siblings;
                }
                ++left_;
            }
            parent_ = static_cast<T*>(&node);
            siblings = ChildRuns(static_cast<T&>(node));
        }
        return step;
    }

    /// The next child, or the next one further up; null at the end of the walk.
    Node* Next(ChildRuns& children) {
        for (;;) {
            if (Node* const child = children.Next()) {
                return child;
            }
            if (left_ == 0) {
                return nullptr;
            }
            --left_;
            children = left_ < kKept ? kept_[left_] : FindLeft(parent_);
        }
    }
    /// What comes behind `below` and all it is the last child of; `below` is then what that is in.
    static ChildRuns FindLeft(Composite*& below) noexcept {
        for (;;) {
            const Composite& child = *below;
            below = child.GetParent();
            const ChildRuns behind = ChildRuns::Behind(*below, child);
            if (behind.MayHaveNext()) {
                return behind;
            }
        }
    }

    Visitor visitor_;
    Composite* parent_ = nullptr;  // of the present children, unless they were kept
    int left_ = 0;  // the levels to go back to, of which kKept at most are kept
    ChildRuns kept_[kKept];
};

/// Shows `top` and everything below it to a visitor that is known when compiling: a composite before its children, these in
/// index order, whatever their temporalities. Nothing for null.
///
/// `visitor(node)` is called with the node as the class of its kind, `Integer&` or `Map&`, and answers a WalkStep or nothing:
///
///     const int count = WalkNodes(tree->GetRoot(), Counter()).count;
///
/// Answers the visitor, as std::for_each does. The visitor may change what leaves hold; a composite must not gain or lose
/// children meanwhile. What the visitor throws ends the walk. Where flags, tags, or removing are asked for: Node::Iterate.
template <class Visitor>
Visitor WalkNodes(Node* top, Visitor visitor) {
    if (top == nullptr) {
        return visitor;
    }
    return NodeWalker<Visitor>(std::move(visitor)).Run(*top);
}

}  // namespace KivGenerics
