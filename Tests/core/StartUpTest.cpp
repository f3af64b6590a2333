#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <KivBase/ModuleEntry.h>
#include <KivGenerics/Initializer.h>

#include "core/StartUp.h"
#include "support/RecordingObserver.h"

using KivGenerics::Initializer;
using KivTests::kStartEvents;
using KivTests::kStopEvents;
using KivTests::RecordingObserver;

namespace {

using Events = std::vector<std::string>;

}  // namespace

TEST(StartUpTest, TheFirstInitializerStartsAndTheLastOneStops) {
    RecordingObserver observer;
    {
        const Initializer first;
        EXPECT_EQ(observer.TakeEvents(), kStartEvents);
        {
            const Initializer second;
            const Initializer third;
        }
        EXPECT_EQ(observer.TakeEvents(), Events{});
    }
    EXPECT_EQ(observer.TakeEvents(), kStopEvents);
}

TEST(StartUpTest, InitializersAreAssignedWithoutEffectAndNeverCopied) {
    RecordingObserver observer;
    EXPECT_FALSE(std::is_copy_constructible_v<Initializer>);
    EXPECT_FALSE(std::is_move_constructible_v<Initializer>);
    EXPECT_TRUE(std::is_default_constructible_v<Initializer>);
    {
        Initializer first;
        const Initializer second;
        observer.TakeEvents();
        EXPECT_EQ(&(first = second), &first);
        EXPECT_EQ(observer.TakeEvents(), Events{});
    }
    EXPECT_EQ(observer.TakeEvents(), kStopEvents);
}

TEST(StartUpTest, AFailurePassesOnAndCountsNothing) {
    RecordingObserver observer;
    observer.failAt = "RouterCreated 'Orv Generics' 'TreeTrace' -3";
    EXPECT_THROW(Initializer(), std::runtime_error);
    EXPECT_EQ(observer.TakeEvents(),
              (Events{"LogStarting", "LogRouterStarting", "RouterCreated 'Orv Generics' 'Error' -3",
                      "RouterCreated 'Orv Generics' 'TreeTrace' -3", "RouterReleased 'Orv Generics' 'Error'",
                      "LogRouterStopped", "LogStopped"}));
    observer.failAt.clear();
    {
        const Initializer initializer;
    }
    Events both = kStartEvents;
    both.insert(both.end(), kStopEvents.begin(), kStopEvents.end());
    EXPECT_EQ(observer.TakeEvents(), both);
}

TEST(StartUpTest, TheModuleEntryKeepsTheHandleAndHoldsOneCount) {
    RecordingObserver observer;
    int module = 0;
    KivBase::ModuleAttach(&module);
    EXPECT_EQ(KivGenerics::GetModuleHandleOfLibrary(), &module);
    EXPECT_EQ(observer.TakeEvents(), kStartEvents);
    {
        const Initializer initializer;
    }
    EXPECT_EQ(observer.TakeEvents(), Events{});
    KivBase::ModuleDetach();
    EXPECT_EQ(observer.TakeEvents(), kStopEvents);
}

TEST(StartUpTest, TheModuleEntryShutsDownOnlyWhatItStarted) {
    RecordingObserver observer;
    observer.failAt = "LogStarting";
    int module = 0;
    KivBase::ModuleAttach(&module);
    observer.failAt.clear();
    observer.TakeEvents();
    {
        const Initializer initializer;
        EXPECT_EQ(observer.TakeEvents(), kStartEvents);
        KivBase::ModuleDetach();
        EXPECT_EQ(observer.TakeEvents(), Events{});
    }
    EXPECT_EQ(observer.TakeEvents(), kStopEvents);
    KivBase::ModuleDetach();
    EXPECT_EQ(observer.TakeEvents(), Events{});
}

TEST(StartUpTest, ThreadsThatStartUpAtOnceNeverMakeTwoLoggingStates) {
    RecordingObserver observer;
    const auto work = [] {
        for (int i = 0; i < 2000; ++i) {
            const Initializer initializer;
        }
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    const Events events = observer.TakeEvents();
    ASSERT_GE(events.size(), 8U);
    ASSERT_EQ(events.size() % 8, 0U);
    for (std::size_t i = 0; i < events.size(); ++i) {
        ASSERT_EQ(events[i], i % 8 < 4 ? kStartEvents[i % 8] : kStopEvents[i % 8 - 4]) << "event " << i;
    }
}
