// What holds for every set, run over its four kinds.

#include "core/NodeAccess.h"
#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

/// Four elements of a kind, ascending, and the texts that Show gives them.
template <class T>
struct Four;

template <>
struct Four<IntegerSet> {
    using Element = std::int32_t;
    static Element At(int i) {
        constexpr Element kElements[] = {-2147483647 - 1, -7, 0, 2147483647};
        return kElements[i];
    }
    static constexpr const char* kTexts[] = {"-2147483648", "-7", "0", "2147483647"};
};

template <>
struct Four<IdSet> {
    using Element = GUID;
    static Element At(int i) {
        const Element kElements[] = {Guid(1, 9, 9, 9), Guid(2), Guid(2, 0, 0, 1), Guid(0x80000000U)};
        return kElements[i];
    }
    static constexpr const char* kTexts[] = {"00000001-0009-0000-09-00-00-00-09-00-00-00",
                                             "00000002-0000-0000-00-00-00-00-00-00-00-00",
                                             "00000002-0000-0000-00-00-00-00-01-00-00-00",
                                             "80000000-0000-0000-00-00-00-00-00-00-00-00"};
};

template <>
struct Four<StringSet> {
    using Element = KivBase::WString;
    static Element At(int i) {
        constexpr const char16_t* kElements[] = {u"", u"Zebra", u"a", u"a text of many units, kept outside its object"};
        return kElements[i];
    }
    static constexpr const char* kTexts[] = {"", "Zebra", "a", "a text of many units, kept outside its object"};
};

template <>
struct Four<DoubleSet> {
    using Element = double;
    static Element At(int i) {
        constexpr Element kElements[] = {-1e300, -0.5, 0.0, 2.25};
        return kElements[i];
    }
    static constexpr const char* kTexts[] = {"-1e+300", "-0.5", "0", "2.25"};
};

template <class T>
class SetContractTest : public ::testing::Test {
protected:
    using Elements = typename T::Elements;
    using Element = typename Four<T>::Element;

    static Element At(int i) { return Four<T>::At(i); }
    /// What Show gives for these of the four elements.
    static std::string Texts(const std::vector<int>& which) {
        std::string text;
        for (const int i : which) {
            text += (text.empty() ? "{" : ",") + std::string(Four<T>::kTexts[i]);
        }
        return (text.empty() ? "{" : text) + "}";
    }
    static Elements Of(const std::vector<int>& which) {
        Elements elements;
        for (const int i : which) {
            elements.insert(At(i));
        }
        return elements;
    }
    static std::string ItemText(const T& node, int index) {
        Element element{};
        node.Item(index, element);
        return TextOfValue(element);
    }

    ValueTree tree_;
    T* set_ = tree_.Add<T>(0);
    T* other_ = tree_.Add<T>(1);
};
TYPED_TEST_SUITE(SetContractTest, SetKinds, KindNames);

TYPED_TEST(SetContractTest, KeepsWhatIsAddedAscendingAndOnce) {
    EXPECT_EQ(0, this->set_->Count());
    for (const int i : {2, 0, 3, 1, 2, 0}) {
        this->set_->Add(this->At(i));
    }
    EXPECT_EQ(4, this->set_->Count());
    EXPECT_EQ(this->Texts({0, 1, 2, 3}), Show(*this->set_));
}

TYPED_TEST(SetContractTest, KnowsWhatItHolds) {
    this->set_->Add(this->At(1));
    this->set_->Add(this->At(3));
    EXPECT_FALSE(this->set_->Exists(this->At(0)));
    EXPECT_TRUE(this->set_->Exists(this->At(1)));
    EXPECT_FALSE(this->set_->Exists(this->At(2)));
    EXPECT_TRUE(this->set_->Exists(this->At(3)));
}

TYPED_TEST(SetContractTest, RemovesAnElementAndIgnoresAnAbsentOne) {
    this->set_->Set(this->Of({0, 1, 2}));
    this->set_->Remove(this->At(1));
    EXPECT_EQ(this->Texts({0, 2}), Show(*this->set_));
    this->set_->Remove(this->At(1));
    this->set_->Remove(this->At(3));
    EXPECT_EQ(this->Texts({0, 2}), Show(*this->set_));
    this->set_->Remove(this->At(0));
    this->set_->Remove(this->At(2));
    EXPECT_EQ(0, this->set_->Count());
    EXPECT_FALSE(this->set_->Exists(this->At(0)));
}

TYPED_TEST(SetContractTest, SetReplacesEverything) {
    this->set_->Set(this->Of({0, 3}));
    EXPECT_EQ(this->Texts({0, 3}), Show(*this->set_));
    this->set_->Set(this->Of({3, 1, 2}));
    EXPECT_EQ(this->Texts({1, 2, 3}), Show(*this->set_));
    this->set_->Set(this->Of({}));
    EXPECT_EQ(0, this->set_->Count());
}

TYPED_TEST(SetContractTest, ItemsAreCountedFromTheSmallestFromZero) {
    this->set_->Set(this->Of({2, 0, 3}));
    EXPECT_EQ(Four<TypeParam>::kTexts[0], this->ItemText(*this->set_, 0));
    EXPECT_EQ(Four<TypeParam>::kTexts[2], this->ItemText(*this->set_, 1));
    EXPECT_EQ(Four<TypeParam>::kTexts[3], this->ItemText(*this->set_, this->set_->Count() - 1));
}

TYPED_TEST(SetContractTest, ThereAreNoItemsOutsideItsBounds) {
    auto element = this->At(3);
    const auto item = [&](int index) { return TextOf([&] { this->set_->Item(index, element); }); };
    for (const int index : {0, 1, -1, -2147483647 - 1, 2147483647}) {
        EXPECT_EQ("Item::Index out of range", item(index)) << index;
    }
    this->set_->Set(this->Of({0, 1}));
    for (const int index : {2, 3, -1, -2147483647 - 1, 2147483647}) {
        EXPECT_EQ("Item::Index out of range", item(index)) << index;
    }
    EXPECT_EQ(Four<TypeParam>::kTexts[3], TextOfValue(element)) << "left alone";
}

// kept-on-purpose: set-changes-unguarded
TYPED_TEST(SetContractTest, SetAddAndRemoveChangeASetOfAReadOnlyTreeAndCountNothing) {
    this->tree_->SetReadOnly();
    EXPECT_EQ(0, this->tree_.ChangesOf([&] {
        this->set_->Add(this->At(0));
        EXPECT_EQ(this->Texts({0}), Show(*this->set_));
        this->set_->Set(this->Of({1, 2}));
        EXPECT_EQ(this->Texts({1, 2}), Show(*this->set_));
        this->set_->Remove(this->At(1));
        EXPECT_EQ(this->Texts({2}), Show(*this->set_));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { this->set_->Clear(); }));
        EXPECT_THROW(this->set_->Clear(), ReadOnlyException);
    }));
    EXPECT_EQ(this->Texts({2}), Show(*this->set_));
}

TYPED_TEST(SetContractTest, ChangesOfElementsCountNothingInAWritableTreeEither) {
    EXPECT_EQ(0, this->tree_.ChangesOf([&] {
        this->set_->Add(this->At(0));
        this->set_->Set(this->Of({1, 2}));
        this->set_->Remove(this->At(1));
        auto element = this->At(0);
        this->set_->Item(0, element);
    }));
    EXPECT_EQ(1, this->tree_.ChangesOf([&] { this->set_->Clear(); }));
}

TYPED_TEST(SetContractTest, ChangesOfElementsDoNotMakeTheTemporalitiesStale) {
    this->tree_->UpdateDerivedTemporality();
    NodeAccess::SetDerived(*this->set_, TemporalityTemporary);
    this->set_->Add(this->At(0));
    this->set_->Set(this->Of({1, 2}));
    this->set_->Remove(this->At(1));
    this->tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityTemporary, NodeAccess::GetStoredDerived(*this->set_)) << "nothing was recalculated";
    this->set_->Clear();
    this->tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityPersistent, NodeAccess::GetStoredDerived(*this->set_));
}

struct OrderRow {
    std::vector<int> left;
    std::vector<int> right;
    int order;
};

TYPED_TEST(SetContractTest, ComparesAsAscendingSequencesNotBySize) {
    const OrderRow rows[] = {
        {{}, {}, 0},          {{0, 1, 2}, {0, 1, 2}, 0}, {{}, {0}, -1},          {{0}, {}, 1},
        {{0, 3}, {1}, -1},    {{1}, {0, 3}, 1},          {{0, 1}, {0}, 1},       {{0}, {0, 1}, -1},
        {{0, 1}, {0, 2}, -1}, {{0, 2}, {0, 1, 3}, 1},    {{1, 2, 3}, {0, 3}, 1}, {{0, 1, 2, 3}, {3}, -1},
    };
    for (const OrderRow& row : rows) {
        this->set_->Set(this->Of(row.left));
        this->other_->Set(this->Of(row.right));
        EXPECT_EQ(row.order, this->set_->Compare(this->other_, TemporalityTemporary, false))
            << Show(*this->set_) << " with " << Show(*this->other_);
    }
}

TYPED_TEST(SetContractTest, MergesWithAnEqualSetAloneAndIsNoUnion) {
    this->set_->Set(this->Of({0}));
    this->other_->Set(this->Of({0, 1}));
    EXPECT_FALSE(this->set_->MergeWith(this->other_, false));
    EXPECT_FALSE(this->other_->MergeWith(this->set_, true));
    EXPECT_EQ(this->Texts({0}), Show(*this->set_));
    EXPECT_EQ(this->Texts({0, 1}), Show(*this->other_));
    this->set_->Set(this->Of({0, 2}));
    EXPECT_FALSE(this->set_->MergeWith(this->other_, false)) << "of the same size";
    this->set_->Set(this->Of({1, 0}));
    EXPECT_TRUE(this->set_->MergeWith(this->other_, false));
    EXPECT_TRUE(this->set_->MergeWith(this->set_, false));
}

TYPED_TEST(SetContractTest, PopulateReplacesEverythingByACopy) {
    this->set_->Set(this->Of({0, 3}));
    this->other_->Set(this->Of({1, 2}));
    this->set_->Populate(this->other_);
    EXPECT_EQ(this->Texts({1, 2}), Show(*this->set_));
    this->other_->Add(this->At(0));
    EXPECT_EQ(this->Texts({1, 2}), Show(*this->set_));
}

TYPED_TEST(SetContractTest, AddingItsOwnItemsAgainChangesNothing) {
    this->set_->Set(this->Of({0, 1, 2, 3}));
    for (int i = 0; i < 4; ++i) {
        auto element = this->At(0);
        this->set_->Item(i, element);
        this->set_->Add(element);
    }
    EXPECT_EQ(this->Texts({0, 1, 2, 3}), Show(*this->set_));
}

TYPED_TEST(SetContractTest, TakesElementMemoryFromTheForestAndGivesItBack) {
    const std::size_t before = this->tree_->BufferQueryB();
    this->set_->Set(this->Of({0, 1, 2, 3}));
    EXPECT_GT(this->tree_->BufferQueryB(), before);
    this->set_->Remove(this->At(3));
    this->set_->Clear();
    EXPECT_EQ(before, this->tree_->BufferQueryB());
}

// Sets whose Get copies into the caller's.
using CopyingSetKinds = ::testing::Types<IntegerSet, IdSet, DoubleSet>;

template <class T>
class CopyingSetTest : public SetContractTest<T> {};
TYPED_TEST_SUITE(CopyingSetTest, CopyingSetKinds, KindNames);

TYPED_TEST(CopyingSetTest, GetReplacesWhatTheCallersSetHeld) {
    this->set_->Set(this->Of({0, 2}));
    auto elements = this->Of({1, 3});
    EXPECT_EQ(0, this->tree_.ChangesOf([&] { this->set_->Get(elements); }));
    EXPECT_EQ(this->Texts({0, 2}), TextOfElements(elements));
    this->set_->Add(this->At(1));
    EXPECT_EQ(this->Texts({0, 2}), TextOfElements(elements)) << "a copy";
    this->set_->Clear();
    this->set_->Get(elements);
    EXPECT_TRUE(elements.empty());
}

TYPED_TEST(CopyingSetTest, ShowsItsOwnElements) {
    EXPECT_TRUE(this->set_->GetElements().empty());
    this->set_->Set(this->Of({3, 0, 1}));
    EXPECT_EQ(this->Texts({0, 1, 3}), TextOfElements(this->set_->GetElements()));
    EXPECT_EQ(&this->set_->GetElements(), &this->set_->GetElements());
}

TYPED_TEST(CopyingSetTest, WhatGetGaveOutlivesTheForest) {
    typename TypeParam::Elements elements;
    {
        const ValueTree passing;
        TypeParam* const set = passing.template Add<TypeParam>(0);
        set->Set(this->Of({1, 2}));
        set->Get(elements);
    }
    EXPECT_EQ(this->Texts({1, 2}), TextOfElements(elements));
}

}  // namespace
}  // namespace KivGenerics::Testing
