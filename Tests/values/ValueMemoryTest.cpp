// Values whose memory the forest cannot serve.

#include <new>

#include "support/TestBuffer.h"
#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

using KivBase::WString;
using KivTests::BufferLog;
using KivTests::TestBuffers;

/// Calls `change` with ever more requests served until it succeeds, and `expectOld` after each failure. Returns how often
/// it failed.
template <class Change, class ExpectOld>
int FailUntilItSucceeds(TestBuffers& buffers, BufferLog::Refusal refusal, Change change, ExpectOld expectOld) {
    for (int served = 0; served < 100; ++served) {
        buffers.FailAfter(served, refusal);
        try {
            change();
            buffers.Recover();
            return served;
        } catch (const std::bad_alloc&) {
            buffers.Recover();
            expectOld();
        }
    }
    return -1;
}

template <class T>
class ValueMemoryTest : public ::testing::Test {
protected:
    TestBuffers buffers_;
    ValueTree tree_;
    T* leaf_ = tree_.Add<T>(0);
    T* other_ = tree_.Add<T>(1);
};
using KindsWithMemory = ::testing::Types<String, IntegerSet, IdSet, StringSet, DoubleSet>;
TYPED_TEST_SUITE(ValueMemoryTest, KindsWithMemory, KindNames);

TYPED_TEST(ValueMemoryTest, AValueThatFindsNoMemoryLeavesTheOldOne) {
    using Kind = Facts<TypeParam>;
    for (const auto refusal : {BufferLog::Refusal::Throw, BufferLog::Refusal::AnswerNull}) {
        this->leaf_->Clear();
        Kind::SetGreat(*this->leaf_);
        const int failures = FailUntilItSucceeds(
            this->buffers_, refusal, [&] { Kind::SetSmall(*this->leaf_); },
            [&] { EXPECT_EQ(Kind::kGreat, Show(*this->leaf_)); });
        EXPECT_LE(1, failures);
        EXPECT_EQ(Kind::kSmall, Show(*this->leaf_));
    }
}

TYPED_TEST(ValueMemoryTest, ACopyThatFindsNoMemoryLeavesTheOldValue) {
    using Kind = Facts<TypeParam>;
    Kind::SetSmall(*this->other_);
    Kind::SetGreat(*this->leaf_);
    const int failures = FailUntilItSucceeds(
        this->buffers_, BufferLog::Refusal::Throw, [&] { this->leaf_->Populate(this->other_); },
        [&] { EXPECT_EQ(Kind::kGreat, Show(*this->leaf_)); });
    EXPECT_LE(1, failures);
    EXPECT_EQ(Kind::kSmall, Show(*this->leaf_));
    EXPECT_EQ(Kind::kSmall, Show(*this->other_));
}

TYPED_TEST(ValueMemoryTest, AFailedChangeKeepsNoMemory) {
    using Kind = Facts<TypeParam>;
    Kind::SetGreat(*this->leaf_);
    const std::size_t before = this->tree_->BufferQueryB();
    const int failures = FailUntilItSucceeds(
        this->buffers_, BufferLog::Refusal::Throw, [&] { Kind::SetSmall(*this->leaf_); },
        [&] { EXPECT_EQ(before, this->tree_->BufferQueryB()); });
    EXPECT_LE(1, failures);
}

TEST(StringSetMemoryTest, AnElementThatFindsNoMemoryIsNotAdded) {
    TestBuffers buffers;
    const ValueTree tree;
    StringSet* const set = tree.Add<StringSet>(0);
    set->Add(u"old");
    const std::size_t before = tree->BufferQueryB();
    const int failures = FailUntilItSucceeds(
        buffers, BufferLog::Refusal::Throw, [&] { set->Add(WString(100, u'x')); },
        [&] {
            EXPECT_EQ("{old}", Show(*set));
            EXPECT_EQ(before, tree->BufferQueryB());
        });
    EXPECT_EQ(2, failures) << "the text and the element each need memory";
    EXPECT_EQ(2, set->Count());
}

TEST(StringSetMemoryTest, AddingAPresentElementWithoutMemoryForItsTextLeavesTheSetAlone) {
    TestBuffers buffers;
    const ValueTree tree;
    StringSet* const set = tree.Add<StringSet>(0);
    set->Add(WString(100, u'x'));
    const std::size_t before = tree->BufferQueryB();
    set->Add(WString(100, u'x'));
    EXPECT_EQ(1, set->Count());
    EXPECT_EQ(before, tree->BufferQueryB());
}

}  // namespace
}  // namespace KivGenerics::Testing
