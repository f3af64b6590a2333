#include "json/JsonText.h"

#include "text/Utf.h"

namespace KivInspect {
namespace {

/// Appends what JSON does not let stand in a string as it is; false for any other character.
bool AppendEscaped(std::string& text, char32_t c) {
    switch (c) {
        case U'"': text += "\\\""; return true;
        case U'\\': text += "\\\\"; return true;
        case U'\n': text += "\\n"; return true;
        case U'\r': text += "\\r"; return true;
        case U'\t': text += "\\t"; return true;
        default: break;
    }
    if (c >= 0x20 && c != 0x7F) {
        return false;
    }
    text += "\\u00";
    text += "0123456789abcdef"[c >> 4];
    text += "0123456789abcdef"[c & 15U];
    return true;
}

}  // namespace

void AppendJsonString(std::string& text, std::string_view utf8) {
    text += '"';
    for (const char c : utf8) {
        if (!AppendEscaped(text, static_cast<unsigned char>(c))) {
            text += c;
        }
    }
    text += '"';
}

void AppendJsonString(std::string& text, const char16_t* units, std::size_t count) {
    text += '"';
    for (std::size_t i = 0; i < count;) {
        const char32_t c = TakeCharacter(units, count, i);
        if (!AppendEscaped(text, c)) {
            AppendUtf8(text, c);
        }
    }
    text += '"';
}

}  // namespace KivInspect
