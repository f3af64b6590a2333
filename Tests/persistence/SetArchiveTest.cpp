// How sets write, read and size themselves.

#include <algorithm>

#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/StringSet.h>
#include <gtest/gtest.h>

#include "persistence/Archives.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

constexpr auto kMismatch = static_cast<std::int32_t>(0x8004119A);

const Calls kIntegers = {"Begin 040B", "Long 00000003", "Long FFFFFFFF", "Long 00000000", "Long 00000007", "End"};
const Calls kDoubles = {"Begin 040C", "Long 00000002", "Double BFF0000000000000", "Double 4000000000000000", "End"};
const Calls kIds = {"Begin 040D", "Long 00000002", "Guid 00000001-0000-0000-0000000000000000",
                    "Guid 00000002-0000-0000-0000000000000000", "End"};
const Calls kTexts = {"Begin 040E", "Long 00000002", "Text \"A\"", "Text \"a\"", "End"};

TEST(SetArchiveTest, AnIntegerSetIsAnObjectOfCountAndLongsInOrder) {
    const TreeOf<IntegerSet> tree;
    for (const int element : {7, -1, 0}) {
        tree.GetRoot().Add(element);
    }
    EXPECT_EQ(kIntegers, WriteOf(tree.GetRoot()));
    EXPECT_EQ(Calls{"Sizes 0 0 0 4 1"}, SizeOf(tree.GetRoot()));
}

TEST(SetArchiveTest, ADoubleSetIsAnObjectOfCountAndDoublesInOrder) {
    const TreeOf<DoubleSet> tree;
    tree.GetRoot().Add(2.0);
    tree.GetRoot().Add(-1.0);
    EXPECT_EQ(kDoubles, WriteOf(tree.GetRoot()));
    EXPECT_EQ(Calls{"Sizes 0 2 0 1 1"}, SizeOf(tree.GetRoot()));
}

TEST(SetArchiveTest, AnIdSetIsAnObjectOfCountAndGuidsInOrder) {
    const TreeOf<IdSet> tree;
    tree.GetRoot().Add(Id(2));
    tree.GetRoot().Add(Id(1));
    EXPECT_EQ(kIds, WriteOf(tree.GetRoot()));
    EXPECT_EQ(Calls{"Sizes 0 0 2 1 1"}, SizeOf(tree.GetRoot()));
}

TEST(SetArchiveTest, AStringSetIsAnObjectOfCountAndTextsInOrder) {
    const TreeOf<StringSet> tree;
    tree.GetRoot().Add(u"a");
    tree.GetRoot().Add(u"A");
    EXPECT_EQ(kTexts, WriteOf(tree.GetRoot()));
}

TEST(SetArchiveTest, AStringSetIsSizedAsCountObjectAndTexts) {
    const TreeOf<StringSet> tree;
    tree.GetRoot().Add(u"one");
    tree.GetRoot().Add(u"three");
    RecordingSizer sizer;
    EXPECT_EQ(0, tree.GetRoot().SizeDefnArchive(&sizer, false));
    EXPECT_EQ(Calls{"Sizes 0 0 0 1 1"}, sizer.calls);
    EXPECT_EQ(2U, sizer.GetStrings());
    EXPECT_EQ(8U, sizer.GetStringUnits());
}

TEST(SetArchiveTest, TheTemporalityIsNotInTheTag) {
    const TreeOf<IntegerSet> tree;
    tree.GetRoot().SetTemporality(TemporalityTransient);
    EXPECT_EQ((Calls{"Begin 040B", "Long 00000000", "End"}), WriteOf(tree.GetRoot()));
}

TEST(SetArchiveTest, NansAndZerosCollapseWhenTheyAreRead) {
    const TreeOf<DoubleSet> tree;
    Reading reading({"Begin 040C", "Long 00000005", "Double 7FF8000000000000", "Double FFF8000000000001",
                     "Double 8000000000000000", "Double 0000000000000000", "Double 3FF0000000000000", "End"});
    EXPECT_EQ(0, tree.GetRoot().ReadFromArchive(reading.decoder, false));
    EXPECT_EQ((Calls{"Begin 040C", "Long 00000003", "Double 8000000000000000", "Double 3FF0000000000000",
                     "Double 7FF8000000000000", "End"}),
              WriteOf(tree.GetRoot()));
}

template <class T>
struct Sample;
template <>
struct Sample<IntegerSet> {
    static const Calls& Get() { return kIntegers; }
    static constexpr int kElements = 3;
};
template <>
struct Sample<DoubleSet> {
    static const Calls& Get() { return kDoubles; }
    static constexpr int kElements = 2;
};
template <>
struct Sample<IdSet> {
    static const Calls& Get() { return kIds; }
    static constexpr int kElements = 2;
};
template <>
struct Sample<StringSet> {
    static const Calls& Get() { return kTexts; }
    static constexpr int kElements = 2;
};

template <class T>
class AnySetArchiveTest : public testing::Test {
protected:
    T& GetSet() const { return tree_.GetRoot(); }
    std::int32_t Read(const Calls& calls) const {
        Reading reading(calls);
        return GetSet().ReadFromArchive(reading.decoder, false);
    }
    // The script with the count replaced, whose elements stay.
    static Calls WithCount(const char* count) {
        Calls calls = Sample<T>::Get();
        calls[1] = count;
        return calls;
    }

private:
    TreeOf<T> tree_;
};

using Sets = testing::Types<IntegerSet, DoubleSet, IdSet, StringSet>;
TYPED_TEST_SUITE(AnySetArchiveTest, Sets, );

TYPED_TEST(AnySetArchiveTest, WhatWasWrittenIsReadBack) {
    EXPECT_EQ(0, this->Read(Sample<TypeParam>::Get()));
    EXPECT_EQ(Sample<TypeParam>::Get(), WriteOf(this->GetSet()));
}

TYPED_TEST(AnySetArchiveTest, ReadingReplacesTheOldElements) {
    EXPECT_EQ(0, this->Read(Sample<TypeParam>::Get()));
    EXPECT_EQ(0, this->Read({Sample<TypeParam>::Get()[0], "Long 00000000", "End"}));
    EXPECT_EQ(0, this->GetSet().Count());
}

TYPED_TEST(AnySetArchiveTest, DuplicatesCollapse) {
    const Calls& sample = Sample<TypeParam>::Get();
    EXPECT_EQ(0, this->Read({sample[0], "Long 00000003", sample[2], sample[2], sample[2], "End"}));
    EXPECT_EQ(1, this->GetSet().Count());
}

TYPED_TEST(AnySetArchiveTest, ElementsInAnyOrderAreSorted) {
    Calls calls = Sample<TypeParam>::Get();
    std::swap(calls[2], calls[3]);
    EXPECT_EQ(0, this->Read(calls));
    EXPECT_EQ(Sample<TypeParam>::Get(), WriteOf(this->GetSet()));
}

TEST(SetArchiveTest, FiveElementsComeToTheSameInEveryOrder) {
    const Calls sorted = {"Begin 040B",    "Long 00000005", "Long 00000001", "Long 00000002",
                          "Long 00000003", "Long 00000004", "Long 00000005", "End"};
    Calls calls = sorted;
    int orders = 0;
    do {
        const TreeOf<IntegerSet> tree;
        Reading reading(calls);
        EXPECT_EQ(0, tree.GetRoot().ReadFromArchive(reading.decoder, false));
        EXPECT_EQ(sorted, WriteOf(tree.GetRoot())) << testing::PrintToString(calls);
        ++orders;
    } while (std::next_permutation(calls.begin() + 2, calls.begin() + 7));
    EXPECT_EQ(120, orders);
}

TYPED_TEST(AnySetArchiveTest, AnotherTagIsAMismatchAndNothingIsReadFurther) {
    for (const char* tag : {"Begin 040A", "Begin 040F", "Begin 0006", "Begin 0008"}) {
        EXPECT_EQ(0, this->Read(Sample<TypeParam>::Get()));
        Reading reading({tag, "Long 00000000", "End"});
        EXPECT_EQ(kMismatch, this->GetSet().ReadFromArchive(reading.decoder, false)) << tag;
        EXPECT_EQ(1, reading.archive.counter.GetCount());
        EXPECT_EQ(Sample<TypeParam>::kElements, this->GetSet().Count());
    }
}

TYPED_TEST(AnySetArchiveTest, NoObjectIsAMismatch) {
    EXPECT_EQ(kMismatch, this->Read({}));
}

TYPED_TEST(AnySetArchiveTest, AnArchiveThatAnswersOneForTheTagIsAMismatchToo) {
    Reading reading(Sample<TypeParam>::Get());
    reading.archive.counter.FailAt(1, 1);
    EXPECT_EQ(kMismatch, this->GetSet().ReadFromArchive(reading.decoder, false));
    EXPECT_EQ(1, reading.archive.counter.GetCount());
}

TYPED_TEST(AnySetArchiveTest, AFailureAnywhereKeepsTheOldElementsAndIsAnswered) {
    const Calls& sample = Sample<TypeParam>::Get();
    const Calls other = {sample[0], "Long 00000001", sample[3], "End"};
    EXPECT_EQ(0, this->Read(other));
    for (int k = 1; k <= static_cast<int>(sample.size()); ++k) {
        for (const std::int32_t code : {-1, static_cast<std::int32_t>(0x80004005)}) {
            Reading reading(sample);
            reading.archive.counter.FailAt(k, code);
            EXPECT_EQ(code, this->GetSet().ReadFromArchive(reading.decoder, false));
            EXPECT_EQ(k, reading.archive.counter.GetCount());
            EXPECT_EQ(other, WriteOf(this->GetSet()));
        }
    }
}

TYPED_TEST(AnySetArchiveTest, AFailedWriteStopsAtOnce) {
    EXPECT_EQ(0, this->Read(Sample<TypeParam>::Get()));
    for (int k = 1; k <= static_cast<int>(Sample<TypeParam>::Get().size()); ++k) {
        RecordingArchive archive;
        archive.counter.FailAt(k, -77);
        EXPECT_EQ(-77, this->GetSet().WriteToArchive(&archive, false));
        EXPECT_EQ(k, archive.counter.GetCount());
    }
}

TYPED_TEST(AnySetArchiveTest, ANegativeCountIsAnEmptySet) {
    for (const char* count : {"Long FFFFFFFF", "Long 80000000"}) {
        EXPECT_EQ(0, this->Read(Sample<TypeParam>::Get()));
        EXPECT_EQ(0, this->Read(this->WithCount(count)));
        EXPECT_EQ(0, this->GetSet().Count());
    }
}

TYPED_TEST(AnySetArchiveTest, AHugeCountWithLittleBehindItFailsWithoutReservingMemory) {
    EXPECT_EQ(0, this->Read({Sample<TypeParam>::Get()[0], "Long 00000001", Sample<TypeParam>::Get()[2], "End"}));
    const auto tree = this->GetSet().GetTree();
    const std::size_t reserved = tree->BufferQueryA();
    EXPECT_EQ(kOtherCall, this->Read(this->WithCount("Long 7FFFFFFF")));
    EXPECT_EQ(reserved, tree->BufferQueryA());
    EXPECT_EQ(1, this->GetSet().Count());
}

TYPED_TEST(AnySetArchiveTest, ACountBelowTheElementsLeavesTheRest) {
    EXPECT_EQ(0, this->Read(this->WithCount("Long 00000001")));
    EXPECT_EQ(1, this->GetSet().Count());
}

}  // namespace
}  // namespace KivGenerics::Testing
