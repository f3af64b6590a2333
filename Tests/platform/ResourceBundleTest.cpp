#include <KivResource/ResourceBundle.h>

#include <string>

#include <KivLogRouter/ResourceBundle.h>
#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

using KivResource::TextBundle;

std::u16string Find(const KivResource::ResourceBundle& bundle, std::uint32_t number, std::uint16_t language,
                    const char16_t* defaultText = u"") {
    return bundle.Lookup(number, language, defaultText).Get();
}

TEST(TextBundleTest, AnswersTheDefaultWhereThereIsNoText) {
    const TextBundle bundle;
    EXPECT_EQ(u"default", Find(bundle, 1, 9, u"default"));
    EXPECT_EQ(u"", Find(bundle, 1, 9, u""));
    EXPECT_EQ(u"", Find(bundle, 1, 9, nullptr));
}

TEST(TextBundleTest, FindsTextsByNumberAndLanguage) {
    TextBundle bundle;
    bundle.SetText(7, 9, u"Address");
    bundle.SetText(7, 7, u"Adresse");
    bundle.SetText(0xFFFFFFFF, 0xFFFF, u"last");
    EXPECT_EQ(u"Address", Find(bundle, 7, 9));
    EXPECT_EQ(u"Adresse", Find(bundle, 7, 7));
    EXPECT_EQ(u"last", Find(bundle, 0xFFFFFFFF, 0xFFFF));
    EXPECT_EQ(u"none", Find(bundle, 7, 8, u"none"));
    EXPECT_EQ(u"none", Find(bundle, 8, 7, u"none"));
}

TEST(TextBundleTest, TheLastTextCountsAndNullRemovesIt) {
    TextBundle bundle;
    bundle.SetText(7, 9, u"Address");
    bundle.SetText(7, 9, u"Location");
    EXPECT_EQ(u"Location", Find(bundle, 7, 9));
    bundle.SetText(7, 9, u"");
    EXPECT_EQ(u"", Find(bundle, 7, 9, u"default"));
    bundle.SetText(7, 9, nullptr);
    EXPECT_EQ(u"default", Find(bundle, 7, 9, u"default"));
    bundle.SetText(7, 9, nullptr);
    EXPECT_EQ(u"default", Find(bundle, 7, 9, u"default"));
}

TEST(TextBundleTest, AFoundTextOutlivesTheBundle) {
    KivBase::ReturnWString text;
    {
        TextBundle bundle;
        bundle.SetText(7, 9, u"A text that is too long to stand inside the string object");
        text = bundle.Lookup(7, 9, u"");
    }
    EXPECT_EQ(std::u16string(u"A text that is too long to stand inside the string object"), text.Get());
}

TEST(ResourceBundleTest, ThePlatformsOwnStandsUntilAnotherIsSet) {
    TextBundle& own = KivLogRouter::GetDefaultResourceBundle();
    EXPECT_EQ(&own, KivLogRouter::GetResourceBundle());
    TextBundle other;
    EXPECT_EQ(nullptr, KivLogRouter::SetResourceBundle(&other));
    EXPECT_EQ(&other, KivLogRouter::GetResourceBundle());
    EXPECT_EQ(&other, KivLogRouter::SetResourceBundle(nullptr));
    EXPECT_EQ(&own, KivLogRouter::GetResourceBundle());
    EXPECT_EQ(nullptr, KivLogRouter::SetResourceBundle(nullptr));
}

TEST(ResourceBundleTest, AHostFillsThePlatformsOwn) {
    EXPECT_EQ(u"none", Find(*KivLogRouter::GetResourceBundle(), 5, 9, u"none"));
    KivLogRouter::GetDefaultResourceBundle().SetText(5, 9, u"five");
    EXPECT_EQ(u"five", Find(*KivLogRouter::GetResourceBundle(), 5, 9, u"none"));
    KivLogRouter::GetDefaultResourceBundle().SetText(5, 9, nullptr);
}

TEST(ReturnWStringTest, HoldsAText) {
    EXPECT_TRUE(KivBase::ReturnWString().IsEmpty());
    EXPECT_EQ(std::u16string(), KivBase::ReturnWString().Get());
    EXPECT_TRUE(KivBase::ReturnWString(static_cast<const char16_t*>(nullptr)).IsEmpty());
    const KivBase::ReturnWString text(u"text");
    EXPECT_FALSE(text.IsEmpty());
    EXPECT_EQ(std::u16string(u"text"), text.Get());
    EXPECT_EQ(std::u16string(u"other"), KivBase::ReturnWString(KivBase::WString(u"other")).Get());
}

}  // namespace
}  // namespace KivPlatform::Testing
