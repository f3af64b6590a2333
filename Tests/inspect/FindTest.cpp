#include <gtest/gtest.h>

#include <KivInspect/Find.h>
#include <KivInspect/Key.h>

#include "inspect/Corpus.h"

namespace InspectTest {
namespace {

using namespace KivGenerics;

/// The keys of what is found in the savable tree.
std::string Found(const KivInspect::FindQuery& query, const KivInspect::Names* names = nullptr) {
    const auto tree = SavableTree();
    std::string keys;
    KivInspect::Find(tree.Get(), query, names, [&](Node*, const KivInspect::Walk& walk) {
        keys += "[" + walk.GetKey(names) + "]";
        return true;
    });
    return keys;
}

std::string FoundByKey(const char* pattern, const KivInspect::Names* names = nullptr) {
    KivInspect::FindQuery query;
    query.key = KivInspect::KeyPattern(pattern);
    return Found(query, names);
}

KivInspect::Names SomeNames() {
    KivInspect::Names names;
    names.SetIndex(SemanticTag(4107), 0, "every:kind");
    names.SetIndex(SemanticTag(4162), 5, "numbers");
    names.SetIndex(SemanticTag(4162), 6, "7");
    return names;
}

TEST(FindTest, AKeyPatternHasOneOrAnyNumberOfStepsForAsterisks) {
    EXPECT_EQ(FoundByKey("0:5:*"), "[0:5:0:][0:5:1:]");
    EXPECT_EQ(FoundByKey("*:5:1:"), "[0:5:1:]");
    EXPECT_EQ(FoundByKey("**:1"), "[0:1:][0:5:1:]");
    EXPECT_EQ(FoundByKey("0:5:**"), "[0:5:][0:5:0:][0:5:1:]");
    EXPECT_EQ(FoundByKey(":"), "[]");
    EXPECT_EQ(FoundByKey("7:**"), "");
}

TEST(FindTest, NamesStandInPatternsAndKeys) {
    const KivInspect::Names names = SomeNames();
    EXPECT_EQ(FoundByKey("*:numbers:*", &names), "[every\\:kind:numbers:0:][every\\:kind:numbers:1:]");
    EXPECT_EQ(FoundByKey("every\\:kind:5", &names), "[every\\:kind:numbers:]");
}

TEST(FindTest, EverythingThatIsAskedForMustHold) {
    KivInspect::FindQuery query;
    query.kind = NodeTypeInteger;
    EXPECT_EQ(Found(query), "[0:0:][0:5:0:][0:5:1:][0:11:][0:12:]");
    query.temporality = TemporalityDefault;
    EXPECT_EQ(Found(query), "[0:5:0:][0:5:1:]");
    query.value = "2";
    EXPECT_EQ(Found(query), "[0:5:1:]");
}

TEST(FindTest, MapsAreFoundByTag) {
    KivInspect::FindQuery query;
    query.tag = static_cast<SemanticTag>(4162);
    EXPECT_EQ(Found(query), "[0:]");
}

TEST(FindTest, ValuesAreFoundInLeavesAndSets) {
    KivInspect::FindQuery query;
    query.value = "text";
    EXPECT_EQ(Found(query), "[0:2:]");
    query.value = "\"text\"";
    EXPECT_EQ(Found(query), "[0:2:]");
    query.value = "element";
    EXPECT_EQ(Found(query), "[0:8:]");
    query.value = "3";
    EXPECT_EQ(Found(query), "[0:6:]");
    query.value = "{12345678-9abc-def0-0102-030405060708}";
    EXPECT_EQ(Found(query), "[0:1:][0:7:]");
}

TEST(FindTest, TextsAreFoundByRegularExpression) {
    KivInspect::FindQuery query;
    query.regex = KivInspect::Regex::Compile("e.*t$").regex;
    EXPECT_EQ(Found(query), "[0:2:][0:8:]");
}

TEST(FindNodeTest, AKeyIsReadWithNumbersAndNames) {
    const auto tree = SavableTree();
    const KivInspect::Names names = SomeNames();
    const auto key = [&](const char* text) {
        return KivInspect::GetKey(KivInspect::FindNode(tree.Get(), text, &names).node);
    };
    EXPECT_EQ(key("0:5:1:"), "0:5:1:");
    EXPECT_EQ(key("every\\:kind:numbers:1"), "0:5:1:");
    EXPECT_EQ(key("0:\\7"), "0:6:");
    EXPECT_EQ(KivInspect::FindNode(tree.Get(), "", &names).node, tree->GetRoot());
    EXPECT_EQ(KivInspect::FindNode(tree.Get(), ":", &names).node, tree->GetRoot());
    EXPECT_EQ(KivInspect::FindNode(tree.Get(), "every\\:kind:nothing").problem,
              "the root has no child \"every:kind\".");
    EXPECT_EQ(KivInspect::FindNode(tree.Get(), "0:99999999999:").problem, "\"0:\" has no child \"99999999999\".");
    EXPECT_EQ(KivInspect::FindNode(tree.Get(), "0:1:0").problem, "\"0:1:\" is a value: nothing stands below it.");
    EXPECT_EQ(KivInspect::FindNode(NewTree().Get(), "0:").problem, "The tree is empty.");
}

}  // namespace
}  // namespace InspectTest
