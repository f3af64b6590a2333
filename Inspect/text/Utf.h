#pragma once

#include <cstddef>
#include <string>
#include <string_view>

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

/// True when every surrogate has its partner.
inline bool IsWellFormed(const char16_t* units, std::size_t count) noexcept {
    for (std::size_t i = 0; i < count;) {
        const char32_t c = TakeCharacter(units, count, i);
        if (0xD800 <= c && c <= 0xDFFF) {
            return false;
        }
    }
    return true;
}

/// What TakeUtf8Character answers where no well-formed character stands.
inline constexpr char32_t NoCharacter = 0xFFFFFFFF;

/// Takes one character off the front of UTF-8, which must not be empty. Overlong forms, surrogates and what is above U+10FFFF are
/// not well formed; nothing is taken then.
inline char32_t TakeUtf8Character(std::string_view& utf8) noexcept {
    const auto byte = [&utf8](std::size_t i) { return static_cast<unsigned char>(utf8[i]); };
    const unsigned first = byte(0);
    const std::size_t size = first < 0x80   ? 1
                             : first < 0xC2 ? 0
                             : first < 0xE0 ? 2
                             : first < 0xF0 ? 3
                             : first < 0xF5 ? 4
                                            : 0;
    if (size == 0 || utf8.size() < size) {
        return NoCharacter;
    }
    char32_t c = size == 1 ? first : first & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        if ((byte(i) & 0xC0U) != 0x80) {
            return NoCharacter;
        }
        c = c << 6U | (byte(i) & 0x3FU);
    }
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    if (c < least[size] || c > 0x10FFFF || (0xD800 <= c && c <= 0xDFFF)) {
        return NoCharacter;
    }
    utf8.remove_prefix(size);
    return c;
}

/// Appends a character as one unit, or as two.
template <class Text>
void AppendUtf16(Text& text, char32_t c) {
    if (c < 0x10000) {
        text += static_cast<char16_t>(c);
    } else {
        text += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10U));
        text += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FFU));
    }
}

}  // namespace KivInspect
