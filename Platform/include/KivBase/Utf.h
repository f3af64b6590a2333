#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <KivBase/Export.h>
#include <KivBase/WString.h>

namespace KivBase {

/// UTF-16 to UTF-8. A surrogate without its partner becomes U+FFFD. Throws std::bad_alloc.
KIV_PLATFORM_EXPORT std::string ToUtf8(const char16_t* units, std::size_t count);
inline std::string ToUtf8(const WString& text) {
    return ToUtf8(text.data(), text.size());
}

/// UTF-8 to UTF-16, on the heap. Each byte that does not belong to a well-formed sequence (overlong forms, encoded
/// surrogates and values above U+10FFFF are not well formed) becomes one U+FFFD. Throws std::bad_alloc.
KIV_PLATFORM_EXPORT WString FromUtf8(std::string_view bytes);

}  // namespace KivBase
