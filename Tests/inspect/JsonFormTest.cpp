#include <gtest/gtest.h>

#include <KivInspect/InspectCode.h>

#include <KivGenerics/Double.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>

#include "inspect/Corpus.h"

namespace InspectTest {
namespace {

using namespace KivGenerics;

TEST(JsonFormTest, EachNodeIsALineOfTheDocument) {
    EXPECT_EQ(ToJson(SavableTree().Get()),
              "{\"kivtree\": 1, \"root\":\n"
              "{\"kind\": \"Map\", \"tag\": 4107, \"value\": [\n"
              "{\"index\": 0, \"kind\": \"Map\", \"tag\": 4162, \"value\": [\n"
              "{\"index\": 0, \"kind\": \"Integer\", \"value\": -7},\n"
              "{\"index\": 1, \"kind\": \"GlobalID\", \"value\": \"{12345678-9abc-def0-0102-030405060708}\"},\n"
              "{\"index\": 2, \"kind\": \"String\", \"value\": \"text\"},\n"
              "{\"index\": 3, \"kind\": \"Double\", \"value\": 0.1},\n"
              "{\"index\": 4, \"kind\": \"Boolean\", \"value\": true},\n"
              "{\"index\": 5, \"kind\": \"Vector\", \"value\": [\n"
              "{\"kind\": \"Integer\", \"value\": 1},\n"
              "{\"kind\": \"Integer\", \"value\": 2}]},\n"
              "{\"index\": 6, \"kind\": \"IntegerSet\", \"value\": [3]},\n"
              "{\"index\": 7, \"kind\": \"IdSet\", \"value\": [\"{12345678-9abc-def0-0102-030405060708}\"]},\n"
              "{\"index\": 8, \"kind\": \"StringSet\", \"value\": [\"element\"]},\n"
              "{\"index\": 9, \"kind\": \"DoubleSet\", \"value\": [-0.5]},\n"
              "{\"index\": 10, \"kind\": \"Integer64\", \"value\": \"1\"},\n"
              "{\"index\": 11, \"kind\": \"Integer\", \"temporality\": \"transient\", \"value\": 0},\n"
              "{\"index\": 12, \"kind\": \"Integer\", \"temporality\": \"temporary\", \"value\": 0}]}]}}\n");
}

TEST(JsonFormTest, AnEmptyTreeHasNoRoot) {
    EXPECT_EQ(ToJson(NewTree().Get()), "{\"kivtree\": 1, \"root\": null}\n");
}

TEST(JsonFormTest, WhatReadersOfJsonLoseIsAString) {
    const auto tree = NewTree();
    Map* const root = NewRootMap(tree.Get());
    New<Double>(root, 0)->Set(-0.0);
    New<Double>(root, 1)->Set(std::numeric_limits<double>::infinity());
    New<Double>(root, 2)->Set(FromBits(0x7FF0000000000001));
    New<Integer64>(root, 3)->Set(9007199254740993);
    New<String>(root, 4)->Set(KivBase::WString(u"a") + static_cast<char16_t>(0xD800));
    EXPECT_EQ(ToJson(tree.Get()),
              "{\"kivtree\": 1, \"root\":\n"
              "{\"kind\": \"Map\", \"value\": [\n"
              "{\"index\": 0, \"kind\": \"Double\", \"value\": \"-0\"},\n"
              "{\"index\": 1, \"kind\": \"Double\", \"value\": \"inf\"},\n"
              "{\"index\": 2, \"kind\": \"Double\", \"value\": \"nan:7ff0000000000001\"},\n"
              "{\"index\": 3, \"kind\": \"Integer64\", \"value\": \"9007199254740993\"},\n"
              "{\"index\": 4, \"kind\": \"String\", \"value\": {\"utf16\": [97, 55296]}}]}}\n");
}

TEST(JsonFormTest, AnyLayoutOfSpacesIsRead) {
    const KivStorage::LoadResult loaded = FromJson(
        "{ \"kivtree\":1,\n\"root\" : {\"kind\":\"Map\",\"value\":[{\"index\":7,\"kind\":\"Double\",\"value\":5}]}}");
    ASSERT_TRUE(loaded.result.Ok()) << loaded.result.sentence;
    EXPECT_EQ(ToText(loaded.tree.Get()), "kivtext 1\nMap\n  7: Double 5\n");
}

struct Refusal {
    const char* name;
    std::string json;
    const char* sentence;
};

/// A document around this root.
std::string Around(const std::string& root) {
    return "{\"kivtree\": 1, \"root\":\n" + root + "}";
}

class JsonFormRefusalTest : public testing::TestWithParam<Refusal> {};

TEST_P(JsonFormRefusalTest, TheLineAndTheReasonAreNamed) {
    const KivStorage::LoadResult loaded = FromJson(GetParam().json);
    EXPECT_LT(loaded.result.code, 0);
    EXPECT_FALSE(loaded.tree);
    EXPECT_NE(loaded.result.sentence.find(GetParam().sentence), std::string::npos) << loaded.result.sentence;
}

INSTANTIATE_TEST_SUITE_P(
    Mistakes, JsonFormRefusalTest,
    testing::Values(
        Refusal{"Nothing", "", "the document, line 1: this is no JSON"},
        Refusal{"CutOff", "{\"kivtree\": 1, \"root\":\n", "this is no JSON"},
        Refusal{"AnotherDocument", "{\"3166-1\": []}", "the members \"kivtree\" and \"root\", in this order."},
        Refusal{"AnotherVersion", "{\"kivtree\": 2, \"root\": null}", "the version of the JSON form is not known"},
        Refusal{"NoRoot", "{\"kivtree\": 1}", "the document has no \"root\"."},
        Refusal{"AList", "[]", "a list does not belong here."},
        Refusal{"NoKind", Around("{\"value\": 1}"), "line 2: a node's \"kind\" must stand before its \"value\"."},
        Refusal{"WrongKind", Around("{\"kind\": \"Mep\"}"), "\"Mep\" is no kind of node."},
        Refusal{"NoValue", Around("{\"kind\": \"Map\"}"), "a node has no \"value\"."},
        Refusal{"ValueFirst", Around("{\"kind\": \"Integer\", \"value\": 1, \"tag\": 1}"),
                "\"value\" must be its last member."},
        Refusal{"LargeInteger", Around("{\"kind\": \"Integer\", \"value\": 2147483648}"), "more than 32 bits."},
        Refusal{"HugeInteger", Around("{\"kind\": \"Integer\", \"value\": 18446744073709551615}"),
                "does not belong here."},
        Refusal{"Fraction", Around("{\"kind\": \"Integer\", \"value\": 1.5}"), "this number does not belong here."},
        Refusal{"Text", Around("{\"kind\": \"Integer\", \"value\": \"1\"}"), "a string does not belong here."},
        Refusal{"Truth", Around("{\"kind\": \"Integer\", \"value\": true}"),
                "true or false is the value of a Boolean alone."},
        Refusal{"NullValue", Around("{\"kind\": \"Integer\", \"value\": null}"), "null stands for an empty tree"},
        Refusal{"WideInteger64", Around("{\"kind\": \"Integer64\", \"value\": \"9223372036854775808\"}"),
                "a number of 64 bits is expected here."},
        Refusal{"LongInteger64", Around("{\"kind\": \"Integer64\", \"value\": \"1 \"}"),
                "\"1 \" is more than the value"},
        Refusal{"WrongGuid", Around("{\"kind\": \"GlobalID\", \"value\": \"{1}\"}"),
                "a hexadecimal digit is expected here."},
        Refusal{"LargeUnit", Around("{\"kind\": \"String\", \"value\": {\"utf16\": [65536]}}"),
                "a unit is a number from 0 to 65535."},
        Refusal{"WrongWrapper", Around("{\"kind\": \"String\", \"value\": {\"utf8\": []}}"),
                "has the member \"utf16\"."},
        Refusal{"SecondIndex",
                Around("{\"kind\": \"Map\", \"value\": [{\"index\": 1, \"kind\": \"Map\", \"value\": []},\n"
                       "{\"index\": 1, \"kind\": \"Map\", \"value\": []}]}"),
                "line 3: there is a second child with index 1."},
        Refusal{"LargeDouble", Around("{\"kind\": \"Double\", \"value\": 1e999}"), "this is no JSON"},
        Refusal{"MixedSet", Around("{\"kind\": \"IntegerSet\", \"value\": [1, \"a\"]}"),
                "a string does not belong here."}),
    [](const auto& each) { return each.param.name; });

TEST(JsonFormTest, LimitsOfALoadHold) {
    KivStorage::LoadOptions options;
    options.limits.stringUnits = 2;
    EXPECT_EQ(FromJson(Around("{\"kind\": \"String\", \"value\": \"abc\"}"), options).result.code,
              KivInspect::InspectTextTooLong);
    EXPECT_EQ(FromJson(Around("{\"kind\": \"String\", \"value\": {\"utf16\": [1, 2, 3]}}"), options).result.code,
              KivInspect::InspectTextTooLong);
    EXPECT_TRUE(FromJson(Around("{\"kind\": \"String\", \"value\": \"ab\"}"), options).result.Ok());
    options.limits.totalBytes = 10;
    EXPECT_EQ(FromJson(Around("{\"kind\": \"String\", \"value\": \"ab\"}"), options).result.code,
              KivInspect::InspectTooManyBytes);
}

TEST(JsonFormTest, AMillionOpenBracketsAreRefusedWithoutHarm) {
    EXPECT_FALSE(FromJson(std::string(1000000, '[')).result.Ok());
    std::string nested = "{\"kivtree\": 1, \"root\":";
    for (int i = 0; i < 100000; ++i) {
        nested += "{\"kind\": \"Vector\", \"value\": [";
    }
    EXPECT_EQ(FromJson(nested).result.code, KivInspect::InspectTooDeep);
}

}  // namespace
}  // namespace InspectTest
