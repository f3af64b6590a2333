// How composites get their derived temporality: from below, and vectors pass it on to what they hold.

#include <algorithm>

#include "core/ChildCursor.h"
#include "core/DerivedTemporality.h"
#include "core/FrameStack.h"

namespace KivGenerics {
namespace {

/// A composite whose children are being asked.
struct Asked {
    Composite* composite = nullptr;
    ChildCursor children;
    EnumOrvGenericsTemporality least = TemporalityTemporary;  // kept-on-purpose: empty-composite-is-temporary
    bool isVector = false;
    bool isUniform = true;  // every child so far is a leaf and has the same value
};

Asked Ask(Composite& composite) noexcept {
    Asked asked;
    asked.composite = &composite;
    asked.children = ChildCursor(composite);
    asked.isVector = composite.GetType() == NodeTypeVector;
    return asked;
}

/// Asks the leaves that come next, and answers the composite behind them, or null at the end.
Composite* AskLeaves(Asked& asked) noexcept {
    EnumOrvGenericsTemporality least = asked.least;
    EnumOrvGenericsTemporality greatest = TemporalityReserved;
    ChildCursor children = asked.children;
    Node* child = children.Next();
    for (; child != nullptr && !IsCompositeType(child->GetType()); child = children.Next()) {
        const EnumOrvGenericsTemporality derived = NodeAccess::CalculateLeaf(*child);
        least = derived < least ? derived : least;
        greatest = greatest < derived ? derived : greatest;
    }
    asked.isUniform = asked.isUniform && child == nullptr && least >= greatest;
    asked.least = least;
    asked.children = children;
    return static_cast<Composite*>(child);
}

EnumOrvGenericsTemporality GetResult(const Asked& asked) noexcept {
    const EnumOrvGenericsTemporality own = asked.composite->GetTemporality();
    return own == TemporalityDefault ? asked.least : own;
}

}  // namespace

// kept-on-purpose: vector-pushes-temporality
void PushTemporality(Vector& vector, EnumOrvGenericsTemporality t) {
    FrameStack<ChildCursor> vectors;
    NodeAccess::SetDerived(vector, t);
    vectors.Push(ChildCursor(vector));
    while (!vectors.IsEmpty()) {
        Node* const child = vectors.Top().Next();
        if (child == nullptr) {
            vectors.Pop();
            continue;
        }
        NodeAccess::SetDerived(*child, t);
        if (child->GetType() == NodeTypeVector) {
            vectors.Push(ChildCursor(static_cast<Vector&>(*child)));
        }
    }
}

// Vectors right inside vectors are pushed to by the outermost alone: what it pushes reaches them all, and pushing once per
// level would make nested vectors cost the square of their depth.
EnumOrvGenericsTemporality CalculateTemporality(Composite& top) {
    FrameStack<Asked> path;
    path.Push(Ask(top));
    for (;;) {
        if (Composite* const below = AskLeaves(path.Top())) {
            path.Push(Ask(*below));
            continue;
        }
        const Asked done = path.Top();
        const EnumOrvGenericsTemporality derived = GetResult(done);
        NodeAccess::SetDerived(*done.composite, derived);
        path.Pop();
        const bool isPushedTo = !path.IsEmpty() && path.Top().isVector;
        if (done.isVector && !isPushedTo && !(done.isUniform && done.least == derived)) {
            PushTemporality(static_cast<Vector&>(*done.composite), derived);
        }
        if (path.IsEmpty()) {
            return derived;
        }
        path.Top().least = (std::min)(path.Top().least, derived);
        path.Top().isUniform = false;
    }
}

}  // namespace KivGenerics
