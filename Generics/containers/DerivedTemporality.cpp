// How composites get their derived temporality: from below, and vectors pass it on to what they hold.

#include <algorithm>

#include "core/ChildCursor.h"
#include "core/DerivedTemporality.h"
#include "core/FrameStack.h"

namespace KivGenerics {
namespace {

/// A composite whose children are being asked.
struct Asked {
    explicit Asked(Composite& asked) noexcept : composite(asked), children(asked) {}

    Composite& composite;
    ChildCursor children;
    EnumOrvGenericsTemporality least = TemporalityTemporary;  // kept-on-purpose: empty-composite-is-temporary
    bool isUniform = true;                                    // every child so far is a leaf and has the same value

    bool IsVector() const noexcept { return composite.GetType() == NodeTypeVector; }
};

/// Asks the leaves that come next, and answers the composite behind them, or null at the end.
Composite* AskLeaves(Asked& asked) noexcept {
    EnumOrvGenericsTemporality least = asked.least;
    EnumOrvGenericsTemporality greatest = TemporalityReserved;
    Node* const below = asked.children.FindNext([&](Node* child) {
        if (IsCompositeType(child->GetType())) {
            return true;
        }
        const EnumOrvGenericsTemporality derived = NodeAccess::CalculateLeaf(*child);
        least = derived < least ? derived : least;
        greatest = greatest < derived ? derived : greatest;
        return false;
    });
    asked.isUniform = asked.isUniform && below == nullptr && least >= greatest;
    asked.least = least;
    return static_cast<Composite*>(below);
}

EnumOrvGenericsTemporality GetResult(const Asked& asked) noexcept {
    const EnumOrvGenericsTemporality own = asked.composite.GetTemporality();
    return own == TemporalityDefault ? asked.least : own;
}

}  // namespace

// kept-on-purpose: vector-pushes-temporality
void PushTemporality(Vector& vector, EnumOrvGenericsTemporality t) {
    FrameStack<ChildCursor> vectors;
    NodeAccess::SetDerived(vector, t);
    vectors.Push(vector);
    while (!vectors.IsEmpty()) {
        Node* const child = vectors.Top().Next();
        if (child == nullptr) {
            vectors.Pop();
            continue;
        }
        NodeAccess::SetDerived(*child, t);
        if (child->GetType() == NodeTypeVector) {
            vectors.Push(static_cast<Vector&>(*child));
        }
    }
}

// Vectors right inside vectors are pushed to by the outermost alone: what it pushes reaches them all, and pushing once per
// level would make nested vectors cost the square of their depth.
EnumOrvGenericsTemporality CalculateTemporality(Composite& top) {
    FrameStack<Asked> path;
    path.Push(top);
    for (;;) {
        Asked& asked = path.Top();
        if (Composite* const below = AskLeaves(asked)) {
            path.Push(*below);
            continue;
        }
        Composite& done = asked.composite;
        const EnumOrvGenericsTemporality derived = GetResult(asked);
        const bool pushes = asked.IsVector() && !(asked.isUniform && asked.least == derived);
        NodeAccess::SetDerived(done, derived);
        path.Pop();
        if (pushes && (path.IsEmpty() || !path.Top().IsVector())) {
            PushTemporality(static_cast<Vector&>(done), derived);
        }
        if (path.IsEmpty()) {
            return derived;
        }
        path.Top().least = (std::min)(path.Top().least, derived);
        path.Top().isUniform = false;
    }
}

}  // namespace KivGenerics
