// Walks with a visitor that is known when compiling: WalkNodes.

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include <KivGenerics/WalkNodes.h>

#include "containers/TestNodes.h"

namespace KivGenerics::Testing {
namespace {

/// The node and all below it, in the order of a walk.
void List(Node* node, std::vector<const Node*>& nodes) {
    nodes.push_back(node);
    if (auto* const composite = node_cast<Composite>(node)) {
        for (Node* child = composite->GetNext(-1); child != nullptr; child = composite->GetNext(child->GetIndex())) {
            List(child, nodes);
        }
    }
}
std::vector<const Node*> List(Node* start) {
    std::vector<const Node*> nodes;
    List(start, nodes);
    return nodes;
}

std::vector<const Node*> Walk(Node* start) {
    std::vector<const Node*> shown;
    WalkNodes(start, [&](const Node& node) { shown.push_back(&node); });
    return shown;
}

/// What is shown where `answer` steers: Integers by their values, "(" for a composite.
std::string Walk(Node* start, const std::function<WalkStep(const Node&)>& answer) {
    std::string text;
    WalkNodes(start, [&](Node& node) {
        auto* const number = node_cast<Integer>(&node);
        text += (text.empty() ? "" : " ") + (number != nullptr ? std::to_string(number->Get()) : "(");
        return answer(node);
    });
    return text;
}

class WalkNodesTest : public ContainerTest {
protected:
    /// In the slots and beyond them, with gaps.
    Map* NewSparse(int beyond) {
        Map* const map = NewMap();
        for (const int index : {1, 2, 6}) {
            Put(map, index, index);
        }
        for (int i = 0; i < beyond; ++i) {
            Put(map, 10 + 3 * i, 100 + i);
        }
        return map;
    }
};

TEST_F(WalkNodesTest, ShowsWhatThereIsInOrder) {
    NewSparse(0);
    NewMap();
    NewSparse(300);
    Vector* const vector = NewVector();
    NewVector();
    for (int i = 0; i < 5; ++i) {
        Append(vector, i);
    }
    Map* const inner = PutMap(PutVector(NewSparse(2), 11), 0);
    Put(inner, 500, 1);
    NewLeaf();
    EXPECT_EQ(List(root_), Walk(root_));
    EXPECT_EQ(List(vector), Walk(vector));
    EXPECT_EQ(List(inner), Walk(inner));
    EXPECT_GT(Walk(root_).size(), 300U);
}

TEST_F(WalkNodesTest, ALeafAloneIsShownAndNullIsNot) {
    Integer* const leaf = Put(root_, 0, 5);
    Put(root_, 1, 6);
    EXPECT_EQ("5", Walk(leaf, [](const Node&) { return WalkStep::Continue; }));
    EXPECT_EQ((std::vector<const Node*>{}), Walk(static_cast<Node*>(nullptr)));
}

/// Notes which overload each node came by.
struct Kinds {
    template <class T>
    void operator()(T& node) {
        static_assert(!std::is_same_v<T, Node> && !std::is_same_v<T, Composite>, "the class of its kind");
        EXPECT_EQ(T::StaticType, node.GetType());
        types.push_back(T::StaticType);
    }

    std::vector<NodeType> types;
};

TEST_F(WalkNodesTest, EveryNodeComesAsTheClassOfItsKind) {
    std::vector<NodeType> expected = {NodeTypeMap};
    for (int type = 1; type <= NodeTypeInteger64; ++type) {
        root_->NewNode(type, NodeType(type));
        expected.push_back(NodeType(type));
    }
    EXPECT_EQ(expected, WalkNodes(root_, Kinds()).types);
    for (const NodeType type : expected) {
        Vector* const list = NewVector();
        list->Add(type);
        list->Add(type);
        EXPECT_EQ((std::vector<NodeType>{NodeTypeVector, type, type}), WalkNodes(list, Kinds()).types);
    }
}

TEST_F(WalkNodesTest, TemporalitiesDoNotMatter) {
    Vector* const vector = NewVector();
    for (const int temporality : {1, 2, 3, 4, 7}) {
        Append(vector, temporality)->SetTemporality(EnumOrvGenericsTemporality(temporality));
    }
    NewMap()->SetTemporality(TemporalityTemporary);
    EXPECT_EQ(List(root_), Walk(root_));
}

TEST_F(WalkNodesTest, AnAnswerLeavesOutWhatIsBelow) {
    Vector* const skipped = NewVector();
    Append(skipped, 1);
    Append(NewVector(), 2);
    const auto skip = [&](const Node& node) {
        return node.GetType() == NodeTypeInteger || &node == skipped ? WalkStep::SkipChildren : WalkStep::Continue;
    };
    EXPECT_EQ("( ( ( 2", Walk(root_, skip));
    EXPECT_EQ("(", Walk(root_, [](const Node&) { return WalkStep::SkipChildren; }));
}

TEST_F(WalkNodesTest, AnAnswerEndsTheWalk) {
    Map* const map = NewSparse(2);
    Append(NewVector(), 7);
    const auto stopAt = [](int value) {
        return [value](const Node& node) {
            auto* const number = node_cast<Integer>(&node);
            return number != nullptr && number->Get() == value ? WalkStep::Stop : WalkStep::Continue;
        };
    };
    EXPECT_EQ("( 1 2", Walk(map, stopAt(2)));
    EXPECT_EQ("( ( 1 2 6 100", Walk(root_, stopAt(100)));
    EXPECT_EQ("( ( 1 2 6 100 101 ( 7", Walk(root_, stopAt(7)));
    EXPECT_EQ("(", Walk(root_, [](const Node&) { return WalkStep::Stop; }));
}

TEST_F(WalkNodesTest, TheVisitorIsGivenBack) {
    struct Counter {
        explicit Counter(int first) : count(first) {}
        Counter(Counter&&) = default;
        void operator()(const Node&) { ++count; }

        int count;
    };
    NewSparse(1);
    EXPECT_EQ(16, WalkNodes(root_, Counter(10)).count);
    EXPECT_EQ(10, WalkNodes(nullptr, Counter(10)).count);
}

TEST_F(WalkNodesTest, LeavesMayBeSetMeanwhile) {
    Map* const map = NewSparse(2);
    struct Doubler {
        void operator()(Integer& leaf) { leaf.Set(2 * leaf.Get()); }
        void operator()(const Node&) {}
    };
    WalkNodes(map, Doubler());
    EXPECT_EQ("{1:2 2:4 6:12 10:200 13:202}", Show(map));
}

TEST_F(WalkNodesTest, WhatAVisitorThrowsEndsTheWalk) {
    NewSparse(2);
    int shown = 0;
    const auto throwAtThird = [&](const Node&) {
        if (++shown == 3) {
            throw 7;
        }
    };
    EXPECT_THROW(WalkNodes(root_, throwAtThird), int);
    EXPECT_EQ(3, shown);
}

/// Chains that have something left on every level, or on some, in every place that children can stand in.
class DeepWalkNodesTest : public WalkNodesTest, public ::testing::WithParamInterface<int> {
protected:
    static constexpr int kLevels = 200;

    /// A composite in `parent` to go down to, with a leaf before it and, but for every third level, one behind it.
    static Composite* NewLevel(Composite* parent, int level) {
        const bool isVector = parent->GetType() == NodeTypeVector;
        const int place = isVector ? 1 : GetParam();
        Put(parent, 0, level);
        auto* const next = static_cast<Composite*>(
            parent->NewNode(place, (level / 2 + GetParam()) % 2 == 0 ? NodeTypeMap : NodeTypeVector));
        if (level % 3 != 0) {
            Put(parent, isVector ? 2 : place + 1 + level % 2 * 30, -level);
        }
        return next;
    }
};

INSTANTIATE_TEST_SUITE_P(Places, DeepWalkNodesTest, ::testing::Values(1, 7, 8, 1000));

TEST_P(DeepWalkNodesTest, WhatIsLeftOnEveryLevelIsComeBackTo) {
    Composite* const top = NewMap();
    NewLeaf();
    Composite* node = top;
    for (int level = 0; level < kLevels; ++level) {
        node = NewLevel(node, level);
    }
    EXPECT_EQ(List(root_), Walk(root_));
    EXPECT_EQ(List(top), Walk(top));
    EXPECT_EQ(List(node->GetParent()->GetParent()), Walk(node->GetParent()->GetParent()));
}

TEST_P(DeepWalkNodesTest, AWalkGoesDownAgainFromWhatItHasComeBackTo) {
    Composite* node = NewMap();
    for (int level = 0; level < kLevels; ++level) {
        Composite* const next = NewLevel(node, level);
        Composite* branch = level % 40 == 0 && node->GetType() == NodeTypeMap ? PutMap(node, 5000) : nullptr;
        for (int i = 0; branch != nullptr && i < 50; ++i) {
            branch = NewLevel(branch, i);
        }
        node = next;
    }
    EXPECT_EQ(List(root_), Walk(root_));
}

}  // namespace
}  // namespace KivGenerics::Testing
