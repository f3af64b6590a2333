#include <gtest/gtest.h>

#include <KivInspect/Names.h>

namespace InspectTest {
namespace {

using KivGenerics::SemanticTag;
using KivInspect::Names;

constexpr auto Group = static_cast<SemanticTag>(4108);
constexpr auto Other = static_cast<SemanticTag>(-5);

Names SomeNames() {
    Names names;
    names.SetTag(Group, "group");
    names.SetIndex(Group, 10, "members");
    names.SetIndex(Group, 2, "a \"quoted\" \\ \n name");
    names.SetIndex(Other, 0, "of a tag without a name");
    return names;
}

const char* const AsJson =
    "{\n"
    "  \"names\": 1,\n"
    "  \"tags\": {\n"
    "    \"-5\": {\n"
    "      \"indexes\": {\n"
    "        \"0\": \"of a tag without a name\"\n"
    "      }\n"
    "    },\n"
    "    \"4108\": {\n"
    "      \"name\": \"group\",\n"
    "      \"indexes\": {\n"
    "        \"2\": \"a \\\"quoted\\\" \\\\ \\n name\",\n"
    "        \"10\": \"members\"\n"
    "      }\n"
    "    }\n"
    "  }\n"
    "}\n";

KivInspect::NamesResult Read(std::string_view json) {
    KivInspect::MemorySource source(json);
    return KivInspect::ReadNames(source, "the dictionary");
}

std::string Write(const Names& names) {
    KivInspect::StringSink sink;
    KivInspect::WriteNames(names, sink);
    return sink.GetText();
}

TEST(NamesTest, NamesAreFoundBothWays) {
    const Names names = SomeNames();
    EXPECT_EQ(*names.FindTag(Group), "group");
    EXPECT_EQ(*names.FindIndex(Group, 10), "members");
    EXPECT_EQ(names.FindTagByName("group"), Group);
    EXPECT_EQ(names.FindIndexByName(Group, "members"), 10);
    EXPECT_EQ(names.FindTag(Other), nullptr);
    EXPECT_EQ(names.FindIndex(Group, 3), nullptr);
    EXPECT_EQ(names.FindTagByName("members"), std::nullopt);
    EXPECT_EQ(names.FindIndexByName(Other, "members"), std::nullopt);
}

TEST(NamesTest, OfOneNameForTwoTheSmallerIsFound) {
    Names names;
    names.SetTag(Group, "same");
    names.SetTag(Other, "same");
    names.SetIndex(Group, 7, "twice");
    names.SetIndex(Group, 3, "twice");
    EXPECT_EQ(names.FindTagByName("same"), Other);
    EXPECT_EQ(names.FindIndexByName(Group, "twice"), 3);
}

TEST(NamesTest, TheDictionaryIsJsonWithANameALine) {
    EXPECT_EQ(Write(SomeNames()), AsJson);
    EXPECT_EQ(Write(Names()), "{\n  \"names\": 1,\n  \"tags\": {}\n}\n");
}

TEST(NamesTest, WhatIsWrittenIsRead) {
    const KivInspect::NamesResult read = Read(AsJson);
    ASSERT_TRUE(read.result.Ok()) << read.result.sentence;
    EXPECT_EQ(Write(read.names), AsJson);
}

TEST(NamesTest, AnotherDocumentIsRefusedWithThePlace) {
    for (const char* const json :
         {"", "[]", "{}", "{\"names\": 2}", "{\"names\": 1, \"tags\": {\"x\": {\"name\": \"a\"}}}",
          "{\"names\": 1, \"tags\": {\"1\": {\"name\": 5}}}", "{\"names\": 1, \"tags\": {\"1\": \"a\"}}",
          "{\"names\": 1, \"tags\": {\"1\": {\"indexes\": {\"0\": {\"a\": {}}}}}}", "{\"tags\": {}}"}) {
        const KivInspect::NamesResult read = Read(json);
        EXPECT_LT(read.result.code, 0) << json;
        EXPECT_EQ(read.result.sentence.rfind("the dictionary, line 1: ", 0), 0U) << read.result.sentence;
        EXPECT_TRUE(read.names.IsEmpty());
    }
}

}  // namespace
}  // namespace InspectTest
