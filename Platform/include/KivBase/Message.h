#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>

#include <KivBase/Export.h>
#include <KivBase/Utf.h>
#include <KivBase/WString.h>

namespace KivBase {

/// Which catalogue a message's id belongs to; hosts number their own.
enum MessageDomain : std::int32_t {
    MESSAGE_DOMAIN_UNKNOWN = 0,  ///< no catalogue: the text is all there is
};

// <windows.h> makes a macro of this name. Whether it is included before this header, after it or not at all, the class is
// the same: the macro renames the calls alone, and under both of its names they find an operation.
#if defined(_WIN32)
#pragma push_macro("GetMessage")
#undef GetMessage
#endif

/// A text for people with its place in a catalogue.
class KIV_PLATFORM_EXPORT Message {
public:
    Message() = default;
    Message(const Message&) = default;
    Message& operator=(const Message&) = default;
    virtual ~Message();

    void SetDomainAndID(MessageDomain domain, std::int32_t id) noexcept {
        domain_ = domain;
        id_ = id;
    }
    /// Null gives the empty text.
    void SetMessage(const char16_t* text) { text_ = text != nullptr ? text : u""; }

    const WString& GetMessage() const noexcept { return text_; }
#if defined(_WIN32)
    const WString& GetMessageA() const noexcept { return text_; }
    const WString& GetMessageW() const noexcept { return text_; }
#endif
    MessageDomain GetDomain() const noexcept { return domain_; }
    std::int32_t GetID() const noexcept { return id_; }

private:
    WString text_;
    MessageDomain domain_ = MESSAGE_DOMAIN_UNKNOWN;
    std::int32_t id_ = 0;
};

/// Makes a message class throwable: catchable as itself, as the message class and its bases, and as std::exception,
/// whose what() is the text in UTF-8.
template <class T>
class ExceptionImpl : public T, public std::exception {
public:
    explicit ExceptionImpl(const T& message) : T(message), what_(ToUtf8(message.GetMessage())) {}

    const char* what() const noexcept override { return what_.c_str(); }

private:
    std::string what_;
};

#if defined(_WIN32)
#pragma pop_macro("GetMessage")
#endif

}  // namespace KivBase
