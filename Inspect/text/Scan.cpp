#include "text/Scan.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "files/Failure.h"
#include "text/Utf.h"

namespace KivInspect {
namespace {

int HexDigit(char c) noexcept {
    if ('0' <= c && c <= '9') {
        return c - '0';
    }
    if ('a' <= c && c <= 'f') {
        return c - 'a' + 10;
    }
    return 'A' <= c && c <= 'F' ? c - 'A' + 10 : -1;
}

}  // namespace

void Scan::Refuse(const std::string& expected) const {
    throw Failure(InspectMalformed, "column " + std::to_string(GetColumn()) + ": " + expected + " is expected here.");
}

void Scan::Expect(std::string_view text) {
    if (!Take(text)) {
        Refuse("\"" + std::string(text) + "\"");
    }
}

std::string_view Scan::TakeWord() noexcept {
    const std::string_view word = rest_.substr(0, rest_.find_first_of(" ,}"));
    rest_.remove_prefix(word.size());
    return word;
}

template <class Number>
Number Scan::TakeNumber(const char* expected) {
    Number value{};
    const auto read = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
    if (read.ec != std::errc()) {
        Refuse(expected);
    }
    rest_.remove_prefix(static_cast<std::size_t>(read.ptr - rest_.data()));
    return value;
}

template std::int32_t Scan::TakeNumber(const char* expected);
template std::int64_t Scan::TakeNumber(const char* expected);

bool Scan::TakeBoolean() {
    if (Take("true")) {
        return true;
    }
    if (!Take("false")) {
        Refuse("true or false");
    }
    return false;
}

double Scan::TakeDouble() {
    if (!Take("nan")) {
        const double value = TakeNumber<double>("a floating-point number");
        if (std::isnan(value)) {
            Refuse("a floating-point number");
        }
        return value;
    }
    if (!Take(":")) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const std::uint64_t bits = TakeHex(16);
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isnan(value)) {
        Refuse("the bits of a NaN");
    }
    return value;
}

std::uint64_t Scan::TakeHex(int digits) {
    std::uint64_t value = 0;
    for (int i = 0; i < digits; ++i) {
        const int digit = HexDigit(Peek());
        if (digit < 0) {
            Refuse("a hexadecimal digit");
        }
        value = value << 4U | static_cast<unsigned>(digit);
        rest_.remove_prefix(1);
    }
    return value;
}

GUID Scan::TakeGuid() {
    GUID id = {};
    Expect("{");
    id.Data1 = static_cast<std::uint32_t>(TakeHex(8));
    Expect("-");
    id.Data2 = static_cast<std::uint16_t>(TakeHex(4));
    Expect("-");
    id.Data3 = static_cast<std::uint16_t>(TakeHex(4));
    for (int i = 0; i < 8; ++i) {
        if (i == 0 || i == 2) {
            Expect("-");
        }
        id.Data4[i] = static_cast<std::uint8_t>(TakeHex(2));
    }
    Expect("}");
    return id;
}

void Scan::TakeEscape(KivBase::WString& text) {
    constexpr std::string_view letters = "\"\\nrt";
    constexpr std::u16string_view units = u"\"\\\n\r\t";
    const std::size_t letter = rest_.empty() ? std::string_view::npos : letters.find(rest_.front());
    if (letter != std::string_view::npos) {
        rest_.remove_prefix(1);
        text += units[letter];
    } else if (Take("u")) {
        text += static_cast<char16_t>(TakeHex(4));
    } else {
        Refuse("one of \\\" \\\\ \\n \\r \\t \\u0000");
    }
}

void Scan::TakeUtf8(KivBase::WString& text) {
    const char32_t c = TakeUtf8Character(rest_);
    if (c == NoCharacter) {
        Refuse("well-formed UTF-8");
    }
    AppendUtf16(text, c);
}

KivBase::WString Scan::TakeQuoted(std::size_t limit) {
    KivBase::WString text;
    Expect("\"");
    while (!Take("\"")) {
        if (rest_.empty()) {
            Refuse("the quote that ends the text");
        }
        if (Take("\\")) {
            TakeEscape(text);
        } else if (const auto byte = static_cast<unsigned char>(rest_.front()); byte < 0x80) {
            text += static_cast<char16_t>(byte);
            rest_.remove_prefix(1);
        } else {
            TakeUtf8(text);
        }
        if (text.size() > limit) {
            throw Failure(InspectTextTooLong, "a text has more than " + std::to_string(limit) + " units.");
        }
    }
    return text;
}

}  // namespace KivInspect
