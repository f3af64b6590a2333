// The three keys of a node.

#include <cstdint>
#include <limits>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <KivBase/Utf.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>
#include <KivLogRouter/ResourceBundle.h>
#include <gtest/gtest.h>

#include "core/NodeAccess.h"
#include "support/TestTree.h"

namespace KivGenerics::Testing {
namespace {

using KivBase::WString;

/// The arguments of one lookup.
struct Asked {
    std::uint32_t number;
    std::uint16_t language;
    WString defaultText;

    friend bool operator==(const Asked& left, const Asked& right) {
        return left.number == right.number && left.language == right.language && left.defaultText == right.defaultText;
    }
};

/// Stands in for the platform's bundle while it lives; notes what it is asked, and knows the texts it is told.
class RecordingBundle final : public KivResource::ResourceBundle {
public:
    RecordingBundle() : former_(KivLogRouter::SetResourceBundle(this)) {}
    ~RecordingBundle() override { KivLogRouter::SetResourceBundle(former_); }
    RecordingBundle(const RecordingBundle&) = delete;
    RecordingBundle& operator=(const RecordingBundle&) = delete;

    KivBase::ReturnWString Lookup(std::uint32_t messageNumber, std::uint16_t language,
                                  const char16_t* defaultText) const override {
        asked.push_back({messageNumber, language, WString(defaultText)});
        if (asked.size() == failAt) {
            throw std::bad_alloc();
        }
        for (const auto& [number, text] : texts) {
            if (number == messageNumber) {
                return KivBase::ReturnWString(text);
            }
        }
        return KivBase::ReturnWString(defaultText);
    }

    std::vector<std::pair<std::uint32_t, WString>> texts;
    std::size_t failAt = 0;
    mutable std::vector<Asked> asked;

private:
    KivResource::ResourceBundle* former_;
};

class KeyTest : public ::testing::Test {
protected:
    static Map* AddMap(Composite* parent, int index, int tag) {
        auto* const map = static_cast<Map*>(parent->NewNode(index, NodeTypeMap));
        map->SetSemanticTag(SemanticTag(tag));
        return map;
    }
    static std::string KeyOf(const Node* node) {
        WString key = u"what stood there";
        node->GetKey(key);
        return KivBase::ToUtf8(key);
    }
    static std::string TagKeyOf(const Node* node) {
        WString key = u"what stood there";
        node->GetSemanticTagKey(key);
        return KivBase::ToUtf8(key);
    }
    static std::string ReadableKeyOf(const Node* node, int language = 0) {
        WString key = u"what stood there";
        node->GetHumanReadableKey(language, key);
        return KivBase::ToUtf8(key);
    }

    KivBase::ReturnPtrI<Tree> tree_ = KivTests::NewTree();
    Map* root_ = static_cast<Map*>(tree_->NewRoot(NodeTypeMap));
    RecordingBundle bundle_;
};

TEST_F(KeyTest, AllKeysOfARootAreEmpty) {
    EXPECT_EQ("", KeyOf(root_));
    EXPECT_EQ("", TagKeyOf(root_));
    EXPECT_EQ("", ReadableKeyOf(root_));
    EXPECT_TRUE(bundle_.asked.empty());
}

TEST_F(KeyTest, AllKeysOfADetachedNodeAreEmpty) {
    AddMap(root_, 3, 4100);
    Node* const detached = root_->Detach(3);
    EXPECT_EQ("", KeyOf(detached));
    EXPECT_EQ("", TagKeyOf(detached));
    EXPECT_EQ("", ReadableKeyOf(detached));
}

TEST_F(KeyTest, AKeyIsTheIndexPathFromTheRootEachClosedByAColon) {
    EXPECT_EQ("0:", KeyOf(root_->NewNode(0, NodeTypeInteger)));
    Map* const map = AddMap(root_, 3, 1);
    EXPECT_EQ("3:", KeyOf(map));
    EXPECT_EQ("3:12:", KeyOf(map->NewNode(12, NodeTypeString)));
    EXPECT_EQ("3:536870911:", KeyOf(map->NewNode(536870911, NodeTypeString)));
}

TEST_F(KeyTest, AKeyFollowsTheNodeWhereItIsMoved) {
    auto* const list = static_cast<Vector*>(root_->NewNode(1, NodeTypeVector));
    list->Add(NodeTypeInteger);
    Node* const second = list->Add(NodeTypeInteger);
    EXPECT_EQ("1:1:", KeyOf(second));
    list->Remove(0);
    EXPECT_EQ("1:0:", KeyOf(second));
    root_->Move(40, list);
    EXPECT_EQ("40:0:", KeyOf(second));
    EXPECT_EQ("40:", KeyOf(list));
}

TEST_F(KeyTest, AVectorElementAtIndex70000HasThatIndexInItsKey) {
    auto* const list = static_cast<Vector*>(root_->NewNode(2, NodeTypeVector));
    list->Reserve(70001);
    for (int i = 0; i <= 70000; ++i) {
        list->Add(NodeTypeMap);
    }
    auto* const last = static_cast<Map*>(list->Get(70000));
    EXPECT_EQ("2:70000:", KeyOf(last));
    EXPECT_EQ("2:70000:5:", KeyOf(last->NewNode(5, NodeTypeBoolean)));
    EXPECT_EQ(last->Get(5), tree_->FindNodeByKey(u"2:70000:5:"));
}

TEST_F(KeyTest, ANegativeIndexStandsInTheKeyAsItsUnsignedValue) {
    Node* const node = root_->NewNode(0, NodeTypeInteger);
    NodeAccess::Place(*node, root_, -1);
    EXPECT_EQ("4294967295:", KeyOf(node));
    NodeAccess::Place(*node, root_, std::numeric_limits<int>::min());
    EXPECT_EQ("2147483648:", KeyOf(node));
    NodeAccess::Place(*node, root_, 0);
}

TEST_F(KeyTest, EveryKeyLeadsBackToItsNode) {
    Map* const map = AddMap(root_, 3, 4100);
    auto* const list = static_cast<Vector*>(map->NewNode(20, NodeTypeVector));
    list->Add(NodeTypeInteger);
    for (Node* const node :
         {static_cast<Node*>(root_), static_cast<Node*>(map), static_cast<Node*>(list), list->Add(NodeTypeInteger)}) {
        WString key;
        node->GetKey(key);
        EXPECT_EQ(node, tree_->FindNodeByKey(key));
    }
}

TEST_F(KeyTest, ATagKeyIsTheTagPathInLowercaseHexadecimal) {
    Map* const outer = AddMap(root_, 3, 4100);
    Map* const inner = AddMap(outer, 12, 28672);
    EXPECT_EQ("1004:", TagKeyOf(outer));
    EXPECT_EQ("1004:7000:", TagKeyOf(inner));
    EXPECT_EQ("1004:7000:1:", TagKeyOf(inner->NewNode(0, NodeTypeInteger))) << "a leaf has tag 1";
    EXPECT_EQ("1:", TagKeyOf(root_->NewNode(5, NodeTypeVector)));
}

TEST_F(KeyTest, TheTagOfTheRootIsInNoKey) {
    root_->SetSemanticTag(SemanticTag(255));
    EXPECT_EQ("1:", TagKeyOf(root_->NewNode(0, NodeTypeInteger)));
}

TEST_F(KeyTest, EveryTagHasItsUnsignedHexadecimalFormInATagKey) {
    Map* const map = AddMap(root_, 0, 0);
    const std::pair<int, const char*> rows[] = {
        {0, "0:"},
        {9, "9:"},
        {10, "a:"},
        {255, "ff:"},
        {256, "100:"},
        {0xABCDEF, "abcdef:"},
        {-1, "ffffffff:"},
        {2147483647, "7fffffff:"},
        {-2147483647 - 1, "80000000:"},
    };
    for (const auto& [tag, key] : rows) {
        map->SetSemanticTag(SemanticTag(tag));
        EXPECT_EQ(key, TagKeyOf(map));
    }
}

struct MessageRow {
    std::int32_t tag;
    std::uint32_t number;
};

// The first and last tag of every range, its neighbours, and one from within.
constexpr MessageRow kMessageRows[] = {
    {0x6000, 0x6C00}, {0x6100, 0x6C80}, {0x6200, 0x6CFF},     {0x6300, 0x6D00},
    {0, 0x6000},      {1, 0x6001},      {50, 0x6032},         {99, 0x6063},
    {100, 0x6010},    {101, 0x6011},    {132, 0x6030},        {4095, 0x6FAB},
    {4096, 0x6030},   {4100, 0x6034},   {4367, 0x613F},       {24575, 0xB02F},
    {0x6001, 0},      {0x60FF, 0},      {0x6101, 0},          {0x61FF, 0},
    {0x6201, 0},      {0x62FF, 0},      {0x6301, 0},          {28671, 0},
    {28672, 0x101},   {28673, 0x102},   {28700, 0x11D},       {28730, 0x13B},
    {28731, 0x73C9},  {28743, 0x73D5},  {40000, 0x9FCE},      {0x7FFFFFFF, 0x8000038DU},
    {-1, 0},          {-100, 0},        {-2147483647 - 1, 0}, {-2147483647, 0},
};

TEST_F(KeyTest, EveryTagHasItsMessageNumber) {
    Map* const map = AddMap(root_, 0, 0);
    for (const MessageRow& row : kMessageRows) {
        map->SetSemanticTag(SemanticTag(row.tag));
        bundle_.asked.clear();
        EXPECT_EQ(":", ReadableKeyOf(map));
        ASSERT_EQ(1U, bundle_.asked.size());
        EXPECT_EQ(row.number, bundle_.asked[0].number) << row.tag;
    }
}

TEST_F(KeyTest, TheNumbersOfARangeFollowItsTags) {
    Map* const map = AddMap(root_, 0, 0);
    const auto numberOf = [&](int tag) {
        map->SetSemanticTag(SemanticTag(tag));
        bundle_.asked.clear();
        ReadableKeyOf(map);
        return bundle_.asked.at(0).number;
    };
    for (int tag = 24577; tag <= 28671; ++tag) {
        if (tag != 24832 && tag != 25088 && tag != 25344) {
            ASSERT_EQ(0U, numberOf(tag)) << tag;
        }
    }
    for (int tag = 100; tag < 24575; ++tag) {
        const std::uint32_t step = tag == 4095 ? 0x6030U - 0x6FABU : 1U;
        ASSERT_EQ(numberOf(tag) + step, numberOf(tag + 1)) << tag;
    }
}

// kept-on-purpose: readable-key-overlap
TEST_F(KeyTest, TagsOfDifferentRangesShareMessageNumbersAndSomeHaveNone) {
    Map* const first = AddMap(root_, 0, 132);
    Map* const second = AddMap(first, 0, 4096);
    Map* const third = AddMap(second, 0, 48);
    Map* const none = AddMap(third, 0, -5);
    bundle_.texts = {{0x6030, u"Shared"}, {0, u"None"}};
    EXPECT_EQ("Shared:Shared:Shared:None:", ReadableKeyOf(none));
}

TEST_F(KeyTest, AReadableKeyAsksFromTheRootDownForTheLanguageWithAnEmptyDefault) {
    Map* const outer = AddMap(root_, 3, 4100);
    Map* const inner = AddMap(outer, 12, 28672);
    Node* const leaf = inner->NewNode(0, NodeTypeInteger);
    bundle_.texts = {{0x6034, u"Outer"}, {0x101, u"Inner \u00e4\u20ac"}, {0x6001, u"Leaf"}};
    EXPECT_EQ("Outer:Inner \xC3\xA4\xE2\x82\xAC:Leaf:", ReadableKeyOf(leaf, 1033));
    EXPECT_EQ((std::vector<Asked>{{0x6034, 1033, u""}, {0x101, 1033, u""}, {0x6001, 1033, u""}}), bundle_.asked);
}

TEST_F(KeyTest, TheLanguageIsA16BitNumber) {
    Map* const map = AddMap(root_, 0, 100);
    for (const int language : {0, 7, 0xFFFF, 0x12345, -1, std::numeric_limits<int>::min()}) {
        ReadableKeyOf(map, language);
    }
    EXPECT_EQ((std::vector<Asked>{{0x6010, 0, u""},
                                  {0x6010, 7, u""},
                                  {0x6010, 0xFFFF, u""},
                                  {0x6010, 0x2345, u""},
                                  {0x6010, 0xFFFF, u""},
                                  {0x6010, 0, u""}}),
              bundle_.asked);
}

TEST_F(KeyTest, AnUnknownMessageAddsTheColonAlone) {
    Map* const outer = AddMap(root_, 0, 100);
    Map* const inner = AddMap(outer, 0, 101);
    bundle_.texts = {{0x6011, u"Known"}};
    EXPECT_EQ(":Known:", ReadableKeyOf(inner));
    bundle_.texts = {{0x6010, u"Known"}};
    EXPECT_EQ("Known::", ReadableKeyOf(inner));
}

TEST_F(KeyTest, AMessageIsTakenUpToItsTerminatingZero) {
    Map* const map = AddMap(root_, 0, 100);
    bundle_.texts = {{0x6010, WString(u"ab\0cd", 5)}};
    EXPECT_EQ("ab:", ReadableKeyOf(map));
}

TEST_F(KeyTest, WhenTheBundleThrowsTheKeyIsThePathUpToThere) {
    Map* const outer = AddMap(root_, 0, 100);
    Map* const inner = AddMap(outer, 0, 101);
    bundle_.texts = {{0x6010, u"Outer"}, {0x6011, u"Inner"}};
    bundle_.failAt = 2;
    WString key = u"what stood there";
    EXPECT_THROW(inner->GetHumanReadableKey(0, key), std::bad_alloc);
    EXPECT_EQ("Outer:", KivBase::ToUtf8(key));
}

TEST_F(KeyTest, KeysOfADeepNodeNameEveryLevel) {
    Composite* step = root_;
    std::string indexes;
    std::string tags;
    std::string texts;
    for (int i = 0; i < 1000; ++i) {
        step = AddMap(step, i % 9, 100 + i % 2);
        indexes += std::to_string(i % 9) + ":";
        tags += i % 2 == 0 ? "64:" : "65:";
        texts += i % 2 == 0 ? "even:" : "odd:";
    }
    bundle_.texts = {{0x6010, u"even"}, {0x6011, u"odd"}};
    EXPECT_EQ(indexes, KeyOf(step));
    EXPECT_EQ(tags, TagKeyOf(step));
    EXPECT_EQ(texts, ReadableKeyOf(step));
    EXPECT_EQ(step, tree_->FindNodeByKey(KivBase::FromUtf8(indexes)));
}

TEST_F(KeyTest, KeysCountNothingAndCanBeHadFromAReadOnlyTree) {
    Map* const map = AddMap(root_, 0, 100);
    tree_->SetReadOnly();
    const int before = tree_->GetChangeCount();
    EXPECT_EQ("0:", KeyOf(map));
    EXPECT_EQ("64:", TagKeyOf(map));
    EXPECT_EQ(":", ReadableKeyOf(map));
    EXPECT_EQ(before, tree_->GetChangeCount());
}

TEST_F(KeyTest, WithoutABundleOfItsOwnTheHostFillsThePlatforms) {
    Map* const map = AddMap(root_, 0, 4107);
    KivResource::ResourceBundle* const recording = KivLogRouter::SetResourceBundle(nullptr);
    EXPECT_EQ(&bundle_, recording);
    KivLogRouter::GetDefaultResourceBundle().SetText(0x603B, 1033, u"Sixteen");
    EXPECT_EQ("Sixteen:", ReadableKeyOf(map, 1033));
    EXPECT_EQ(":", ReadableKeyOf(map, 1031));
    KivLogRouter::GetDefaultResourceBundle().SetText(0x603B, 1033, nullptr);
    EXPECT_EQ(":", ReadableKeyOf(map, 1033));
    EXPECT_TRUE(bundle_.asked.empty());
    KivLogRouter::SetResourceBundle(recording);
}

}  // namespace
}  // namespace KivGenerics::Testing
