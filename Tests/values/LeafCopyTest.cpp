// Copies, moves and assignments of leaf objects, and the memory that leaves take.

#include <utility>

#include "core/NodeAccess.h"
#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

template <class T>
class LeafCopyTest : public ::testing::Test {
protected:
    LeafCopyTest() {
        Facts<T>::SetSmall(*leaf_);
        leaf_->SetTemporality(TemporalityTransient);
        leaf_->CalculateDerivedTemporality();
    }

    /// Whether `copy` names the place, tree and temporalities of the leaf that stands at index 3.
    void ExpectNamesTheSource(const T& copy) {
        EXPECT_EQ(Facts<T>::kNumber, copy.GetType());
        EXPECT_EQ(3, copy.GetIndex());
        EXPECT_EQ(tree_.Root(), copy.GetParent());
        EXPECT_FALSE(copy.IsRoot());
        EXPECT_EQ(tree_.operator->(), copy.GetTree().Get());
        EXPECT_EQ(TemporalityTransient, copy.GetTemporality());
        EXPECT_EQ(TemporalityTransient, NodeAccess::GetStoredDerived(copy));
        EXPECT_EQ(leaf_, tree_.Root()->Get(3)) << "the parent knows the source alone";
    }

    ValueTree tree_;
    T* leaf_ = tree_.Add<T>(3);
};
TYPED_TEST_SUITE(LeafCopyTest, LeafKinds, KindNames);

TYPED_TEST(LeafCopyTest, ACopyIsADuplicateThatNamesTheSourcesPlace) {
    using Kind = Facts<TypeParam>;
    this->tree_->SetReadOnly();
    EXPECT_EQ(0, this->tree_.ChangesOf([&] {
        const TypeParam copy(*this->leaf_);
        this->ExpectNamesTheSource(copy);
        EXPECT_EQ(Kind::kSmall, Show(copy));
        EXPECT_EQ(Kind::kSmall, Show(*this->leaf_));
    }));
}

TYPED_TEST(LeafCopyTest, ChangingACopyLeavesTheSourceAlone) {
    using Kind = Facts<TypeParam>;
    TypeParam copy(*this->leaf_);
    Kind::SetGreat(copy);
    EXPECT_EQ(Kind::kGreat, Show(copy));
    EXPECT_EQ(Kind::kSmall, Show(*this->leaf_));
    EXPECT_EQ(1, this->tree_.ChangesOf([&] { copy.Clear(); })) << "it still belongs to the source's tree";
    EXPECT_EQ(Kind::kNew, Show(copy));
}

TYPED_TEST(LeafCopyTest, ACopyKeepsItsValueOutsideTheForest) {
    const std::size_t before = this->tree_->BufferQueryB();
    const TypeParam copy(*this->leaf_);
    EXPECT_EQ(before, this->tree_->BufferQueryB());
    this->tree_->RemoveRoot();
    EXPECT_EQ(Facts<TypeParam>::kSmall, Show(copy));
}

TYPED_TEST(LeafCopyTest, ACopyOutlivesTheForest) {
    const TypeParam copy = [] {
        const ValueTree passing;
        TypeParam* const leaf = passing.template Add<TypeParam>(0);
        Facts<TypeParam>::SetSmall(*leaf);
        return TypeParam(*leaf);
    }();
    EXPECT_EQ(Facts<TypeParam>::kSmall, Show(copy));
}

TYPED_TEST(LeafCopyTest, AMovedToObjectHasTheValueAndNamesTheSourcesPlace) {
    this->tree_->SetReadOnly();
    const TypeParam moved(std::move(*this->leaf_));
    this->ExpectNamesTheSource(moved);
    EXPECT_EQ(Facts<TypeParam>::kSmall, Show(moved));
}

TYPED_TEST(LeafCopyTest, AssigningACopyTakesValueAndPlaceWithoutTheGuard) {
    using Kind = Facts<TypeParam>;
    const ValueTree other;
    TypeParam* const target = other.template Add<TypeParam>(6);
    Kind::SetGreat(*target);
    other->SetReadOnly();
    EXPECT_EQ(0, other.ChangesOf([&] { *target = *this->leaf_; }));
    this->ExpectNamesTheSource(*target);
    EXPECT_EQ(Kind::kSmall, Show(*target));
    EXPECT_EQ(Kind::kSmall, Show(*this->leaf_));
}

TYPED_TEST(LeafCopyTest, AssigningByMoveTakesValueAndPlaceWithoutTheGuard) {
    using Kind = Facts<TypeParam>;
    const ValueTree other;
    TypeParam* const target = other.template Add<TypeParam>(6);
    Kind::SetGreat(*target);
    other->SetReadOnly();
    EXPECT_EQ(0, other.ChangesOf([&] { *target = std::move(*this->leaf_); }));
    this->ExpectNamesTheSource(*target);
    EXPECT_EQ(Kind::kSmall, Show(*target));
}

TYPED_TEST(LeafCopyTest, AssigningItselfKeepsEverything) {
    TypeParam& same = *this->leaf_;
    *this->leaf_ = same;
    this->ExpectNamesTheSource(*this->leaf_);
    EXPECT_EQ(Facts<TypeParam>::kSmall, Show(*this->leaf_));
}

TYPED_TEST(LeafCopyTest, AnObjectFitsIntoItsBytes) {
    EXPECT_LE(sizeof(TypeParam), Facts<TypeParam>::kMostBytes);
}

TYPED_TEST(LeafCopyTest, ANewNodeTakesNoMoreOfTheForestsMemoryThanItsBytes) {
    Vector* const list = this->tree_.template Add<Vector>(4);
    list->Reserve(100);
    list->Add(TypeParam::StaticType);
    const std::size_t before = this->tree_->BufferQueryB();
    for (int i = 0; i < 99; ++i) {
        list->Add(TypeParam::StaticType);
    }
    EXPECT_EQ(100, list->GetSize(TemporalityTemporary));
    EXPECT_LE(this->tree_->BufferQueryB() - before, 99 * Facts<TypeParam>::kMostBytes);
    EXPECT_GT(this->tree_->BufferQueryB(), before);
}

TYPED_TEST(LeafCopyTest, ManyReplacementsDoNotGrowTheForest) {
    using Kind = Facts<TypeParam>;
    Kind::SetGreat(*this->leaf_);
    const std::size_t before = this->tree_->BufferQueryA();
    for (int i = 0; i < 100000; ++i) {
        Kind::SetSmall(*this->leaf_);
        Kind::SetGreat(*this->leaf_);
    }
    EXPECT_LE(this->tree_->BufferQueryA() - before, 65536U);
}

using FixedSizeKinds = ::testing::Types<Boolean, Integer, Integer64, Double, GlobalID>;

template <class T>
class FixedSizeLeafTest : public LeafCopyTest<T> {};
TYPED_TEST_SUITE(FixedSizeLeafTest, FixedSizeKinds, KindNames);

TYPED_TEST(FixedSizeLeafTest, AMoveIsACopy) {
    TypeParam moved(std::move(*this->leaf_));
    this->ExpectNamesTheSource(*this->leaf_);
    EXPECT_EQ(Facts<TypeParam>::kSmall, Show(*this->leaf_));
    Facts<TypeParam>::SetGreat(moved);
    *this->leaf_ = std::move(moved);
    EXPECT_EQ(Facts<TypeParam>::kGreat, Show(*this->leaf_));
    EXPECT_EQ(Facts<TypeParam>::kGreat, Show(moved));
}

}  // namespace
}  // namespace KivGenerics::Testing
