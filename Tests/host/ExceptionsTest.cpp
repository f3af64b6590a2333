// What the library throws arrives in the host, another module, as every class that it is said to be; and what one module
// took, it gets back.

#include <exception>
#include <string>
#include <type_traits>

#include <KivBase/Utf.h>
#include <KivGenerics/Exception.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Tree.h>
#include <gtest/gtest.h>

namespace {

using namespace KivGenerics;

/// The text with which `step` fails, caught as Caught; "" when it does not fail, "other" when it fails as something else.
template <class Caught, class Step>
std::string TextAs(const Step& step) {
    try {
        step();
        return "";
    } catch (const Caught& caught) {
        if constexpr (std::is_base_of_v<std::exception, Caught>) {
            return caught.what();
        } else {
            return KivBase::ToUtf8(caught.GetMessage());
        }
    } catch (...) {
        return "other";
    }
}

void MoveNull() {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    static_cast<Map*>(tree->NewRoot(NodeTypeMap))->Move(0, nullptr);
}

void ChangeReadOnly() {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const leaf = static_cast<Integer*>(tree->NewRoot(NodeTypeInteger));
    tree->SetReadOnly();
    leaf->Set(1);
}

TEST(ExceptionsTest, AMisuseIsCaughtAsEveryClassItIs) {
    const std::string text = "Move::Node can't be NULL!";
    EXPECT_EQ(text, TextAs<KivBase::ExceptionImpl<Exception>>(MoveNull));
    EXPECT_EQ(text, TextAs<Exception>(MoveNull));
    EXPECT_EQ(text, TextAs<KivBase::Message>(MoveNull));
    EXPECT_EQ(text, TextAs<std::exception>(MoveNull));
    EXPECT_EQ("other", TextAs<ReadOnlyException>(MoveNull));
}

TEST(ExceptionsTest, AChangeOfAReadOnlyTreeIsCaughtAsEveryClassItIs) {
    const std::string text = TextAs<std::exception>(ChangeReadOnly);
    EXPECT_EQ("Operation not allowed on a read-only tree!", text);
    EXPECT_EQ(text, TextAs<KivBase::ExceptionImpl<ReadOnlyException>>(ChangeReadOnly));
    EXPECT_EQ(text, TextAs<ReadOnlyException>(ChangeReadOnly));
    EXPECT_EQ(text, TextAs<Exception>(ChangeReadOnly));
    EXPECT_EQ(text, TextAs<KivBase::Message>(ChangeReadOnly));
}

TEST(ExceptionsTest, WhatIsThrownHasItsKindItsDomainAndItsNumber) {
    try {
        ChangeReadOnly();
        ADD_FAILURE() << "nothing thrown";
    } catch (const Exception& caught) {
        EXPECT_EQ(1, caught.GetExceptionKind());
        EXPECT_EQ(KivBase::MESSAGE_DOMAIN_UNKNOWN, caught.GetDomain());
        EXPECT_EQ(-1, caught.GetID());
    }
}

TEST(ExceptionsTest, AnExceptionCanBeKeptAndThrownAgainByTheHost) {
    std::exception_ptr kept;
    try {
        MoveNull();
    } catch (...) {
        kept = std::current_exception();
    }
    EXPECT_EQ("Move::Node can't be NULL!", TextAs<Exception>([&kept] { std::rethrow_exception(kept); }));
}

TEST(ExceptionsTest, TextsAndSetsPassBetweenTheModulesAndAreFreedWhereTheyEndUp) {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    auto* const text = static_cast<String*>(root->NewNode(0, NodeTypeString));
    auto* const set = static_cast<StringSet*>(root->NewNode(1, NodeTypeStringSet));
    const KivBase::WString given(10000, u'x');
    text->Set(given.c_str());
    set->Add(given);
    KivBase::WString taken = u"a text of the host's own, long enough to lie on its heap";
    root->Get(0)->GetKey(taken);
    EXPECT_TRUE(taken == u"0:");
    taken = text->Get();
    EXPECT_TRUE(taken == given);
    taken.append(20000, u'y');
    EXPECT_EQ(30000u, taken.size());
    EXPECT_TRUE(text->Get() == given);
}

}  // namespace
