#include <KivBase/Utf.h>

#include <cstdint>

namespace KivBase {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

constexpr bool IsHighSurrogate(std::uint32_t unit) noexcept {
    return 0xD800 <= unit && unit <= 0xDBFF;
}

constexpr bool IsLowSurrogate(std::uint32_t unit) noexcept {
    return 0xDC00 <= unit && unit <= 0xDFFF;
}

void AppendUtf8(std::string& bytes, std::uint32_t point) {
    const auto append = [&](std::uint32_t byte) { bytes += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (point < 0x80) {
        append(point);
        return;
    }
    if (point < 0x800) {
        append(0xC0 | point >> 6);
    } else {
        if (point < 0x10000) {
            append(0xE0 | point >> 12);
        } else {
            append(0xF0 | point >> 18);
            append(0x80 | (point >> 12 & 0x3F));
        }
        append(0x80 | (point >> 6 & 0x3F));
    }
    append(0x80 | (point & 0x3F));
}

void AppendUtf16(WString& units, std::uint32_t point) {
    if (point < 0x10000) {
        units += static_cast<char16_t>(point);
    } else {
        units += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
        units += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
    }
}

struct Decoded {
    std::uint32_t point;
    std::size_t length;
};

/// The code point at the start of `bytes`, which is not empty. What is not well formed counts as one byte and U+FFFD.
Decoded DecodeUtf8(std::string_view bytes) noexcept {
    const auto byteAt = [&](std::size_t i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])); };
    constexpr Decoded kMalformed = {kReplacement, 1};
    const std::uint32_t lead = byteAt(0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t length = lead < 0xC2 ? 0 : (lead < 0xE0 ? 2 : (lead < 0xF0 ? 3 : (lead < 0xF5 ? 4 : 0)));
    if (length == 0 || bytes.size() < length) {
        return kMalformed;
    }
    std::uint32_t point = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80) {
            return kMalformed;
        }
        point = point << 6 | (byteAt(i) & 0x3F);
    }
    const bool overlong = (length == 3 && point < 0x800) || (length == 4 && point < 0x10000);
    if (overlong || point > 0x10FFFF || IsHighSurrogate(point) || IsLowSurrogate(point)) {
        return kMalformed;
    }
    return {point, length};
}

}  // namespace

std::string ToUtf8(const char16_t* units, std::size_t count) {
    std::string bytes;
    bytes.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t point = units[i];
        if (IsHighSurrogate(point) && i + 1 < count && IsLowSurrogate(units[i + 1])) {
            point = 0x10000 + ((point - 0xD800) << 10) + (units[i + 1] - 0xDC00U);
            ++i;
        } else if (IsHighSurrogate(point) || IsLowSurrogate(point)) {
            point = kReplacement;
        }
        AppendUtf8(bytes, point);
    }
    return bytes;
}

WString FromUtf8(std::string_view bytes) {
    WString units;
    units.reserve(bytes.size());
    while (!bytes.empty()) {
        const Decoded decoded = DecodeUtf8(bytes);
        AppendUtf16(units, decoded.point);
        bytes.remove_prefix(decoded.length);
    }
    return units;
}

}  // namespace KivBase
