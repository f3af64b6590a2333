// Many leaves made at once: Vector::AddLeaves and Map::NewLeaves do what Add, or NewNode, and Set do one by one.

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <vector>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer64.h>

#include "containers/TestNodes.h"
#include "core/Invariants.h"
#include "support/ShowingBuffer.h"
#include "support/TestBuffer.h"

namespace KivGenerics::Testing {
namespace {

using KivTests::BufferLog;
using KivTests::TestBuffers;

/// Values of one kind; an array, since a vector of bools is none.
template <class T>
struct Values {
    using Value = std::decay_t<decltype(std::declval<const T&>().Get())>;

    explicit Values(int count) : count_(count), values_(new Value[static_cast<std::size_t>(count)]) {
        for (int i = 0; i < count; ++i) {
            values_[static_cast<std::size_t>(i)] = Make(i);
        }
    }
    const Value* Get() const { return values_.get(); }
    int Count() const { return count_; }

private:
    static Value Make(int i) {
        if constexpr (std::is_same_v<T, GlobalID>) {
            return GUID{static_cast<std::uint32_t>(i + 1), 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
        } else if constexpr (std::is_same_v<T, Boolean>) {
            return i % 3 != 1;
        } else {
            return static_cast<Value>(i + 1) * 3 / 2;
        }
    }

    int count_;
    std::unique_ptr<Value[]> values_;
};

template <class T>
void AddOneByOne(Vector& vector, const Values<T>& values) {
    for (int i = 0; i < values.Count(); ++i) {
        vector.Add<T>()->Set(values.Get()[i]);
    }
}

template <class T>
void NewOneByOne(Map& map, const std::vector<int>& indexes, const Values<T>& values) {
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        map.NewNode<T>(indexes[i])->Set(values.Get()[i]);
    }
}

void ExpectTheSame(Composite& many, Composite& single) {
    EXPECT_EQ(Show(&single), Show(&many));
    EXPECT_EQ(0, CheckInvariants(&many));
    EXPECT_EQ(IndexesOf(single), IndexesOf(many));
    EXPECT_EQ(0, many.Compare(&single, TemporalityTemporary, true));
    const std::vector<int> indexes = IndexesOf(single);
    for (const int index : indexes) {
        ASSERT_EQ(single.Get(index)->GetTemporality(), many.Get(index)->GetTemporality()) << index;
        ASSERT_EQ(single.Get(index)->GetDerivedTemporality(), many.Get(index)->GetDerivedTemporality()) << index;
        ASSERT_EQ(single.Get(index)->GetType(), many.Get(index)->GetType()) << index;
        ASSERT_EQ(many.GetTree().Get(), many.Get(index)->GetTree().Get()) << index;
    }
}

/// Comes before the tree of ContainerTest.
struct WithShowingBuffers {
    KivTests::ShowingBuffers showing;
};

template <class T>
class LeavesOfValuesTest : private WithShowingBuffers, public ContainerTest {
protected:
    void ExpectTheSameElements(const std::vector<int>& counts) {
        Vector& many = *NewVector();
        Vector& single = *NewVector();
        for (const int count : counts) {
            const Values<T> values(count);
            const int changes = ChangesOf(*tree_, [&] { AddOneByOne(single, values); });
            EXPECT_EQ(changes, ChangesOf(*tree_, [&] { many.AddLeaves(values.Get(), count); })) << count;
        }
        ExpectTheSame(many, single);
    }

    void ExpectTheSameChildren(Map& many, Map& single, const std::vector<int>& indexes) {
        const int count = static_cast<int>(indexes.size());
        const Values<T> values(count);
        const int changes = ChangesOf(*tree_, [&] { NewOneByOne(single, indexes, values); });
        EXPECT_EQ(changes, ChangesOf(*tree_, [&] { many.NewLeaves(indexes.data(), values.Get(), count); }));
        ExpectTheSame(many, single);
    }
    void ExpectTheSameChildren(const std::vector<int>& indexes) {
        ExpectTheSameChildren(*NewMap(), *NewMap(), indexes);
    }
};

using Kinds = ::testing::Types<Boolean, Double, GlobalID, Integer, Integer64>;
TYPED_TEST_SUITE(LeavesOfValuesTest, Kinds, );

std::vector<int> StepFrom(int first, int step, int count) {
    std::vector<int> indexes(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        indexes[static_cast<std::size_t>(i)] = first + i * step;
    }
    return indexes;
}

TYPED_TEST(LeavesOfValuesTest, ElementsAreMadeAsOneByOne) {
    this->ExpectTheSameElements({1});
    this->ExpectTheSameElements({3, 0, 2});
    this->ExpectTheSameElements({15});
    this->ExpectTheSameElements({16, 1, 17});
    this->ExpectTheSameElements({2, 5000, 300});  // over more than one block
}

TYPED_TEST(LeavesOfValuesTest, ChildrenOfAMapAreMadeAsOneByOne) {
    this->ExpectTheSameChildren({0});
    this->ExpectTheSameChildren({1, 3, 7});
    this->ExpectTheSameChildren(StepFrom(0, 7, 40));
    this->ExpectTheSameChildren(StepFrom(0, 1, 5000));
    this->ExpectTheSameChildren({8, 536870911});
    this->ExpectTheSameChildren({3, 9, 2, 10, 1, 11, 4});
    this->ExpectTheSameChildren(StepFrom(600, -5, 120));
}

TYPED_TEST(LeavesOfValuesTest, WhatStoodAtAnIndexIsReplaced) {
    this->ExpectTheSameChildren({2, 2, 5, 5, 5, 90, 90, 91, 90});
    Map& many = *this->NewMap();
    Map& single = *this->NewMap();
    for (Map* const map : {&many, &single}) {
        map->NewNode<Map>(3)->template NewNode<TypeParam>(0);
        map->NewNode<TypeParam>(40);
        map->NewNode<Vector>(44);
    }
    this->ExpectTheSameChildren(many, single, {2, 3, 4, 39, 40, 41, 44, 45});
    this->ExpectTheSameChildren(many, single, StepFrom(0, 3, 40));
}

TYPED_TEST(LeavesOfValuesTest, NodesThatWaitAreHandedOutAgain) {
    constexpr int kReleased = 3;
    constexpr int kMade = 8;
    const Values<TypeParam> values(kMade);
    Vector& vector = *this->NewVector();
    Map& map = *this->NewMap();
    Vector& source = *this->NewVector();
    for (const bool intoMap : {false, true}) {
        source.AddLeaves(values.Get(), kReleased);
        Node* const last = source.Get(0);
        for (int i = kReleased - 1; i >= 0; --i) {
            source.Remove(i);
        }
        const std::vector<int> indexes = StepFrom(4, 1, kMade);
        if (intoMap) {
            map.NewLeaves(indexes.data(), values.Get(), kMade);
            EXPECT_EQ(last, map.Get(indexes[0]));
        } else {
            vector.AddLeaves(values.Get(), kMade);
            EXPECT_EQ(last, vector.Get(0));
        }
    }
    Vector& singleVector = *this->NewVector();
    AddOneByOne(singleVector, values);
    ExpectTheSame(vector, singleVector);
    Map& singleMap = *this->NewMap();
    NewOneByOne(singleMap, StepFrom(4, 1, kMade), values);
    ExpectTheSame(map, singleMap);
}

TYPED_TEST(LeavesOfValuesTest, WithoutMemoryTheLeavesMadeSoFarStay) {
    constexpr int kLeaves = 60;
    TestBuffers buffers;
    const Values<TypeParam> values(kLeaves);
    const std::vector<int> indexes = StepFrom(6, 1, kLeaves);
    for (const auto refusal : {BufferLog::Refusal::Throw, BufferLog::Refusal::AnswerNull}) {
        for (const bool intoMap : {false, true}) {
            bool failed = true;
            for (int served = 0; failed; ++served) {
                const auto tree = KivTests::NewTree();
                Node* const root = tree->NewRoot(intoMap ? NodeTypeMap : NodeTypeVector);
                auto* const composite = static_cast<Composite*>(root);
                const auto make = [&](int first) {
                    if (intoMap) {
                        static_cast<Map*>(root)->NewLeaves(indexes.data() + first, values.Get() + first,
                                                           kLeaves - first);
                    } else {
                        static_cast<Vector*>(root)->AddLeaves(values.Get() + first, kLeaves - first);
                    }
                };
                buffers.FailAfter(served, refusal);
                failed = false;
                try {
                    make(0);
                } catch (const std::bad_alloc&) {
                    failed = true;
                }
                buffers.Recover();
                EXPECT_EQ(0, CheckInvariants(root)) << served;
                const int made = composite->GetSize(TemporalityTemporary);
                EXPECT_EQ(failed, made < kLeaves) << served;
                tree->UpdateDerivedTemporality();
                EXPECT_EQ(made == 0 ? TemporalityTemporary : TemporalityPersistent, root->GetDerivedTemporality());
                make(made);
                Composite* const single = intoMap ? static_cast<Composite*>(this->NewMap()) : this->NewVector();
                if (intoMap) {
                    NewOneByOne(static_cast<Map&>(*single), indexes, values);
                } else {
                    AddOneByOne(static_cast<Vector&>(*single), values);
                }
                ExpectTheSame(*composite, *single);
                ASSERT_LT(served, 2 * kLeaves);
            }
        }
    }
}

class LeavesOfIntegersTest : public ContainerTest {
protected:
    static constexpr std::array<std::int32_t, 4> kValues = {5, 6, 7, 8};
    static constexpr std::array<int, 4> kIndexes = {1, 2, 9, 10};

    std::string TextOfAdding(Vector& vector) {
        return TextOf([&] { vector.AddLeaves(kValues.data(), 4); });
    }
    std::string TextOfMaking(Map& map, const std::array<int, 4>& indexes) {
        return TextOf([&] { map.NewLeaves(indexes.data(), kValues.data(), 4); });
    }
};

TEST_F(LeavesOfIntegersTest, NoneAreMadeWhereNoneAreAskedFor) {
    Vector* const vector = NewVector();
    Map* const map = NewMap();
    EXPECT_EQ(0, ChangesOf(*tree_, [&] {
                  for (const int count : {0, -1}) {
                      vector->AddLeaves(kValues.data(), count);
                      map->NewLeaves(kIndexes.data(), kValues.data(), count);
                  }
              }));
    EXPECT_EQ("[]", Show(vector));
    EXPECT_EQ("{}", Show(map));
    EXPECT_FALSE(map->HasOverflow());
}

TEST_F(LeavesOfIntegersTest, ElementsOfAnotherKindAreRefused) {
    Vector* const vector = NewVector();
    vector->Add<Double>();
    EXPECT_EQ("Vector::Add::Different children type", TextOfAdding(*vector));
    EXPECT_EQ(1, vector->GetSize(TemporalityTemporary));
}

TEST_F(LeavesOfIntegersTest, AnIndexOutsideAMapIsRefusedAndWhatWasMadeBeforeItStays) {
    constexpr int kBeyond = 536870912;
    Map* const map = NewMap();
    const std::string refusal = TextOf([&] { map->NewNode<Integer>(kBeyond); });
    EXPECT_EQ(refusal, TextOfMaking(*map, {3, 536870911, kBeyond, 4}));
    EXPECT_EQ("{3:5 536870911:6}", Show(map));
    EXPECT_EQ(refusal, TextOfMaking(*map, {-1, 1, 2, 3}));
    EXPECT_EQ(refusal, TextOfMaking(*map, {1, 100, -2147483647, 3}));
    EXPECT_EQ("{1:5 3:5 100:6 536870911:6}", Show(map));
    // Where the store has room for all of them.
    Map* const other = NewMap();
    other->NewNode<Integer>(8);
    other->NewNode<Integer>(9);
    other->NewNode<Integer>(10);
    EXPECT_EQ(refusal, TextOfMaking(*other, {536870911, kBeyond, kBeyond + 1, kBeyond + 2}));
    EXPECT_EQ("{8:0 9:0 10:0 536870911:5}", Show(other));
    EXPECT_EQ(0, CheckInvariants(root_));
}

TEST_F(LeavesOfIntegersTest, AReadOnlyTreeRefuses) {
    Vector* const vector = NewVector();
    Map* const map = NewMap();
    Vector* const roomy = NewVector();
    roomy->Reserve(10);
    tree_->SetReadOnly();
    const std::size_t inUse = tree_->BufferQueryB();
    EXPECT_EQ(kReadOnlyText, TextOfAdding(*vector));
    EXPECT_EQ(kReadOnlyText, TextOfAdding(*roomy));
    EXPECT_EQ(kReadOnlyText, TextOfMaking(*map, kIndexes));
    EXPECT_EQ(kReadOnlyText, TextOfMaking(*map, {100, 101, 102, 103}));
    EXPECT_TRUE(vector->IsEmpty());
    EXPECT_TRUE(roomy->IsEmpty());
    EXPECT_TRUE(map->IsEmpty());
    EXPECT_EQ(inUse, tree_->BufferQueryB());
}

TEST_F(LeavesOfIntegersTest, AVectorThatGotNoneIsStillTemporary) {
    const auto tree = KivTests::NewTree();
    auto* const root = static_cast<Vector*>(tree->NewRoot(NodeTypeVector));
    root->Reserve(10);
    tree->SetReadOnly();
    EXPECT_EQ(kReadOnlyText, TextOfAdding(*root));
    tree->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityTemporary, root->GetDerivedTemporality());
}

TEST_F(LeavesOfIntegersTest, TheOverflowStoreIsMadeForAllThatFollow) {
    constexpr int kLeaves = 38;
    TestBuffers buffers;
    const auto tree = KivTests::NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    const std::vector<int> indexes = StepFrom(14, 7, kLeaves);
    const int before = buffers.log.allocations;
    map->NewLeaves(indexes.data(), Values<Integer>(kLeaves).Get(), kLeaves);
    EXPECT_EQ(before + kLeaves + 2, buffers.log.allocations);  // the store and its one chunk
}

// An empty vector of default temporality is temporary; one with elements is not.
TEST_F(LeavesOfIntegersTest, AVectorWithElementsIsPersistent) {
    const auto tree = KivTests::NewTree();
    auto* const root = static_cast<Vector*>(tree->NewRoot(NodeTypeVector));
    Vector* const vector = root->Add<Vector>();
    tree->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityTemporary, vector->GetDerivedTemporality());
    vector->AddLeaves(kValues.data(), 4);
    tree->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityPersistent, vector->GetDerivedTemporality());
}

}  // namespace
}  // namespace KivGenerics::Testing
