// Walks that show leaves in rows: Node::IterateRows.

#include <algorithm>
#include <functional>
#include <numeric>

#include "core/Invariants.h"
#include "traversal/Recorder.h"

namespace KivGenerics::Testing {
namespace {

/// Takes Integers in rows and answers for each row; all else is noted one by one.
class IntegerRows final : public RowVisitor {
public:
    using Answer = std::function<VisitCode(LeafRow<Integer>)>;

    explicit IntegerRows(Answer answer = {}) : RowVisitor({NodeTypeInteger}), answer_(std::move(answer)) {}

    std::string text;

    VisitCode VisitIntegers(LeafRow<Integer> row) override {
        text += text.empty() ? "" : " ";
        for (Integer* const leaf : row) {
            text += (leaf == *row.begin() ? "" : ",") + std::to_string(leaf->Get());
        }
        return answer_ ? answer_(row) : VisitContinue;
    }
    VisitCode VisitInteger(Integer*) override { return Note("one"); }
    VisitCode VisitDouble(Double*) override { return Note("double"); }
    VisitCode VisitMap(Map*, bool) override { return Note("map"); }
    VisitCode VisitVector(Vector*, bool) override { return Note("vector"); }

private:
    VisitCode Note(const char* what) {
        text += (text.empty() ? "" : " ") + std::string(what);
        return VisitContinue;
    }

    Answer answer_;
};

class RowVisitorTest : public ContainerTest {
protected:
    static std::string WalkIntegers(Node* start, IntegerRows::Answer answer = {}, int flags = 0) {
        IntegerRows visitor(std::move(answer));
        start->IterateRows(&visitor, SemanticTagNone, flags);
        return visitor.text;
    }
    static std::vector<int> RowsOf(Node* start, SlotRows slotRows = SlotRows::OfOneKind) {
        RowRecorder recorder(slotRows);
        start->IterateRows(&recorder, SemanticTagNone, 0);
        return recorder.rows;
    }

    Vector* NewNumbers(int count) {
        Vector* const vector = NewVector();
        for (int i = 0; i < count; ++i) {
            Append(vector, i);
        }
        return vector;
    }
    /// Numbers in the slots 1 to 3 and 6, and so many beyond the slots.
    Map* NewSparse(int beyond) {
        Map* const map = NewMap();
        for (const int index : {1, 2, 3, 6}) {
            Put(map, index, index);
        }
        for (int i = 0; i < beyond; ++i) {
            Put(map, 10 + 3 * i, i);
        }
        return map;
    }
};

TEST_F(RowVisitorTest, ElementsComeInRowsOfALimitedLength) {
    EXPECT_EQ((std::vector<int>{}), RowsOf(NewNumbers(0)));
    EXPECT_EQ((std::vector<int>{1}), RowsOf(NewNumbers(1)));
    EXPECT_EQ((std::vector<int>{63}), RowsOf(NewNumbers(63)));
    EXPECT_EQ((std::vector<int>{64, 64, 64, 8}), RowsOf(NewNumbers(200)));
    EXPECT_NE("", Walk(NewNumbers(200)));
}

TEST_F(RowVisitorTest, WhatIsUnlikeOrStandsApartBeginsARow) {
    Map* const map = NewSparse(300);
    std::vector<int> rows = RowsOf(map);
    EXPECT_EQ((std::vector<int>{3, 1}), std::vector<int>(rows.begin(), rows.begin() + 2));
    EXPECT_EQ(304, std::accumulate(rows.begin(), rows.end(), 0));
    EXPECT_LE(*std::max_element(rows.begin(), rows.end()), 64);
    EXPECT_NE("", Walk(map));

    Vector* const mixed = NewVector();
    for (const int kind : {1, 1, 4, 4, 4, 1, 6, 1}) {
        mixed->Insert(mixed->GetSize(TemporalityTemporary), NodeType(kind));
    }
    mixed->Get(1)->SetTemporality(TemporalityTransient);
    mixed->Get(3)->SetTemporality(EnumOrvGenericsTemporality(7));
    EXPECT_EQ((std::vector<int>{1, 1, 1, 1, 1, 1}), RowsOf(mixed));
    EXPECT_NE("", Walk(mixed));
}

TEST_F(RowVisitorTest, InSlotsLeavesOfSeveralKindsCanComeTogether) {
    Map* const map = NewMap();
    const auto make = [map](int index, NodeType kind) { return map->NewNode(index, kind); };
    EXPECT_EQ((std::vector<int>{}), RowsOf(map, SlotRows::OfAnyKinds));
    make(0, NodeTypeInteger);
    make(1, NodeTypeString);
    make(2, NodeTypeDouble);
    EXPECT_EQ((std::vector<int>{3}), RowsOf(map, SlotRows::OfAnyKinds));
    make(4, NodeTypeBoolean);
    make(5, NodeTypeGlobalID);
    make(7, NodeTypeInteger64);
    EXPECT_EQ((std::vector<int>{3, 2, 1}), RowsOf(map, SlotRows::OfAnyKinds));
    make(6, NodeTypeIntegerSet);
    make(3, NodeTypeVector);
    EXPECT_EQ((std::vector<int>{3, 2, 1}), RowsOf(map, SlotRows::OfAnyKinds));
    map->Get(1)->SetTemporality(TemporalityTransient);
    map->Get(4)->SetTemporality(EnumOrvGenericsTemporality(7));
    EXPECT_EQ((std::vector<int>{3, 1, 1}), RowsOf(map, SlotRows::OfAnyKinds));
    // What is not in slots comes by kinds.
    make(9, NodeTypeInteger);
    make(10, NodeTypeInteger);
    make(11, NodeTypeDouble);
    static_cast<Vector*>(map->Get(3))->Add<Integer>();
    EXPECT_EQ((std::vector<int>{3, 1, 1, 1, 2, 1}), RowsOf(map, SlotRows::OfAnyKinds));
    EXPECT_NE("", Walk(map));
}

/// Takes Integers and Doubles together, and answers the same for every row.
class SlotsTogether final : public RowVisitor {
public:
    explicit SlotsTogether(VisitCode answer)
        : RowVisitor({NodeTypeInteger, NodeTypeDouble}, SlotRows::OfAnyKinds), answer_(answer) {}

    std::string text;

    VisitCode VisitSlots(LeafRow<Node> row) override {
        text += "row of " + std::to_string(row.GetSize()) + " ";
        return answer_;
    }
    VisitCode VisitString(String*) override { return Note("text "); }
    VisitCode VisitVector(Vector*, bool) override { return Note("vector "); }

private:
    VisitCode Note(const char* what) {
        text += what;
        return VisitContinue;
    }

    VisitCode answer_;
};

TEST_F(RowVisitorTest, TheAnswerHoldsForAllThatComesTogether) {
    Map* const map = NewMap();
    const auto walk = [map](VisitCode answer) {
        SlotsTogether visitor(answer);
        map->IterateRows(&visitor, SemanticTagNone, 0);
        return visitor.text;
    };
    Put(map, 0, 1);
    map->NewNode<Double>(1);
    map->NewNode<String>(2);
    Put(map, 3, 2);
    map->NewNode<Vector>(4);
    map->NewNode<Double>(5);
    Put(map, 6, 3);
    Put(map, 9, 4);
    EXPECT_EQ("row of 2 text row of 1 vector row of 2 ", walk(VisitContinue));
    EXPECT_EQ("row of 2 ", walk(VisitStop));
    EXPECT_EQ("row of 2 text row of 1 vector row of 2 ", walk(VisitRemove));
    EXPECT_EQ("{2:String 4:[] 9:4}", Show(map));
    EXPECT_EQ(0, CheckInvariants(root_));
    EXPECT_EQ("text vector ", walk(VisitRemove));
}

TEST_F(RowVisitorTest, AKindThatIsNotAskedForInRowsIsShownOneByOne) {
    Map* const map = NewMap();
    Put(map, 0, 5);
    Put(map, 1, 6);
    map->NewNode<Double>(2);
    map->NewNode<Double>(3);
    Append(PutVector(map, 9), 7);
    EXPECT_EQ("5,6 double double vector 7", WalkIntegers(map));
}

TEST_F(RowVisitorTest, EveryKindThatHoldsOneValueComesInRows) {
    constexpr NodeType kKinds[] = {NodeTypeBoolean, NodeTypeDouble,    NodeTypeGlobalID,
                                   NodeTypeInteger, NodeTypeInteger64, NodeTypeString};
    class Silent final : public RowVisitor {
    public:
        explicit Silent(SlotRows slotRows)
            : RowVisitor({NodeTypeBoolean, NodeTypeDouble, NodeTypeGlobalID, NodeTypeInteger, NodeTypeInteger64,
                          NodeTypeString},
                         slotRows) {}
    };
    Map* const map = NewMap();
    std::vector<int> expected;
    int index = 0;
    for (const NodeType kind : kKinds) {
        map->NewNode(index++, kind);
        expected.push_back(1);
    }
    for (const NodeType kind : kKinds) {
        Vector* const list = PutVector(map, 10 + index++);
        list->Add(kind);
        list->Add(kind);
        expected.push_back(2);
    }
    EXPECT_EQ(expected, RowsOf(map));
    EXPECT_NE("", Walk(map));
    const std::string before = Show(map);
    for (const SlotRows slotRows : {SlotRows::OfOneKind, SlotRows::OfAnyKinds}) {
        Silent silent(slotRows);
        map->IterateRows(&silent, SemanticTagNone, 0);
        EXPECT_EQ(before, Show(map));
    }
}

TEST_F(RowVisitorTest, SetsComeOneByOne) {
    Map* const map = NewMap();
    int index = 0;
    for (const NodeType kind : {NodeTypeIntegerSet, NodeTypeIdSet, NodeTypeStringSet, NodeTypeDoubleSet}) {
        map->NewNode(index, kind);
        Vector* const list = PutVector(map, 10 + index++);
        list->Add(kind);
        list->Add(kind);
    }
    EXPECT_EQ((std::vector<int>{}), RowsOf(map));
    EXPECT_NE("", Walk(map));
}

TEST_F(RowVisitorTest, ALeafIsARowOfItsOwn) {
    Integer* const leaf = Put(root_, 0, 5);
    EXPECT_EQ("5", WalkIntegers(leaf, {}, IterateSelf));
    EXPECT_EQ("", WalkIntegers(leaf));
    EXPECT_EQ("", WalkIntegers(leaf, {}, IterateSelf | 1 << (NodeTypeDouble - 1)));
    EXPECT_EQ("double", WalkIntegers(root_->NewNode<Double>(1), {}, IterateSelf));
    EXPECT_EQ("5", WalkIntegers(leaf, [](auto) { return VisitRemove; }, IterateSelf));
    EXPECT_EQ(nullptr, root_->Get(0));
}

TEST_F(RowVisitorTest, WithoutAVisitorNothingHappens) {
    root_->IterateRows(nullptr, SemanticTagNone, 0);
    EXPECT_EQ("{}", Show(root_));
}

TEST_F(RowVisitorTest, WithoutOperationsOfItsOwnAVisitorGoesOn) {
    class Silent final : public RowVisitor {
    public:
        Silent() : RowVisitor({NodeTypeInteger, NodeTypeMap, NodeTypeIntegerSet, NodeType(40), NodeTypeString}) {}
    };
    Silent silent;
    EXPECT_EQ(SlotRows::OfOneKind, silent.GetSlotRows());
    EXPECT_TRUE(silent.TakesRows(NodeTypeInteger));
    EXPECT_TRUE(silent.TakesRows(NodeTypeString));
    EXPECT_FALSE(silent.TakesRows(NodeTypeDouble));
    EXPECT_FALSE(silent.TakesRows(NodeTypeMap));
    EXPECT_FALSE(silent.TakesRows(NodeTypeIntegerSet));
    NewSparse(20);
    const std::string before = Show(root_);
    root_->IterateRows(&silent, SemanticTagNone, 0);
    EXPECT_EQ(before, Show(root_));
}

TEST_F(RowVisitorTest, StoppingEndsTheWalkBehindTheRow) {
    NewNumbers(2);
    Map* const map = NewSparse(3);
    NewNumbers(3);
    const auto stopAt = [](int value) {
        return [value](LeafRow<Integer> row) { return (*row.begin())->Get() == value ? VisitStop : VisitContinue; };
    };
    EXPECT_EQ("vector 0,1", WalkIntegers(root_, stopAt(0)));
    EXPECT_EQ("vector 0,1 map 1,2,3",
              WalkIntegers(root_, [](LeafRow<Integer> row) { return row.GetSize() == 3 ? VisitStop : VisitContinue; }));
    EXPECT_EQ("1,2,3 6", WalkIntegers(map, stopAt(6)));
    EXPECT_EQ("1,2,3 6 0,1,2", WalkIntegers(map, stopAt(0)));
    EXPECT_EQ("1,2,3 6 0,1,2", WalkIntegers(map, [](auto) { return VisitSkipChildren; }));
}

/// Removes what `goes` is true for, one by one and in rows, from trees that were alike; both must leave the same.
void ExpectTheSameRemoved(const std::function<void(Map&)>& fill, const std::function<bool(const Integer&)>& goes) {
    const auto rowTree = KivTests::NewTree();
    const auto singleTree = KivTests::NewTree();
    auto* const rowRoot = static_cast<Map*>(rowTree->NewRoot(NodeTypeMap));
    auto* const singleRoot = static_cast<Map*>(singleTree->NewRoot(NodeTypeMap));
    fill(*rowRoot);
    fill(*singleRoot);
    Recorder single([&](Node* node, bool) {
        auto* const number = node_cast<Integer>(node);
        return number != nullptr && goes(*number) ? VisitRemove : VisitContinue;
    });
    IntegerRows rows([&](LeafRow<Integer> row) {
        return std::all_of(row.begin(), row.end(), [&](Integer* leaf) { return goes(*leaf); }) ? VisitRemove
                                                                                               : VisitContinue;
    });
    const int changes = ChangesOf(*singleTree, [&] { singleRoot->Iterate(&single, SemanticTagNone, 0); });
    EXPECT_EQ(changes, ChangesOf(*rowTree, [&] { rowRoot->IterateRows(&rows, SemanticTagNone, 0); }));
    EXPECT_GT(changes, 0);
    EXPECT_EQ(Show(singleRoot), Show(rowRoot));
    EXPECT_EQ(0, CheckInvariants(rowRoot));
}

TEST_F(RowVisitorTest, RemovingTakesTheWholeRow) {
    const auto all = [](const Integer&) { return true; };
    const auto fill = [](Map& root) {
        for (int i = 0; i < 5; ++i) {
            Put(&root, i, i);
        }
        Vector* const list = PutVector(&root, 6);
        for (int i = 0; i < 150; ++i) {
            Append(list, i);
        }
        for (int i = 0; i < 300; ++i) {
            Put(&root, 20 + 2 * i, i);
        }
        PutVector(&root, 101);
    };
    ExpectTheSameRemoved(fill, all);
    ExpectTheSameRemoved(
        [](Map& root) {
            Vector* const list = PutVector(&root, 0);
            for (int i = 0; i < 192; ++i) {
                Append(list, i);
            }
        },
        [](const Integer& leaf) { return 64 <= leaf.Get() && leaf.Get() < 128; });
}

TEST_F(RowVisitorTest, WhatAVisitorThrowsEndsTheWalk) {
    NewNumbers(3);
    EXPECT_THROW(WalkIntegers(root_, [](auto) -> VisitCode { throw 7; }), int);
    tree_->SetReadOnly();
    EXPECT_EQ(kReadOnlyText, TextOf([&] { WalkIntegers(root_, [](auto) { return VisitRemove; }); }));
    EXPECT_EQ("{100:[0 1 2]}", Show(root_));
}

}  // namespace
}  // namespace KivGenerics::Testing
