#include <KivLog/Initializer.h>
#include <KivLog/Router.h>
#include <KivLogRouter/Initializer.h>
#include <KivLogRouter/ResourceBundle.h>
#include <KivSynch/AtomicLong.h>

#include <string>

#include <KivBase/Utf.h>

#include "Host.h"

namespace Host {
namespace {

class HostRouter final : public KivLog::Router {
public:
    HostRouter(const char16_t* name, const char16_t* category) : name_(name), category_(category) {}
    ~HostRouter() override { GetCalls().push_back("router " + KivBase::ToUtf8(category_) + " gone"); }
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
    void Write(const char16_t*) override {}

private:
    KivSynch::AtomicLong references_{1};
    KivBase::WString name_;
    KivBase::WString category_;
};

/// Says the number and the language of every message.
class NumberBundle final : public KivResource::ResourceBundle {
public:
    KivBase::ReturnWString Lookup(std::uint32_t messageNumber, std::uint16_t language, const char16_t*) const override {
        const std::string text = std::to_string(messageNumber) + "/" + std::to_string(language);
        return KivBase::ReturnWString(KivBase::FromUtf8(text));
    }
};

}  // namespace

std::vector<std::string>& GetCalls() {
    // Lives until the process ends: what is unloaded last still calls.
    static auto* const calls = new std::vector<std::string>;
    return *calls;
}

}  // namespace Host

KivLog::Initializer::Initializer() {
    Host::GetCalls().emplace_back("log up");
}

KivLog::Initializer::~Initializer() {
    Host::GetCalls().emplace_back("log down");
}

KivLogRouter::Initializer::Initializer() {
    Host::GetCalls().emplace_back("log router up");
}

KivLogRouter::Initializer::~Initializer() {
    Host::GetCalls().emplace_back("log router down");
}

KivBase::ReturnPtrI<KivLog::Router> KivLog::CreateRouter(const char16_t* name, const char16_t* category,
                                                         KivSynch::EnumOrvLockStackCategory lockCategory) {
    Host::GetCalls().push_back("router " + KivBase::ToUtf8(KivBase::WString(name)) + " " +
                               KivBase::ToUtf8(KivBase::WString(category)) + " " +
                               std::to_string(static_cast<int>(lockCategory)));
    return KivBase::ReturnPtrI<Router>(new Host::HostRouter(name, category));
}

KivResource::ResourceBundle* KivLogRouter::GetResourceBundle() noexcept {
    static Host::NumberBundle bundle;
    return &bundle;
}
