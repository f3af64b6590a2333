// A walk goes down many levels, and on every one of them it goes on behind the child that it comes out of.

#include <algorithm>
#include <map>
#include <stdexcept>
#include <vector>

#include "traversal/Recorder.h"

namespace KivGenerics::Testing {
namespace {

constexpr int kLevels = 150;
constexpr int kBothOrders = IteratePreOrder | IteratePostOrder;
// Where a walker hands over to the next one, and around that.
constexpr int kNoted[] = {0, 1, 2, 62, 63, 64, 65, 66, 126, 127, 128, 129, 130, kLevels - 1};

struct DeepCase {
    const char* name;
    NodeType type;
    int deepIndex;  // of the child that goes down, and behind it a number
    int behind;
};

/// A composite on every level. That of level 0 stands in the root; behind each stands the number of its level.
class DeepWalkTest : public ::testing::TestWithParam<DeepCase> {
protected:
    DeepWalkTest() {
        Composite* parent = root_;
        for (int level = 0; level < kLevels; ++level) {
            auto* const deep = static_cast<Composite*>(parent->NewNode(IndexIn(parent, 0), GetParam().type));
            numbers_.push_back(static_cast<Integer*>(parent->NewNode(IndexIn(parent, 1), NodeTypeInteger)));
            numbers_.back()->Set(level);
            levels_[deep] = level;
            deep_.push_back(deep);
            parent = deep;
        }
    }

    static int IndexIn(const Composite* parent, int child) {
        const int index = child == 0 ? GetParam().deepIndex : GetParam().behind;
        return parent->GetType() == NodeTypeVector ? child : index;
    }

    /// What a walk shows: of a composite "level" before its children and "-level" behind them, of a number "+level".
    struct Shown {
        enum When { Before, After, Number } when;
        int level;
        bool operator==(const Shown& other) const { return when == other.when && level == other.level; }
    };

    std::vector<Shown> Walk(int flags, const Recorder::Answer& answer) {
        class Visits final : public VisitorNode {
        public:
            Visits(DeepWalkTest& test, const Recorder::Answer& answer) : test_(test), answer_(answer) {}
            VisitCode VisitNode(Node* node, bool postOrder, NodeType type) override {
                if (type == NodeTypeInteger) {
                    shown.push_back({Shown::Number, static_cast<Integer*>(node)->Get()});
                } else {
                    shown.push_back({postOrder ? Shown::After : Shown::Before, test_.levels_.at(node)});
                }
                return answer_(node, postOrder);
            }
            std::vector<Shown> shown;

        private:
            DeepWalkTest& test_;
            const Recorder::Answer& answer_;
        };
        Visits visits(*this, answer);
        root_->Iterate(&visits, SemanticTagNone, flags);
        return visits.shown;
    }
    /// The same where `node` alone gets another answer than VisitContinue.
    std::vector<Shown> WalkWith(const Node* node, VisitCode code, bool atPostOrder = false) {
        return Walk(kBothOrders, [=](Node* shown, bool postOrder) {
            return shown == node && postOrder == atPostOrder ? code : VisitContinue;
        });
    }

    /// The walk down to the composite of a level, before its children.
    static std::vector<Shown> WayDownTo(int level) {
        std::vector<Shown> shown;
        for (int i = 0; i <= level; ++i) {
            shown.push_back({Shown::Before, i});
        }
        return shown;
    }
    /// The walk out of the composite of a level, without that one.
    static void AppendWayUpFrom(int level, std::vector<Shown>& shown) {
        shown.push_back({Shown::Number, level});
        for (int i = level - 1; i >= 0; --i) {
            shown.push_back({Shown::After, i});
            shown.push_back({Shown::Number, i});
        }
    }
    static std::vector<Shown> Whole() {
        std::vector<Shown> shown = WayDownTo(kLevels - 1);
        shown.push_back({Shown::After, kLevels - 1});
        AppendWayUpFrom(kLevels - 1, shown);
        return shown;
    }
    static int CountShown(const std::vector<Shown>& shown, Shown::When when) {
        int count = 0;
        for (const Shown& each : shown) {
            count += each.when == when ? 1 : 0;
        }
        return count;
    }

    KivBase::ReturnPtrI<Tree> tree_ = CreateGenericTree(EnumOrvObjectType(0));
    Composite* root_ = static_cast<Composite*>(tree_->NewRoot(GetParam().type));
    std::vector<Composite*> deep_;  // by level
    std::vector<Integer*> numbers_;  // by level
    std::map<const Node*, int> levels_;
};

INSTANTIATE_TEST_SUITE_P(Composites, DeepWalkTest,
                         ::testing::Values(DeepCase{"Vectors", NodeTypeVector, 0, 1},
                                           DeepCase{"Maps", NodeTypeMap, 0, 1},
                                           DeepCase{"MapsBeyondTheirSlots", NodeTypeMap, 100, 101}),
                         [](const auto& each) { return each.param.name; });

TEST_P(DeepWalkTest, EveryLevelIsShownBeforeAndAfterWhatIsBelow) {
    const auto goOn = [](Node*, bool) { return VisitContinue; };
    EXPECT_EQ(Whole(), Walk(kBothOrders, goOn));
    EXPECT_EQ(2 * kLevels, static_cast<int>(Walk(0, goOn).size()));
    EXPECT_EQ(2 * kLevels, static_cast<int>(Walk(IteratePostOrder, goOn).size()));
}

TEST_P(DeepWalkTest, StoppingEndsTheWalkOnAnyLevel) {
    for (const int level : kNoted) {
        EXPECT_EQ(WayDownTo(level), WalkWith(deep_[std::size_t(level)], VisitStop)) << level;
        std::vector<Shown> up = Whole();
        const int levelsLeft = kLevels - 1 - level;
        up.erase(up.begin() + kLevels + 1 + 2 * levelsLeft, up.end());
        EXPECT_EQ(up, WalkWith(deep_[std::size_t(level)], VisitStop, true)) << level;
        up.push_back({Shown::Number, level});
        EXPECT_EQ(up, WalkWith(numbers_[std::size_t(level)], VisitStop)) << level;
    }
}

TEST_P(DeepWalkTest, SkippingLeavesOutWhatIsBelowOnAnyLevel) {
    for (const int level : kNoted) {
        std::vector<Shown> shown = WayDownTo(level);
        AppendWayUpFrom(level, shown);
        EXPECT_EQ(shown, WalkWith(deep_[std::size_t(level)], VisitSkipChildren)) << level;
        EXPECT_EQ(Whole(), WalkWith(deep_[std::size_t(level)], VisitSkipChildren, true)) << level;
    }
}

TEST_P(DeepWalkTest, RemovingBeforeTheChildrenTakesWhatIsBelowUnseenOnAnyLevel) {
    for (int i = static_cast<int>(std::size(kNoted)) - 1; i >= 0; --i) {
        const int level = kNoted[i];
        std::vector<Shown> shown = WayDownTo(level);
        AppendWayUpFrom(level, shown);
        EXPECT_EQ(shown, WalkWith(deep_[std::size_t(level)], VisitRemove)) << level;
        Composite* const parent = level == 0 ? root_ : deep_[std::size_t(level - 1)];
        EXPECT_EQ(numbers_[std::size_t(level)], parent->GetNext(-1)) << level;
        EXPECT_EQ(nullptr, parent->GetNth(1)) << level;
    }
}

TEST_P(DeepWalkTest, RemovingAfterTheChildrenShowsWhatIsBelowOnAnyLevel) {
    std::vector<Shown> shown = Whole();
    for (int i = static_cast<int>(std::size(kNoted)) - 1; i >= 0; --i) {
        const int level = kNoted[i];
        EXPECT_EQ(shown, WalkWith(deep_[std::size_t(level)], VisitRemove, true)) << level;
        shown = WayDownTo(level - 1);
        AppendWayUpFrom(level, shown);
        EXPECT_EQ(shown, WalkWith(nullptr, VisitStop)) << level;
    }
}

TEST_P(DeepWalkTest, RemovingEverythingFromBelowEmptiesTheStart) {
    EXPECT_EQ(2 * kLevels, static_cast<int>(Walk(IteratePostOrder, [](Node*, bool) { return VisitRemove; }).size()));
    EXPECT_TRUE(root_->IsEmpty());
}

TEST_P(DeepWalkTest, WhatIsChangedOnTheWayDownIsFoundOnTheWayUp) {
    Node* const deepest = deep_.back();
    const auto shown = Walk(kBothOrders, [&](Node* node, bool postOrder) {
        if (node == deepest && !postOrder) {
            for (const int level : kNoted) {
                Composite* const parent = numbers_[std::size_t(level)]->GetParent();
                numbers_[std::size_t(level)]->Remove();
                const int index = IndexIn(parent, 1);
                for (const int more : {1000, 2000}) {
                    static_cast<Integer*>(parent->NewNode(index + more / 1000 - 1, NodeTypeInteger))->Set(more + level);
                }
            }
        }
        return VisitContinue;
    });
    constexpr int kChanged = static_cast<int>(std::size(kNoted));
    EXPECT_EQ(kLevels, CountShown(shown, Shown::Before));
    EXPECT_EQ(kLevels, CountShown(shown, Shown::After));
    EXPECT_EQ(kLevels + kChanged, CountShown(shown, Shown::Number));
    for (const int level : kNoted) {
        const auto first = std::find(shown.begin(), shown.end(), Shown{Shown::Number, 1000 + level});
        ASSERT_NE(first, shown.end()) << level;
        EXPECT_EQ((Shown{Shown::After, level}), first[-1]) << level;
        EXPECT_EQ((Shown{Shown::Number, 2000 + level}), first[1]) << level;
    }
}

TEST_P(DeepWalkTest, TheFlagsOfTheStartAndItsChildrenAreNotThoseOfDeeperLevels) {
    const auto goOn = [](Node*, bool) { return VisitContinue; };
    EXPECT_EQ(2 * (kLevels - 1), static_cast<int>(Walk(IterateDeeper, goOn).size()));
    EXPECT_EQ(2, static_cast<int>(Walk(IterateChildren, goOn).size()));
    EXPECT_EQ(kLevels, static_cast<int>(Walk(1 << (NodeTypeInteger - 1), goOn).size()));
}

TEST_P(DeepWalkTest, WhatAVisitorThrowsPassesThroughAllLevels) {
    for (const int level : kNoted) {
        const Node* const number = numbers_[std::size_t(level)];
        const auto fail = [=](Node* node, bool) -> VisitCode {
            return node == number ? throw std::runtime_error("from the visitor") : VisitContinue;
        };
        EXPECT_THROW(Walk(kBothOrders, fail), std::runtime_error) << level;
    }
    EXPECT_EQ(Whole(), WalkWith(nullptr, VisitStop));
}

}  // namespace
}  // namespace KivGenerics::Testing
