#include <KivLog/Router.h>

#include <atomic>

#include <KivSynch/AtomicLong.h>

#include "logging/Observer.h"

namespace KivLog {
namespace {

std::atomic<Sink*> currentSink{nullptr};

class SinkRouter final : public Router {
public:
    SinkRouter(const char16_t* name, const char16_t* category) : name_(name), category_(category) {}
    ~SinkRouter() override {
        if (Observer* const observer = GetObserver()) {
            observer->RouterReleased(name_.c_str(), category_.c_str());
        }
    }

    std::int32_t AddRef() override { return references_.Increment(); }
    std::int32_t Release() override {
        const std::int32_t count = references_.Decrement();
        if (count == 0) {
            delete this;
        }
        return count;
    }
    const char16_t* GetName() const override { return name_.c_str(); }
    const char16_t* GetCategory() const override { return category_.c_str(); }
    void Write(const char16_t* text) override {
        Sink* const sink = currentSink.load();
        if (sink != nullptr && text != nullptr) {
            sink->Write(name_.c_str(), category_.c_str(), text);
        }
    }

private:
    KivSynch::AtomicLong references_{1};
    KivBase::WString name_;
    KivBase::WString category_;
};

}  // namespace

Sink* SetSink(Sink* sink) noexcept {
    return currentSink.exchange(sink);
}

// The observer is told first: when it refuses, there is no router.
KivBase::ReturnPtrI<Router> CreateRouter(const char16_t* name, const char16_t* category,
                                         KivSynch::EnumOrvLockStackCategory lockCategory) {
    const char16_t* const routerName = name != nullptr ? name : u"";
    const char16_t* const routerCategory = category != nullptr ? category : u"";
    if (Observer* const observer = GetObserver()) {
        observer->RouterCreated(routerName, routerCategory, lockCategory);
    }
    return KivBase::ReturnPtrI<Router>(new SinkRouter(routerName, routerCategory));
}

}  // namespace KivLog
