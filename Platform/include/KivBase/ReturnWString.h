#pragma once

#include <utility>

#include <KivBase/WString.h>

namespace KivBase {

/// A text that an operation returns: owned by the result, on the heap.
class ReturnWString {
public:
    ReturnWString() = default;
    /// Null gives the empty text; otherwise up to the terminating 0.
    explicit ReturnWString(const char16_t* text) {
        if (text != nullptr) {
            text_ = text;
        }
    }
    explicit ReturnWString(WString text) : text_(std::move(text)) {}

    /// The text, terminated by 0; valid as long as this object.
    const char16_t* Get() const noexcept { return text_.c_str(); }
    bool IsEmpty() const noexcept { return text_.empty(); }

private:
    WString text_;
};

}  // namespace KivBase
