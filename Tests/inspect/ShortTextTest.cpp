#include <gtest/gtest.h>

#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivInspect/NodeSize.h>
#include <KivInspect/ValueText.h>
#include <KivInspect/Walk.h>

#include "inspect/Corpus.h"

namespace InspectTest {
namespace {

using namespace KivGenerics;

TEST(ShortTextTest, LongValuesAreCut) {
    const auto tree = NewTree();
    Map* const root = NewRootMap(tree.Get());
    auto* const text = New<String>(root, 0);
    text->Set(u"abcdefgh");
    EXPECT_EQ(KivInspect::ShortText(text, 8), "\"abcdefgh\"");
    EXPECT_EQ(KivInspect::ShortText(text, 7), "\"abcdefg\"...");
    text->Set(u"abc\U0001F600");
    EXPECT_EQ(KivInspect::ShortText(text, 4), "\"abc\"...");
    auto* const set = New<IntegerSet>(root, 1);
    for (int i = 0; i < 100; ++i) {
        set->Add(i);
    }
    EXPECT_EQ(KivInspect::ShortText(set, 10), "{0, 1, 2, ...} 100 elements");
    EXPECT_EQ(KivInspect::ShortText(root), "2 children");
    EXPECT_EQ(KivInspect::ShortText(nullptr), "nothing");
}

TEST(NodeSizeTest, ASizeIsThatOfTheValuesBelow) {
    const auto tree = NewTree();
    Map* const root = NewRootMap(tree.Get());
    New<String>(root, 0)->Set(u"abc");
    New<StringSet>(root, 1)->Add(u"ab");
    New<IntegerSet>(root, 2)->Add(1);
    EXPECT_EQ(KivInspect::SizeOf(root), 14U);
    EXPECT_EQ(KivInspect::SizeOfValue(root), 0U);
    EXPECT_EQ(KivInspect::SizeOf(nullptr), 0U);
}

TEST(InspectWalkTest, PartsCanBeLeftOut) {
    const auto loaded =
        FromText("kivtext 1\nMap\n  0: Map\n    5: Integer 1\n    6: Integer 1\n  1: Map\n    7: Integer 1\n");
    std::string keys;
    KivInspect::Walk walk(loaded.tree->GetRoot());
    while (walk.Next() != nullptr) {
        keys += "[" + walk.GetKey() + "]";
        if (walk.GetKey() == "0:5:") {
            walk.SkipRest();
        }
        if (walk.GetKey() == "1:") {
            walk.SkipChildren();
        }
    }
    EXPECT_EQ(keys, "[][0:][0:5:][1:]");
}

}  // namespace
}  // namespace InspectTest
