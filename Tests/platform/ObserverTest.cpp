#include <KivLog/Observer.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <KivBase/Utf.h>
#include <KivLog/Initializer.h>
#include <KivLog/Router.h>
#include <KivLogRouter/Initializer.h>
#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

constexpr auto kRank = static_cast<KivSynch::EnumOrvLockStackCategory>(-3);

/// Stands as the observer as long as it lives; refuses the event that is named.
class RecordingObserver final : public KivLog::Observer {
public:
    explicit RecordingObserver(std::string refused = "")
        : refused_(std::move(refused)), before_(KivLog::SetObserver(this)) {}
    RecordingObserver(const RecordingObserver&) = delete;
    RecordingObserver& operator=(const RecordingObserver&) = delete;
    ~RecordingObserver() override { KivLog::SetObserver(before_); }

    void LogStarting() override { Record("log starting"); }
    void LogStopped() override { events.emplace_back("log stopped"); }
    void LogRouterStarting() override { Record("log router starting"); }
    void LogRouterStopped() override { events.emplace_back("log router stopped"); }
    void RouterCreated(const char16_t* name, const char16_t* category, std::int32_t rank) override {
        Record("created " + Text(name) + "/" + Text(category) + " " + std::to_string(rank));
    }
    void RouterReleased(const char16_t* name, const char16_t* category) override {
        events.push_back("released " + Text(name) + "/" + Text(category));
    }
    std::vector<std::string> events;

private:
    static std::string Text(const char16_t* text) { return KivBase::ToUtf8(KivBase::WString(text)); }
    void Record(const std::string& event) {
        events.push_back(event);
        if (event == refused_) {
            throw std::runtime_error("refused");
        }
    }

    std::string refused_;
    KivLog::Observer* before_;
};

using Events = std::vector<std::string>;

TEST(ObserverTest, SeesTheInitializersComeAndGo) {
    RecordingObserver observer;
    {
        const KivLog::Initializer log;
        const KivLogRouter::Initializer logRouter;
        EXPECT_EQ((Events{"log starting", "log router starting"}), observer.events);
    }
    EXPECT_EQ((Events{"log starting", "log router starting", "log router stopped", "log stopped"}), observer.events);
}

TEST(ObserverTest, SeesRoutersComeAndGo) {
    RecordingObserver observer;
    auto router = KivLog::CreateRouter(u"Printer", u"Error", kRank);
    auto copy = router;
    router.Reset();
    EXPECT_EQ(Events{"created Printer/Error -3"}, observer.events);
    copy.Reset();
    EXPECT_EQ((Events{"created Printer/Error -3", "released Printer/Error"}), observer.events);
}

TEST(ObserverTest, ARefusedStartThrows) {
    {
        RecordingObserver observer("log starting");
        EXPECT_THROW(KivLog::Initializer(), std::runtime_error);
        EXPECT_EQ(Events{"log starting"}, observer.events);
    }
    RecordingObserver observer("log router starting");
    EXPECT_THROW(KivLogRouter::Initializer(), std::runtime_error);
    EXPECT_EQ(Events{"log router starting"}, observer.events);
}

TEST(ObserverTest, ARefusedRouterIsNotMade) {
    RecordingObserver observer("created Printer/Error -3");
    EXPECT_THROW(KivLog::CreateRouter(u"Printer", u"Error", kRank), std::runtime_error);
    EXPECT_EQ(Events{"created Printer/Error -3"}, observer.events);
}

TEST(ObserverTest, WithoutAnObserverNothingIsToldAndAllWorks) {
    {
        const KivLog::Initializer log;
        const KivLogRouter::Initializer logRouter;
        EXPECT_TRUE(KivLog::CreateRouter(u"Printer", u"Error", kRank));
    }
    EXPECT_EQ(nullptr, KivLog::SetObserver(nullptr));
}

TEST(ObserverTest, SettingAnObserverReturnsTheOneBefore) {
    RecordingObserver first;
    RecordingObserver second;
    EXPECT_EQ(&second, KivLog::SetObserver(nullptr));
    EXPECT_EQ(nullptr, KivLog::SetObserver(&second));
}

TEST(ObserverTest, AnObserverNeedNotListen) {
    KivLog::Observer deaf;
    KivLog::SetObserver(&deaf);
    {
        const KivLog::Initializer log;
        const KivLogRouter::Initializer logRouter;
        EXPECT_TRUE(KivLog::CreateRouter(u"Printer", u"Error", kRank));
    }
    EXPECT_EQ(&deaf, KivLog::SetObserver(nullptr));
}

}  // namespace
}  // namespace KivPlatform::Testing
