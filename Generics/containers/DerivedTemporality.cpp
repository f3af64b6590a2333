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
    EnumOrvGenericsTemporality greatest = TemporalityReserved;
    bool isSettled = true;  // the vectors among the children hold what they would be pushed

    bool IsVector() const noexcept { return composite.GetType() == NodeTypeVector; }
};

/// Asks the leaves that come next, and answers the composite behind them, or null at the end.
Composite* AskLeaves(Asked& asked) noexcept {
    EnumOrvGenericsTemporality least = asked.least;
    EnumOrvGenericsTemporality greatest = asked.greatest;
    Node* const below = asked.children.FindNext([&](Node* child) {
        if (IsCompositeType(child->GetType())) {
            return true;
        }
        const EnumOrvGenericsTemporality derived = NodeAccess::CalculateLeaf(*child);
        least = derived < least ? derived : least;
        greatest = greatest < derived ? derived : greatest;
        return false;
    });
    asked.least = least;
    asked.greatest = greatest;
    return static_cast<Composite*>(below);
}

/// What came of a composite.
struct Answer {
    Composite& composite;
    EnumOrvGenericsTemporality derived;
    bool isVector;
    bool isSettled;  // a vector whose elements, and those of the vectors among them, hold its value already
};

Answer GetAnswer(const Asked& asked) noexcept {
    const EnumOrvGenericsTemporality own = asked.composite.GetTemporality();
    const EnumOrvGenericsTemporality derived = own == TemporalityDefault ? asked.least : own;
    const bool isEmpty = asked.greatest == TemporalityReserved && asked.least == TemporalityTemporary;
    const bool isOne = asked.least == derived && asked.greatest == derived;
    return {asked.composite, derived, asked.IsVector(), asked.isSettled && (isEmpty || isOne)};
}

void Add(Asked& asked, const Answer& answer) noexcept {
    asked.least = (std::min)(asked.least, answer.derived);
    asked.greatest = (std::max)(asked.greatest, answer.derived);
    asked.isSettled = asked.isSettled && (!answer.isVector || answer.isSettled);
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
        const Answer answer = GetAnswer(asked);
        NodeAccess::SetDerived(answer.composite, answer.derived);
        path.Pop();
        const bool isPushedTo = !path.IsEmpty() && path.Top().IsVector();
        if (answer.isVector && !answer.isSettled && !isPushedTo) {
            PushTemporality(static_cast<Vector&>(answer.composite), answer.derived);
        }
        if (path.IsEmpty()) {
            return answer.derived;
        }
        Add(path.Top(), answer);
    }
}

}  // namespace KivGenerics
