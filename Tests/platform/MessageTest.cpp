#include <KivBase/Message.h>

#include <exception>
#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

using KivBase::Message;

class Failure : public Message {
public:
    virtual int GetKind() const { return 1; }
};

class HardFailure : public Failure {
public:
    int GetKind() const override { return 2; }
};

HardFailure MakeHardFailure() {
    HardFailure failure;
    failure.SetDomainAndID(KivBase::MESSAGE_DOMAIN_UNKNOWN, -1);
    failure.SetMessage(u"Zu gro\u00DF: \u20AC \U0001F600!");
    return failure;
}

[[noreturn]] void ThrowHardFailure() {
    throw KivBase::ExceptionImpl<HardFailure>(MakeHardFailure());
}

TEST(MessageTest, IsEmptyAtFirst) {
    const Message message;
    EXPECT_TRUE(message.GetMessage().empty());
    EXPECT_EQ(KivBase::MESSAGE_DOMAIN_UNKNOWN, message.GetDomain());
    EXPECT_EQ(0, message.GetID());
}

TEST(MessageTest, KeepsTextDomainAndId) {
    Message message;
    message.SetDomainAndID(static_cast<KivBase::MessageDomain>(12), -34);
    message.SetMessage(u"Something happened");
    EXPECT_EQ(12, message.GetDomain());
    EXPECT_EQ(-34, message.GetID());
    EXPECT_EQ(u"Something happened", message.GetMessage());
    message.SetMessage(u"Something else");
    EXPECT_EQ(u"Something else", message.GetMessage());
    EXPECT_EQ(-34, message.GetID());
}

TEST(MessageTest, NullIsTheEmptyText) {
    Message message;
    message.SetMessage(u"Something happened");
    message.SetMessage(nullptr);
    EXPECT_EQ(u"", message.GetMessage());
}

TEST(MessageTest, ACopyIsIndependent) {
    auto original = std::make_unique<Failure>();
    original->SetMessage(u"A text that is too long to stand inside the string object");
    original->SetDomainAndID(static_cast<KivBase::MessageDomain>(3), 4);
    const Failure copy(*original);
    Failure assigned;
    assigned = *original;
    original.reset();
    EXPECT_EQ(u"A text that is too long to stand inside the string object", copy.GetMessage());
    EXPECT_EQ(u"A text that is too long to stand inside the string object", assigned.GetMessage());
    EXPECT_EQ(3, copy.GetDomain());
    EXPECT_EQ(4, assigned.GetID());
}

TEST(MessageTest, TheUnknownDomainIsZero) {
    EXPECT_EQ(0, static_cast<std::int32_t>(KivBase::MESSAGE_DOMAIN_UNKNOWN));
}

TEST(ExceptionImplTest, IsCaughtAsItself) {
    try {
        ThrowHardFailure();
    } catch (const KivBase::ExceptionImpl<HardFailure>& failure) {
        EXPECT_EQ(u"Zu gro\u00DF: \u20AC \U0001F600!", failure.GetMessage());
        EXPECT_EQ(-1, failure.GetID());
        EXPECT_EQ(2, failure.GetKind());
    }
    EXPECT_THROW(ThrowHardFailure(), KivBase::ExceptionImpl<HardFailure>);
}

TEST(ExceptionImplTest, IsCaughtAsEachBaseOfItsMessage) {
    EXPECT_THROW(ThrowHardFailure(), HardFailure);
    EXPECT_THROW(ThrowHardFailure(), Failure);
    EXPECT_THROW(ThrowHardFailure(), Message);
    int kind = 0;
    try {
        ThrowHardFailure();
    } catch (const Failure& failure) {
        kind = failure.GetKind();
    }
    EXPECT_EQ(2, kind);
}

TEST(ExceptionImplTest, IsAStandardExceptionWhoseWhatIsUtf8) {
    std::string what;
    try {
        ThrowHardFailure();
    } catch (const std::exception& exception) {
        what = exception.what();
    }
    EXPECT_EQ("Zu gro\xC3\x9F: \xE2\x82\xAC \xF0\x9F\x98\x80!", what);
}

TEST(ExceptionImplTest, SurvivesItsThrow) {
    std::exception_ptr caught;
    try {
        ThrowHardFailure();
    } catch (...) {
        caught = std::current_exception();
    }
    std::string what;
    try {
        std::rethrow_exception(caught);
    } catch (const std::exception& exception) {
        what = exception.what();
    }
    EXPECT_EQ("Zu gro\xC3\x9F: \xE2\x82\xAC \xF0\x9F\x98\x80!", what);
}

}  // namespace
}  // namespace KivPlatform::Testing
