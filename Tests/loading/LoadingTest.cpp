// Loads the shared library as a host does that links none of it, and watches what it asks of the platform.

#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "loading/Library.h"
#include "support/RecordingObserver.h"

using KivTests::kStartEvents;
using KivTests::kStopEvents;
using KivTests::RecordingObserver;

namespace {

using Events = std::vector<std::string>;

}  // namespace

TEST(LoadingTest, LoadingStartsTheLoggingOnceAndUnloadingStopsItInTheOppositeOrder) {
    RecordingObserver observer;
    ASSERT_FALSE(Library::IsLoaded());
    Library library;
    ASSERT_TRUE(library.IsOpen());
    EXPECT_EQ(observer.TakeEvents(),
              (Events{"LogStarting", "LogRouterStarting", "RouterCreated 'Orv Generics' 'Error' -3",
                      "RouterCreated 'Orv Generics' 'TreeTrace' -3"}));
    library.Close();
    EXPECT_EQ(observer.TakeEvents(),
              (Events{"RouterReleased 'Orv Generics' 'TreeTrace'", "RouterReleased 'Orv Generics' 'Error'",
                      "LogRouterStopped", "LogStopped"}));
}

TEST(LoadingTest, UnloadingTakesTheLibraryOutOfTheProcess) {
    Library library;
    ASSERT_TRUE(library.IsOpen());
    EXPECT_TRUE(Library::IsLoaded());
    library.Close();
    EXPECT_FALSE(Library::IsLoaded());
}

TEST(LoadingTest, EveryLoadStartsTheLoggingAnew) {
    RecordingObserver observer;
    for (int i = 0; i < 3; ++i) {
        Library library;
        ASSERT_TRUE(library.IsOpen());
        EXPECT_EQ(observer.TakeEvents(), kStartEvents);
        library.Close();
        EXPECT_EQ(observer.TakeEvents(), kStopEvents);
    }
}

TEST(LoadingTest, ASecondHandleOnTheLoadedLibraryStartsNothing) {
    RecordingObserver observer;
    Library first;
    ASSERT_TRUE(first.IsOpen());
    observer.TakeEvents();
    {
        Library second;
        ASSERT_TRUE(second.IsOpen());
    }
    EXPECT_EQ(observer.TakeEvents(), Events{});
    EXPECT_TRUE(Library::IsLoaded());
}

TEST(LoadingTest, InitializersNeitherStartNorStopWhatTheLoadHolds) {
    RecordingObserver observer;
    Library library;
    ASSERT_TRUE(library.IsOpen());
    EXPECT_EQ(observer.TakeEvents(), kStartEvents);
    library.MakeInitializer();
    library.MakeInitializer();
    library.DestroyInitializer();
    library.AssignInitializer();
    library.MakeInitializer();
    library.DestroyInitializer();
    library.DestroyInitializer();
    EXPECT_EQ(observer.TakeEvents(), Events{});
    library.Close();
    EXPECT_EQ(observer.TakeEvents(), kStopEvents);
}

TEST(LoadingTest, AStartUpThatFailsIsSwallowedAndNothingIsShutDownThen) {
    const struct {
        const char* failAt;
        Events events;
    } rows[] = {
        {"LogStarting", {"LogStarting"}},
        {"LogRouterStarting", {"LogStarting", "LogRouterStarting", "LogStopped"}},
        {"RouterCreated 'Orv Generics' 'Error' -3",
         {"LogStarting", "LogRouterStarting", "RouterCreated 'Orv Generics' 'Error' -3", "LogRouterStopped",
          "LogStopped"}},
        {"RouterCreated 'Orv Generics' 'TreeTrace' -3",
         {"LogStarting", "LogRouterStarting", "RouterCreated 'Orv Generics' 'Error' -3",
          "RouterCreated 'Orv Generics' 'TreeTrace' -3", "RouterReleased 'Orv Generics' 'Error'", "LogRouterStopped",
          "LogStopped"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.failAt);
        RecordingObserver observer;
        observer.failAt = row.failAt;
        Library library;
        ASSERT_TRUE(library.IsOpen());
        EXPECT_EQ(observer.TakeEvents(), row.events);
        observer.failAt.clear();
        library.Close();
        EXPECT_EQ(observer.TakeEvents(), Events{});
        EXPECT_FALSE(Library::IsLoaded());
    }
}

TEST(LoadingTest, AfterAFailedStartUpInitializersHoldTheLoggingAlone) {
    RecordingObserver observer;
    observer.failAt = "LogStarting";
    Library library;
    ASSERT_TRUE(library.IsOpen());
    observer.failAt.clear();
    observer.TakeEvents();
    library.MakeInitializer();
    EXPECT_EQ(observer.TakeEvents(), kStartEvents);
    library.MakeInitializer();
    library.DestroyInitializer();
    EXPECT_EQ(observer.TakeEvents(), Events{});
    library.DestroyInitializer();
    EXPECT_EQ(observer.TakeEvents(), kStopEvents);
    library.Close();
    EXPECT_EQ(observer.TakeEvents(), Events{});
}

TEST(LoadingTest, AnInitializerPassesTheFailureOnAndCountsNothing) {
    RecordingObserver observer;
    observer.failAt = "LogRouterStarting";
    Library library;
    ASSERT_TRUE(library.IsOpen());
    observer.TakeEvents();
    for (int i = 0; i < 2; ++i) {
        try {
            library.MakeInitializer();
            ADD_FAILURE() << "nothing thrown";
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "LogRouterStarting");
        }
        EXPECT_EQ(observer.TakeEvents(), (Events{"LogStarting", "LogRouterStarting", "LogStopped"}));
    }
    observer.failAt.clear();
    library.MakeInitializer();
    EXPECT_EQ(observer.TakeEvents(), kStartEvents);
    library.DestroyInitializer();
    EXPECT_EQ(observer.TakeEvents(), kStopEvents);
}

TEST(LoadingTest, ThreadsThatStartUpAtOnceNeverMakeTwoLoggingStates) {
    RecordingObserver observer;
    observer.failAt = "LogStarting";
    Library library;
    ASSERT_TRUE(library.IsOpen());
    observer.failAt.clear();
    observer.TakeEvents();
    const auto work = [&library] {
        for (int i = 0; i < 2000; ++i) {
            library.MakeInitializer();
            library.DestroyInitializer();
        }
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    const Events events = observer.TakeEvents();
    ASSERT_EQ(events.size() % 8, 0U);
    ASSERT_GE(events.size(), 8U);
    for (std::size_t i = 0; i < events.size(); ++i) {
        ASSERT_EQ(events[i], i % 8 < 4 ? kStartEvents[i % 8] : kStopEvents[i % 8 - 4]) << "event " << i;
    }
}

TEST(LoadingTest, ThreadsThatLoadAtOnceStartTheLoggingOnce) {
    RecordingObserver observer;
    std::unique_ptr<Library> libraries[2];
    const auto load = [&libraries](int i) { libraries[i] = std::make_unique<Library>(); };
    std::thread first(load, 0);
    std::thread second(load, 1);
    first.join();
    second.join();
    ASSERT_TRUE(libraries[0]->IsOpen());
    EXPECT_EQ(libraries[0]->GetHandle(), libraries[1]->GetHandle());
    EXPECT_EQ(observer.TakeEvents(), kStartEvents);
    libraries[0]->Close();
    EXPECT_EQ(observer.TakeEvents(), Events{});
    libraries[1]->Close();
    EXPECT_EQ(observer.TakeEvents(), kStopEvents);
}

TEST(LoadingTest, TheFunctionThatMakesTreesIsExported) {
    const Library library;
    ASSERT_TRUE(library.IsOpen());
    EXPECT_NE(library.Find("_ZN11KivGenerics17CreateGenericTreeENS_17EnumOrvObjectTypeE"), nullptr);
}
