#include <KivLog/Router.h>

#include <stdexcept>
#include <string>
#include <vector>

#include <KivBase/Utf.h>
#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

using KivLog::Router;

constexpr auto kNoRank = static_cast<KivSynch::EnumOrvLockStackCategory>(-3);

KivBase::ReturnPtrI<Router> MakeRouter() {
    return KivLog::CreateRouter(u"Printer", u"Error", kNoRank);
}

/// Stands as the sink as long as it lives.
class RecordingSink final : public KivLog::Sink {
public:
    RecordingSink() : before_(KivLog::SetSink(this)) {}
    RecordingSink(const RecordingSink&) = delete;
    RecordingSink& operator=(const RecordingSink&) = delete;
    ~RecordingSink() override { KivLog::SetSink(before_); }
    void Write(const char16_t* router, const char16_t* category, const char16_t* text) override {
        lines.push_back(KivBase::ToUtf8(KivBase::WString(router)) + "/" + KivBase::ToUtf8(KivBase::WString(category)) +
                        "/" + KivBase::ToUtf8(KivBase::WString(text)));
    }
    std::vector<std::string> lines;

private:
    KivLog::Sink* before_;
};

TEST(RouterTest, KnowsItsNameAndCategory) {
    char16_t name[] = u"Printer";
    const auto router = KivLog::CreateRouter(name, u"Error", kNoRank);
    name[0] = u'X';
    EXPECT_EQ(std::u16string(u"Printer"), router->GetName());
    EXPECT_EQ(std::u16string(u"Error"), router->GetCategory());
}

TEST(RouterTest, NullNamesAreEmpty) {
    const auto router = KivLog::CreateRouter(nullptr, nullptr, kNoRank);
    EXPECT_EQ(std::u16string(), router->GetName());
    EXPECT_EQ(std::u16string(), router->GetCategory());
}

TEST(RouterTest, TheHandleHoldsTheOnlyReference) {
    const auto router = MakeRouter();
    EXPECT_EQ(2, router->AddRef());
    EXPECT_EQ(1, router->Release());
}

TEST(RouterTest, SendsWhatIsWrittenToTheSink) {
    const auto router = MakeRouter();
    RecordingSink sink;
    router->Write(u"out of paper");
    router->Write(u"");
    KivLog::CreateRouter(u"Scanner", u"Trace", kNoRank)->Write(u"ready");
    EXPECT_EQ((std::vector<std::string>{"Printer/Error/out of paper", "Printer/Error/", "Scanner/Trace/ready"}),
              sink.lines);
}

TEST(RouterTest, NullTextIsIgnored) {
    const auto router = MakeRouter();
    RecordingSink sink;
    router->Write(nullptr);
    EXPECT_TRUE(sink.lines.empty());
}

TEST(RouterTest, WithoutASinkTextIsDropped) {
    const auto router = MakeRouter();
    EXPECT_NO_THROW(router->Write(u"unheard"));
    RecordingSink sink;
    EXPECT_TRUE(sink.lines.empty());
    router->Write(u"heard");
    EXPECT_EQ(std::vector<std::string>{"Printer/Error/heard"}, sink.lines);
}

TEST(RouterTest, SettingASinkReturnsTheOneBefore) {
    RecordingSink outer;
    {
        RecordingSink inner;
        EXPECT_EQ(&inner, KivLog::SetSink(&outer));
        EXPECT_EQ(&outer, KivLog::SetSink(&inner));
    }
    EXPECT_EQ(&outer, KivLog::SetSink(nullptr));
    EXPECT_EQ(nullptr, KivLog::SetSink(nullptr));
}

class RefusingSink final : public KivLog::Sink {
public:
    void Write(const char16_t*, const char16_t*, const char16_t*) override { throw std::runtime_error("full"); }
};

TEST(RouterTest, WhatTheSinkThrowsPassesOn) {
    const auto router = MakeRouter();
    RefusingSink sink;
    KivLog::SetSink(&sink);
    EXPECT_THROW(router->Write(u"text"), std::runtime_error);
    EXPECT_EQ(&sink, KivLog::SetSink(nullptr));
}

}  // namespace
}  // namespace KivPlatform::Testing
