#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <KivBase/Utf.h>
#include <KivLog/Observer.h>

namespace KivTests {

/// While it lives, writes down what the logging is asked for, and throws at the event that it is told to throw at.
class RecordingObserver final : public KivLog::Observer {
public:
    RecordingObserver() : former_(KivLog::SetObserver(this)) {}
    ~RecordingObserver() override { KivLog::SetObserver(former_); }
    RecordingObserver(const RecordingObserver&) = delete;
    RecordingObserver& operator=(const RecordingObserver&) = delete;

    /// Unguarded on purpose: the library's own lock must keep its callers apart.
    std::vector<std::string> events;
    /// The event that is noted and then fails with std::runtime_error; "" for none.
    std::string failAt;

    std::vector<std::string> TakeEvents() { return std::exchange(events, {}); }

    void LogStarting() override { Note("LogStarting"); }
    void LogStopped() override { events.emplace_back("LogStopped"); }
    void LogRouterStarting() override { Note("LogRouterStarting"); }
    void LogRouterStopped() override { events.emplace_back("LogRouterStopped"); }
    void RouterCreated(const char16_t* name, const char16_t* category, std::int32_t lockCategory) override {
        Note("RouterCreated " + Quoted(name) + " " + Quoted(category) + " " + std::to_string(lockCategory));
    }
    void RouterReleased(const char16_t* name, const char16_t* category) override {
        events.push_back("RouterReleased " + Quoted(name) + " " + Quoted(category));
    }

private:
    static std::string Quoted(const char16_t* text) { return "'" + KivBase::ToUtf8(KivBase::WString(text)) + "'"; }

    void Note(const std::string& event) {
        events.push_back(event);
        if (event == failAt) {
            throw std::runtime_error(event);
        }
    }

    KivLog::Observer* former_;
};

/// What a start-up asks for, in order.
inline const std::vector<std::string> kStartEvents = {
    "LogStarting",
    "LogRouterStarting",
    "RouterCreated 'Orv Generics' 'Error' -3",
    "RouterCreated 'Orv Generics' 'TreeTrace' -3",
};

/// What a shut-down asks for, in order.
inline const std::vector<std::string> kStopEvents = {
    "RouterReleased 'Orv Generics' 'TreeTrace'",
    "RouterReleased 'Orv Generics' 'Error'",
    "LogRouterStopped",
    "LogStopped",
};

}  // namespace KivTests
