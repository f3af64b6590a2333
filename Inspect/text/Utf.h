#pragma once

#include <cstddef>
#include <string>

namespace KivInspect {

/// Takes the character that begins at units[i] and moves `i` behind it. A surrogate without its partner is taken as it is.
inline char32_t TakeCharacter(const char16_t* units, std::size_t count, std::size_t& i) noexcept {
    const char32_t first = units[i++];
    if (first < 0xD800 || 0xDBFF < first || i == count || units[i] < 0xDC00 || 0xDFFF < units[i]) {
        return first;
    }
    return 0x10000 + ((first - 0xD800) << 10) + (char32_t{units[i++]} - 0xDC00);
}

/// Appends a character that is no surrogate.
inline void AppendUtf8(std::string& text, char32_t c) {
    const auto byte = [&text](char32_t value) { text += static_cast<char>(static_cast<unsigned char>(value)); };
    if (c < 0x80) {
        byte(c);
    } else if (c < 0x800) {
        byte(0xC0 | (c >> 6));
        byte(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        byte(0xE0 | (c >> 12));
        byte(0x80 | ((c >> 6) & 0x3F));
        byte(0x80 | (c & 0x3F));
    } else {
        byte(0xF0 | (c >> 18));
        byte(0x80 | ((c >> 12) & 0x3F));
        byte(0x80 | ((c >> 6) & 0x3F));
        byte(0x80 | (c & 0x3F));
    }
}

}  // namespace KivInspect
