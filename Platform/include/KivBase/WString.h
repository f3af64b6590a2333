#pragma once

#include <string>

#include <KivBase/Allocator.h>

namespace KivBase {

/// UTF-16 text: 16-bit code units with the host's allocator. Nothing checks that surrogates come in pairs.
using WString = std::basic_string<char16_t, std::char_traits<char16_t>, Allocator<char16_t>>;

}  // namespace KivBase
