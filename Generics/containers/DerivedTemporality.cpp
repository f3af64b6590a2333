// How composites get their derived temporality: from below, and vectors pass it on to what they hold.

#include <algorithm>

#include "core/ChildCursor.h"
#include "core/DerivedTemporality.h"
#include "core/FrameStack.h"
#include "core/NextChild.h"
#include "core/NodeAccess.h"

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
    bool isAllPersistent = true;  // everything below the composites among the children
    bool isAllOnScale = true;  // the same

    bool IsVector() const noexcept { return composite.GetType() == NodeTypeVector; }
};

/// Asks the leaves that come next, and answers the composite behind them, or null at the end.
Composite* AskLeaves(Asked& asked) noexcept {
    EnumOrvGenericsTemporality least = asked.least;
    EnumOrvGenericsTemporality greatest = asked.greatest;
    const int round = NodeAccess::GetTree(asked.composite)->GetRound();
    Node* const below = asked.children.FindNext([&](Node* child) {
        if (IsCompositeType(child->GetType())) {
            return true;
        }
        const EnumOrvGenericsTemporality derived = NodeAccess::CalculateLeaf(*child, round);
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
    bool isEmpty;
    bool isSettled;  // a vector whose elements, and those of the vectors among them, hold its value already
    bool isAllPersistent;
    bool isAllOnScale;
};

Answer GetAnswer(const Asked& asked) noexcept {
    const EnumOrvGenericsTemporality own = asked.composite.GetTemporality();
    const EnumOrvGenericsTemporality derived = own == TemporalityDefault ? asked.least : own;
    const bool isEmpty = asked.greatest == TemporalityReserved && asked.least == TemporalityTemporary;
    const bool isOne = asked.least == derived && asked.greatest == derived;
    const bool isSettled = asked.isSettled && (isEmpty || isOne);
    const bool isAllPersistent = derived == TemporalityPersistent && asked.isAllPersistent && (isEmpty || isOne);
    const bool isAllOnScale = asked.isAllOnScale && NodeAccess::IsOnScale(derived) &&
                              TemporalityDefault <= asked.least && asked.greatest <= TemporalityTemporary;
    return {asked.composite, derived, asked.IsVector(), isEmpty, isSettled, isAllPersistent, isAllOnScale};
}

void Add(Asked& asked, const Answer& answer) noexcept {
    asked.least = (std::min)(asked.least, answer.derived);
    asked.greatest = (std::max)(asked.greatest, answer.derived);
    asked.isSettled = asked.isSettled && (!answer.isVector || answer.isSettled);
    asked.isAllPersistent = asked.isAllPersistent && answer.isAllPersistent;
    asked.isAllOnScale = asked.isAllOnScale && answer.isAllOnScale;
}

/// Whether the composite is one of those that are temporary for having no children; the tree learns it, too.
bool NoteWhetherEmpty(const Answer& answer) noexcept {
    const bool isCounted = answer.isEmpty && answer.composite.GetTemporality() == TemporalityDefault;
    if (isCounted) {
        NodeAccess::NoteNoChild(answer.composite);
    } else {
        NodeAccess::ForgetEmpty(answer.composite);
    }
    return isCounted;
}

/// The node that comes behind `node` and everything below it.
Node* GetBehind(Node* node) noexcept {
    while (Composite* const parent = NodeAccess::GetParent(*node)) {
        int position = node->GetIndex() + 1;
        if (Node* const next = TakeNextChild(*parent, position)) {
            return next;
        }
        node = parent;
    }
    return nullptr;
}

Node* GetFirstChild(Node& node) noexcept {
    int position = 0;
    return IsCompositeType(node.GetType()) ? TakeNextChild(static_cast<Composite&>(node), position) : nullptr;
}

}  // namespace

// kept-on-purpose: vector-pushes-temporality
void PushTemporality(Vector& vector, EnumOrvGenericsTemporality t) {
    FrameStack<ChildCursor> vectors;
    vectors.Push(vector);
    while (!vectors.IsEmpty()) {
        Node* const inner = vectors.Top().FindNext([t](Node* child) {
            NodeAccess::StoreDerived(*child, t);
            return child->GetType() == NodeTypeVector;
        });
        if (inner != nullptr) {
            vectors.Push(static_cast<Vector&>(*inner));
        } else {
            vectors.Pop();
        }
    }
}

// Vectors right inside vectors are pushed to by the outermost alone: what it pushes reaches them all, and pushing once per
// level would make nested vectors cost the square of their depth.
TemporalitySummary CalculateTemporality(Composite& top) {
    FrameStack<Asked> path;
    std::uint32_t emptyComposites = 0;
    path.Push(top);
    for (;;) {
        Asked& asked = path.Top();
        if (Composite* const below = AskLeaves(asked)) {
            path.Push(*below);
            continue;
        }
        const Answer answer = GetAnswer(asked);
        NodeAccess::StoreDerived(answer.composite, answer.derived);
        emptyComposites += NoteWhetherEmpty(answer) ? 1 : 0;
        path.Pop();
        const bool isPushedTo = !path.IsEmpty() && path.Top().IsVector();
        if (answer.isVector && !answer.isSettled && !isPushedTo) {
            PushTemporality(static_cast<Vector&>(answer.composite), answer.derived);
        }
        if (path.IsEmpty()) {
            return {answer.derived, answer.isAllPersistent, answer.isAllOnScale, emptyComposites};
        }
        Add(path.Top(), answer);
    }
}

void RestampTemporality(Node& root) noexcept {
    for (Node* node = &root; node != nullptr;) {
        NodeAccess::Restamp(*node);
        Node* const below = GetFirstChild(*node);
        node = below != nullptr ? below : GetBehind(node);
    }
}

}  // namespace KivGenerics
