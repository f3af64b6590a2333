// A visitor changes the composite whose children it is shown, at every one of them and inside the composites among them. What it
// adds behind is shown, what it removes there is not; a vector goes on by the number of the place, a map by the key.

#include <array>

#include "traversal/Recorder.h"

namespace KivGenerics::Testing {
namespace {

constexpr int kBothOrders = IteratePreOrder | IteratePostOrder;
constexpr int kVisits = 9;

/// What is shown when the change is made at the first visit, at the second one, and so on.
using Shown = std::array<const char*, kVisits>;

struct Layout {
    const char* name;
    NodeType type;
    int first;  // index; the others follow
};

/// Children 1 [2] 3 [4] 5, of which the walk shows "1 ( 2 ) 3 ( 4 ) 5".
class WalkChangesTest : public ContainerTest, public ::testing::WithParamInterface<Layout> {
protected:
    enum class Change { AddBehind, AddBefore, RemoveNext, RemovePrevious };

    /// What a walk shows when `change` is made at the visit of this number.
    std::string WalkWith(Change change, int visit) {
        Composite* const top = NewTop();
        // The child that the walk is at.
        constexpr std::array<int, kVisits> kChildren = {0, 1, 1, 1, 2, 3, 3, 3, 4};
        const int child = kChildren[static_cast<std::size_t>(visit)];
        std::string text;
        int visits = 0;
        Recorder recorder([&](Node* node, bool postOrder) {
            text += text.empty() ? "" : " ";
            text += node_cast<Vector>(node) != nullptr ? (postOrder ? ")" : "(") : Testing::Show(node);
            if (visits++ == visit) {
                Make(change, *top, child);
            }
            return VisitContinue;
        });
        top->Iterate(&recorder, SemanticTagNone, kBothOrders);
        top->Clear();
        return text;
    }

    void Expect(Change change, const Shown& inVector, const Shown& inMap) {
        const Shown& expected = GetParam().type == NodeTypeVector ? inVector : inMap;
        for (int visit = 0; visit < kVisits; ++visit) {
            EXPECT_EQ(expected[static_cast<std::size_t>(visit)], WalkWith(change, visit)) << "at visit " << visit;
        }
    }

private:
    Composite* NewTop() {
        const Layout& layout = GetParam();
        Composite* const top = layout.type == NodeTypeVector ? static_cast<Composite*>(NewVector()) : NewMap();
        for (int i = 0; i < 5; ++i) {
            if (i % 2 == 0) {
                Put(top, layout.first + i, i + 1);
            } else {
                Put(PutVector(top, layout.first + i), 0, i + 1);
            }
        }
        return top;
    }

    static void Make(Change change, Composite& top, int child) {
        const Layout& layout = GetParam();
        switch (change) {
            case Change::AddBehind: Put(&top, layout.first + 5, 9); break;
            case Change::AddBefore:
                if (auto* const vector = node_cast<Vector>(&top)) {
                    static_cast<Integer*>(vector->Insert(0, NodeTypeInteger))->Set(9);
                } else {
                    Put(&top, layout.first - 1, 9);
                }
                break;
            case Change::RemoveNext:
                if (Node* const next = top.GetNth(child + 1)) {
                    next->Remove();
                }
                break;
            case Change::RemovePrevious:
                if (child > 0) {
                    top.GetNth(child - 1)->Remove();
                }
                break;
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Composites, WalkChangesTest,
                         ::testing::Values(Layout{"Vector", NodeTypeVector, 0}, Layout{"MapInItsSlots", NodeTypeMap, 1},
                                           Layout{"MapAcrossTheEndOfItsSlots", NodeTypeMap, 6},
                                           Layout{"MapWithOneChildInItsSlots", NodeTypeMap, 7},
                                           Layout{"MapBeyondItsSlots", NodeTypeMap, 101}),
                         [](const auto& each) { return each.param.name; });

TEST_P(WalkChangesTest, WhatIsAddedBehindIsShown) {
    Shown shown;
    shown.fill("1 ( 2 ) 3 ( 4 ) 5 9");
    Expect(Change::AddBehind, shown, shown);
}

TEST_P(WalkChangesTest, WhatIsAddedBeforeIsNotShownButMovesTheElementsOfAVector) {
    Shown unchanged;
    unchanged.fill("1 ( 2 ) 3 ( 4 ) 5");
    Expect(Change::AddBefore,
           {"1 1 ( 2 ) 3 ( 4 ) 5", "1 ( 2 ) ( 2 ) 3 ( 4 ) 5", "1 ( 2 ) ( 2 ) 3 ( 4 ) 5", "1 ( 2 ) ( 2 ) 3 ( 4 ) 5",
            "1 ( 2 ) 3 3 ( 4 ) 5", "1 ( 2 ) 3 ( 4 ) ( 4 ) 5", "1 ( 2 ) 3 ( 4 ) ( 4 ) 5", "1 ( 2 ) 3 ( 4 ) ( 4 ) 5",
            "1 ( 2 ) 3 ( 4 ) 5 5"},
           unchanged);
}

TEST_P(WalkChangesTest, WhatIsRemovedNextIsNotShown) {
    const Shown shown = {"1 3 ( 4 ) 5",     "1 ( 2 ) ( 4 ) 5", "1 ( 2 ) ( 4 ) 5", "1 ( 2 ) ( 4 ) 5",  "1 ( 2 ) 3 5",
                         "1 ( 2 ) 3 ( 4 )", "1 ( 2 ) 3 ( 4 )", "1 ( 2 ) 3 ( 4 )", "1 ( 2 ) 3 ( 4 ) 5"};
    Expect(Change::RemoveNext, shown, shown);
}

TEST_P(WalkChangesTest, RemovingThePreviousOneMovesTheElementsOfAVectorAlone) {
    Shown unchanged;
    unchanged.fill("1 ( 2 ) 3 ( 4 ) 5");
    Expect(Change::RemovePrevious,
           {"1 ( 2 ) 3 ( 4 ) 5", "1 ( 2 ) ( 4 ) 5", "1 ( 2 ) ( 4 ) 5", "1 ( 2 ) ( 4 ) 5", "1 ( 2 ) 3 5",
            "1 ( 2 ) 3 ( 4 )", "1 ( 2 ) 3 ( 4 )", "1 ( 2 ) 3 ( 4 )", "1 ( 2 ) 3 ( 4 ) 5"},
           unchanged);
}

}  // namespace
}  // namespace KivGenerics::Testing
