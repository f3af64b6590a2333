// Loads the shared library as a host does that links none of it, and watches what it asks of the platform.

#include <dlfcn.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/RecordingObserver.h"

using KivTests::kStartEvents;
using KivTests::kStopEvents;
using KivTests::RecordingObserver;

namespace {

using Events = std::vector<std::string>;

// Its own handle on the library, and through it the operations of Initializer, which has no data of its own.
class Library {
public:
    Library() : handle_(dlopen(KIV_GENERICS_LIBRARY, RTLD_NOW | RTLD_LOCAL)) {}
    ~Library() { Close(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    bool IsOpen() const { return handle_ != nullptr; }
    void Close() {
        if (handle_ != nullptr) {
            EXPECT_EQ(dlclose(handle_), 0) << dlerror();
            handle_ = nullptr;
        }
    }

    void MakeInitializer() const { Call("_ZN11KivGenerics11InitializerC1Ev"); }
    void DestroyInitializer() const { Call("_ZN11KivGenerics11InitializerD1Ev"); }
    void AssignInitializer() const {
        void* const symbol = dlsym(handle_, "_ZN11KivGenerics11InitializeraSERKS0_");
        ASSERT_NE(symbol, nullptr);
        char left = 0;
        const char right = 0;
        EXPECT_EQ(reinterpret_cast<void* (*)(void*, const void*)>(symbol)(&left, &right), &left);
    }

private:
    void Call(const char* name) const {
        void* const symbol = dlsym(handle_, name);
        ASSERT_NE(symbol, nullptr) << name;
        char object = 0;
        reinterpret_cast<void (*)(void*)>(symbol)(&object);
    }

    void* handle_;
};

bool IsLoaded() {
    void* const handle = dlopen(KIV_GENERICS_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) {
        dlclose(handle);
    }
    return handle != nullptr;
}

}  // namespace

TEST(LoadingTest, LoadingStartsTheLoggingOnceAndUnloadingStopsItInTheOppositeOrder) {
    RecordingObserver observer;
    ASSERT_FALSE(IsLoaded());
    Library library;
    ASSERT_TRUE(library.IsOpen()) << dlerror();
    EXPECT_EQ(observer.TakeEvents(), (Events{"LogStarting", "LogRouterStarting", "RouterCreated 'Orv Generics' 'Error' -3",
                                             "RouterCreated 'Orv Generics' 'TreeTrace' -3"}));
    library.Close();
    EXPECT_EQ(observer.TakeEvents(),
              (Events{"RouterReleased 'Orv Generics' 'TreeTrace'", "RouterReleased 'Orv Generics' 'Error'",
                      "LogRouterStopped", "LogStopped"}));
}

TEST(LoadingTest, UnloadingTakesTheLibraryOutOfTheProcess) {
    Library library;
    ASSERT_TRUE(library.IsOpen()) << dlerror();
    EXPECT_TRUE(IsLoaded());
    library.Close();
    EXPECT_FALSE(IsLoaded());
}

TEST(LoadingTest, EveryLoadStartsTheLoggingAnew) {
    RecordingObserver observer;
    for (int i = 0; i < 3; ++i) {
        Library library;
        ASSERT_TRUE(library.IsOpen()) << dlerror();
        EXPECT_EQ(observer.TakeEvents(), kStartEvents);
        library.Close();
        EXPECT_EQ(observer.TakeEvents(), kStopEvents);
    }
}

TEST(LoadingTest, ASecondHandleOnTheLoadedLibraryStartsNothing) {
    RecordingObserver observer;
    Library first;
    ASSERT_TRUE(first.IsOpen()) << dlerror();
    observer.TakeEvents();
    {
        Library second;
        ASSERT_TRUE(second.IsOpen()) << dlerror();
    }
    EXPECT_EQ(observer.TakeEvents(), Events{});
    EXPECT_TRUE(IsLoaded());
}

TEST(LoadingTest, InitializersNeitherStartNorStopWhatTheLoadHolds) {
    RecordingObserver observer;
    Library library;
    ASSERT_TRUE(library.IsOpen()) << dlerror();
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
        ASSERT_TRUE(library.IsOpen()) << dlerror();
        EXPECT_EQ(observer.TakeEvents(), row.events);
        observer.failAt.clear();
        library.Close();
        EXPECT_EQ(observer.TakeEvents(), Events{});
        EXPECT_FALSE(IsLoaded());
    }
}

TEST(LoadingTest, AfterAFailedStartUpInitializersHoldTheLoggingAlone) {
    RecordingObserver observer;
    observer.failAt = "LogStarting";
    Library library;
    ASSERT_TRUE(library.IsOpen()) << dlerror();
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
    ASSERT_TRUE(library.IsOpen()) << dlerror();
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
    ASSERT_TRUE(library.IsOpen()) << dlerror();
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
    void* handles[2] = {};
    const auto load = [&handles](int i) { handles[i] = dlopen(KIV_GENERICS_LIBRARY, RTLD_NOW | RTLD_LOCAL); };
    std::thread first(load, 0);
    std::thread second(load, 1);
    first.join();
    second.join();
    ASSERT_NE(handles[0], nullptr);
    EXPECT_EQ(handles[0], handles[1]);
    EXPECT_EQ(observer.TakeEvents(), kStartEvents);
    dlclose(handles[0]);
    EXPECT_EQ(observer.TakeEvents(), Events{});
    dlclose(handles[1]);
    EXPECT_EQ(observer.TakeEvents(), kStopEvents);
}

TEST(LoadingTest, TheFunctionThatMakesTreesIsExported) {
    Library library;
    ASSERT_TRUE(library.IsOpen()) << dlerror();
    void* const handle = dlopen(KIV_GENERICS_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(handle, nullptr);
    EXPECT_NE(dlsym(handle, "_ZN11KivGenerics17CreateGenericTreeENS_17EnumOrvObjectTypeE"), nullptr);
    dlclose(handle);
}
