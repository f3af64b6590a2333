#include <cmath>
#include <limits>
#include <string>

#include <KivGenerics/ToText.h>
#include <gtest/gtest.h>

#include "support/TestTree.h"

namespace KivGenerics {
namespace {

TEST(ToTextTest, EveryKindHasItsName) {
    const char* const names[] = {"Integer", "GlobalID",   "String", "Double",    "Boolean",   "Vector",
                                 "Map",     "IntegerSet", "IdSet",  "StringSet", "DoubleSet", "Integer64"};
    for (int type = 1; type <= 12; ++type) {
        EXPECT_STREQ(ToText(static_cast<NodeType>(type)), names[type - 1]);
    }
    EXPECT_STREQ(ToText(static_cast<NodeType>(0)), "unknown");
    EXPECT_STREQ(ToText(static_cast<NodeType>(13)), "unknown");
}

TEST(ToTextTest, EveryTemporalityHasItsName) {
    const char* const names[] = {"reserved", "default", "persistent", "transient", "temporary"};
    for (int t = 0; t <= 4; ++t) {
        EXPECT_STREQ(ToText(static_cast<EnumOrvGenericsTemporality>(t)), names[t]);
    }
    EXPECT_STREQ(ToText(static_cast<EnumOrvGenericsTemporality>(5)), "unknown");
}

TEST(ToTextTest, NumbersReadBackAsTheyWere) {
    EXPECT_EQ(ToText(true), "true");
    EXPECT_EQ(ToText(false), "false");
    EXPECT_EQ(ToText(std::int32_t{-42}), "-42");
    EXPECT_EQ(ToText(std::int64_t{1} << 40), "1099511627776");
    EXPECT_EQ(ToText(0.1), "0.1");
    EXPECT_EQ(ToText(9.95), "9.95") << "with 16 digits it would be 9.949999999999999";
    EXPECT_EQ(ToText(-0.5), "-0.5");
    EXPECT_EQ(ToText(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(ToText(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(ToText(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(ToText(std::copysign(std::numeric_limits<double>::quiet_NaN(), 1.0)), "nan");
}

TEST(ToTextTest, AGuidIsInBracesAndCapitals) {
    const GUID id = {0x0123ABCD, 0x4567, 0x89EF, {0, 1, 2, 3, 4, 5, 0xFE, 0xFF}};
    EXPECT_EQ(ToText(id), "{0123ABCD-4567-89EF-0001-02030405FEFF}");
}

TEST(ToTextTest, ATextIsQuotedAndEscaped) {
    EXPECT_EQ(ToText(KivBase::WString(u"plain")), "\"plain\"");
    EXPECT_EQ(ToText(KivBase::WString(u"a\"b\\c\n")), "\"a\\\"b\\\\c\\u000a\"");
    EXPECT_EQ(ToText(KivBase::WString(u"a b\x1F")), "\"a b\\u001f\"");
    EXPECT_EQ(ToText(KivBase::WString(u"\u00E4\u20AC")), "\"\xC3\xA4\xE2\x82\xAC\"");
}

class NodeToTextTest : public testing::Test {
protected:
    template <class T>
    T* New() {
        return static_cast<T*>(tree_->NewRoot(T::StaticType));
    }

    KivBase::ReturnPtrI<Tree> tree_ = KivTests::NewTree();
};

TEST_F(NodeToTextTest, ALeafIsItsValue) {
    EXPECT_EQ(ToText(static_cast<Node*>(nullptr)), "null");
    auto* const integer = New<Integer>();
    integer->Set(7);
    EXPECT_EQ(ToText(integer), "7");
    auto* const integer64 = New<Integer64>();
    integer64->Set(-8);
    EXPECT_EQ(ToText(integer64), "-8");
    auto* const number = New<Double>();
    number->Set(2.5);
    EXPECT_EQ(ToText(number), "2.5");
    auto* const boolean = New<Boolean>();
    boolean->Set(true);
    EXPECT_EQ(ToText(boolean), "true");
    auto* const text = New<String>();
    text->Set(KivBase::WString(u"a\0b", 3));
    EXPECT_EQ(ToText(text), "\"a\\u0000b\"");
    EXPECT_EQ(ToText(New<GlobalID>()), "{00000000-0000-0000-0000-000000000000}");
}

TEST_F(NodeToTextTest, ASetIsItsElementsInBraces) {
    auto* const integers = New<IntegerSet>();
    EXPECT_EQ(ToText(integers), "{}");
    integers->Add(3);
    integers->Add(-1);
    EXPECT_EQ(ToText(integers), "{-1, 3}");
    integers->Remove(-1);
    integers->Add(4);
    EXPECT_EQ(ToText(integers), "{3, 4}");
    auto* const doubles = New<DoubleSet>();
    doubles->Add(0.5);
    EXPECT_EQ(ToText(doubles), "{0.5}");
    auto* const texts = New<StringSet>();
    texts->Add(u"b");
    texts->Add(u"a");
    EXPECT_EQ(ToText(texts), "{\"a\", \"b\"}");
    auto* const ids = New<IdSet>();
    ids->Add(GUID{});
    EXPECT_EQ(ToText(ids), "{{00000000-0000-0000-0000-000000000000}}");
}

TEST_F(NodeToTextTest, ACompositeIsItsKindAndHowManyChildrenItHas) {
    auto* const vector = New<Vector>();
    EXPECT_EQ(ToText(vector), "Vector(0 children)");
    vector->Add(NodeTypeInteger);
    EXPECT_EQ(ToText(vector), "Vector(1 child)");
    auto* const map = static_cast<Map*>(tree_->NewRoot(NodeTypeMap, false, SemanticTag(4100)));
    map->NewNode(0, NodeTypeInteger);
    map->NewNode(99, NodeTypeInteger);
    EXPECT_EQ(ToText(map), "Map(tag 4100, 2 children)");
}

}  // namespace
}  // namespace KivGenerics
