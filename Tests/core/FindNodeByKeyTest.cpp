#include <gtest/gtest.h>

#include <string>

#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>

#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::NewTree;

namespace {

class FindNodeByKeyTest : public ::testing::Test {
protected:
    KivBase::ReturnPtrI<Tree> tree = NewTree();
    Map* root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Vector* zero = static_cast<Vector*>(root->NewNode(0, NodeTypeVector));
    Map* far = static_cast<Map*>(root->NewNode(536870911, NodeTypeMap));
    Node* first = zero->Add(NodeTypeInteger);
    Node* second = zero->Add(NodeTypeInteger);
    Node* twelve = far->NewNode(12, NodeTypeString);

    Node* Find(const char16_t* key) const { return tree->FindNodeByKey(key); }
};

}  // namespace

TEST_F(FindNodeByKeyTest, TheEmptyKeyIsTheRoots) {
    EXPECT_EQ(Find(u""), root);
    EXPECT_EQ(NewTree()->FindNodeByKey(u""), nullptr);
    EXPECT_EQ(NewTree()->FindNodeByKey(u"0:"), nullptr);
    EXPECT_EQ(NewTree()->FindNodeByKey(u"7"), nullptr);
}

TEST_F(FindNodeByKeyTest, EveryIndexIsClosedByAColon) {
    EXPECT_EQ(Find(u"0:"), zero);
    EXPECT_EQ(Find(u"0:0:"), first);
    EXPECT_EQ(Find(u"0:1:"), second);
    EXPECT_EQ(Find(u"536870911:"), far);
    EXPECT_EQ(Find(u"536870911:12:"), twelve);
}

// kept-on-purpose: find-key-needs-colon
TEST_F(FindNodeByKeyTest, DigitsAfterTheLastColonAreReadAndNotUsed) {
    EXPECT_EQ(Find(u"0"), root);
    EXPECT_EQ(Find(u"5"), root);
    EXPECT_EQ(Find(u"0:1"), zero);
    EXPECT_EQ(Find(u"0:99999"), zero);
    EXPECT_EQ(Find(u"0:1:7"), second);
}

TEST_F(FindNodeByKeyTest, AColonAloneReadsAsIndexZero) {
    EXPECT_EQ(Find(u":"), zero);
    EXPECT_EQ(Find(u"::"), first);
    EXPECT_EQ(Find(u"0::"), first);
    EXPECT_EQ(Find(u":1:"), second);
}

TEST_F(FindNodeByKeyTest, LeadingZerosCountForNothing) {
    EXPECT_EQ(Find(u"000:"), zero);
    EXPECT_EQ(Find(u"0:0000000000000001:"), second);
    EXPECT_EQ(Find(u"536870911:012:"), twelve);
}

TEST_F(FindNodeByKeyTest, AnIndexWithoutAChildFindsNothing) {
    EXPECT_EQ(Find(u"1:"), nullptr);
    EXPECT_EQ(Find(u"1:0:"), nullptr);
    EXPECT_EQ(Find(u"0:2:"), nullptr);
    EXPECT_EQ(Find(u"536870911:13:"), nullptr);
}

TEST_F(FindNodeByKeyTest, AnyOtherUnitFindsNothing) {
    for (const char16_t* const key : {u"a:", u"a", u"0:a", u"0:a:", u" 0:", u"0 :", u"-1:", u"+0:", u"0;", u"0:1:x",
                                      u"/:", u"\u0660:", u"\uFF10:", u"0\uFF1A"}) {
        EXPECT_EQ(Find(key), nullptr) << KivBase::ToUtf8(KivBase::WString(key));
    }
    EXPECT_EQ(tree->FindNodeByKey(KivBase::WString(u"0:\0", 3)), nullptr);
}

TEST_F(FindNodeByKeyTest, AColonAfterALeafFindsNothing) {
    EXPECT_EQ(Find(u"0:1::"), nullptr);
    EXPECT_EQ(Find(u"0:1:0:"), nullptr);
    const auto leaf = NewTree();
    leaf->NewRoot(NodeTypeInteger);
    EXPECT_EQ(leaf->FindNodeByKey(u"0:"), nullptr);
    EXPECT_EQ(leaf->FindNodeByKey(u"0"), leaf->GetRoot());
}

TEST_F(FindNodeByKeyTest, NumbersWrapAtThirtyTwoBits) {
    EXPECT_EQ(Find(u"4294967296:"), zero);
    EXPECT_EQ(Find(u"0:4294967297:"), second);
    EXPECT_EQ(Find(u"4831838207:"), far);
    EXPECT_EQ(Find(u"18446744073709551616:"), zero);
    EXPECT_EQ(Find(u"4294967295:"), nullptr);
    EXPECT_EQ(Find(u"2147483648:"), nullptr);
}

TEST_F(FindNodeByKeyTest, NumbersOfAnyLengthAreReadWhereverTheyStand) {
    const int count = 123'457;
    for (int i = 2; i < count; ++i) {
        zero->Add(NodeTypeInteger);
    }
    for (const int index : {7, 12, 123, 1'234, 9'999, 12'345, 99'999, 123'456}) {
        const std::string number = std::to_string(index);
        for (const char* const front : {"0:", "00:", "0000:", "00000:"}) {
            for (const char* const zeros : {"", "0", "000", "0000", "00000"}) {
                const KivBase::WString key = KivBase::FromUtf8(front + (zeros + number) + ":");
                ASSERT_EQ(tree->FindNodeByKey(key), zero->Get(index)) << KivBase::ToUtf8(key);
            }
        }
    }
}

// The units beside the digits, and those that only look like one in their lower or their higher byte.
TEST_F(FindNodeByKeyTest, NoOtherUnitPassesForADigitWhereverItStands) {
    for (const char16_t unit : {u'/', u';', u' ', u'a', char16_t{0}, char16_t{0x0130}, char16_t{0x3030},
                                char16_t{0x8030}, char16_t{0x8039}, char16_t{0xFF10}, char16_t{0xFFFF}}) {
        for (std::size_t at = 2; at < 11; ++at) {
            KivBase::WString key = u"0:000000001:";
            key[at] = unit;
            EXPECT_EQ(tree->FindNodeByKey(key), nullptr) << unit << " at " << at;
        }
    }
}

TEST_F(FindNodeByKeyTest, TheKeyOfEveryNodeLeadsBackToIt) {
    for (Node* const node :
         {static_cast<Node*>(root), static_cast<Node*>(zero), static_cast<Node*>(far), first, second, twelve}) {
        KivBase::WString key;
        node->GetKey(key);
        EXPECT_EQ(tree->FindNodeByKey(key), node) << KivBase::ToUtf8(key);
    }
}
