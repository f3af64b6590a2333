#include "persistence/Calls.h"

#include <cstdio>
#include <cstring>

namespace KivGenerics::Testing {
namespace {

std::string Hex(std::uint64_t value, int digits) {
    char text[24];
    std::snprintf(text, sizeof text, "%0*llX", digits, static_cast<unsigned long long>(value));
    return text;
}

std::uint64_t FromHex(const std::string& digits) {
    return std::stoull(digits, nullptr, 16);
}

bool IsPlain(char16_t unit) {
    return 0x20 <= unit && unit < 0x7F && unit != u'"' && unit != u'\\';
}

KivBase::WString Unescape(const std::string& quoted) {
    KivBase::WString text;
    for (std::size_t i = 1; i + 1 < quoted.size(); ++i) {
        if (quoted[i] == '\\') {
            text += static_cast<char16_t>(FromHex(quoted.substr(i + 2, 4)));
            i += 5;
        } else {
            text += static_cast<char16_t>(quoted[i]);
        }
    }
    return text;
}

}  // namespace

std::string ShortCall(std::uint16_t value) {
    return "Short " + Hex(value, 4);
}

std::string LongCall(std::uint32_t value) {
    return "Long " + Hex(value, 8);
}

std::string Int64Call(std::uint64_t value) {
    return "Int64 " + Hex(value, 16);
}

std::string DoubleCall(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return "Double " + Hex(bits, 16);
}

std::string GuidCall(const GUID& value) {
    std::string text = "Guid " + Hex(value.Data1, 8) + "-" + Hex(value.Data2, 4) + "-" + Hex(value.Data3, 4) + "-";
    for (const unsigned char byte : value.Data4) {
        text += Hex(byte, 2);
    }
    return text;
}

std::string TextCall(const char16_t* units, std::size_t length) {
    std::string text = "Text \"";
    for (std::size_t i = 0; i < length; ++i) {
        text += IsPlain(units[i]) ? std::string(1, static_cast<char>(units[i])) : "\\u" + Hex(units[i], 4);
    }
    return text + "\"";
}

std::string VariantCall(std::uint16_t type) {
    return "Variant " + Hex(type, 4);
}

std::string BeginCall(std::uint16_t tag) {
    return "Begin " + Hex(tag, 4);
}

Calls operator+(Calls left, const Calls& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Calls Repeat(int times, const Calls& calls) {
    Calls all;
    for (int i = 0; i < times; ++i) {
        all.insert(all.end(), calls.begin(), calls.end());
    }
    return all;
}

void CallCounter::FailAt(int k, std::int32_t code, bool forGood) {
    failAt_ = count_ + k;
    code_ = code;
    forGood_ = forGood;
}

void CallCounter::ThrowAt(int k) {
    throwAt_ = count_ + k;
}

std::int32_t CallCounter::Next() {
    ++count_;
    if (throwAt_ != 0 && count_ == throwAt_) {
        throw HostError();
    }
    const bool fails = failAt_ != 0 && (forGood_ ? count_ >= failAt_ : count_ == failAt_);
    return fails ? code_ : 0;
}

bool CallPlayer::StartsWith(const char* name) const {
    return !IsOver() && calls_[next_].compare(0, std::strlen(name), name) == 0;
}

std::int32_t CallPlayer::Take(const char* name, std::string& rest) {
    if (!StartsWith(name)) {
        return IsOver() ? kScriptIsOver : kOtherCall;
    }
    rest = calls_[next_++].substr(std::strlen(name));
    return 0;
}

std::int32_t CallPlayer::TakeNumber(const char* name, std::uint64_t& number) {
    std::string digits;
    const std::int32_t result = Take(name, digits);
    if (result == 0) {
        number = FromHex(digits);
    }
    return result;
}

std::int32_t CallPlayer::TakeShort(std::uint16_t& value) {
    std::uint64_t number = value;
    const std::int32_t result = TakeNumber("Short ", number);
    value = static_cast<std::uint16_t>(number);
    return result;
}

std::int32_t CallPlayer::TakeLong(std::int32_t& value) {
    std::uint64_t number = static_cast<std::uint32_t>(value);
    const std::int32_t result = TakeNumber("Long ", number);
    value = static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
    return result;
}

std::int32_t CallPlayer::TakeInt64(std::int64_t& value) {
    auto number = static_cast<std::uint64_t>(value);
    const std::int32_t result = TakeNumber("Int64 ", number);
    value = static_cast<std::int64_t>(number);
    return result;
}

std::int32_t CallPlayer::TakeDouble(double& value) {
    std::uint64_t bits = 0;
    const std::int32_t result = TakeNumber("Double ", bits);
    if (result == 0) {
        std::memcpy(&value, &bits, sizeof value);
    }
    return result;
}

std::int32_t CallPlayer::TakeGuid(GUID& value) {
    std::string rest;
    const std::int32_t result = Take("Guid ", rest);
    if (result == 0) {
        value.Data1 = static_cast<std::uint32_t>(FromHex(rest.substr(0, 8)));
        value.Data2 = static_cast<std::uint16_t>(FromHex(rest.substr(9, 4)));
        value.Data3 = static_cast<std::uint16_t>(FromHex(rest.substr(14, 4)));
        for (std::size_t i = 0; i < 8; ++i) {
            value.Data4[i] = static_cast<unsigned char>(FromHex(rest.substr(19 + 2 * i, 2)));
        }
    }
    return result;
}

std::int32_t CallPlayer::TakeText(KivBase::WString& text) {
    std::string quoted;
    const std::int32_t result = Take("Text ", quoted);
    if (result == 0) {
        text.assign(Unescape(quoted));
    }
    return result;
}

std::int32_t CallPlayer::TakeVariant(std::uint16_t& type) {
    std::uint64_t number = type;
    const std::int32_t result = TakeNumber("Variant ", number);
    type = static_cast<std::uint16_t>(number);
    return result;
}

std::int32_t CallPlayer::Enter(std::uint16_t expected, std::uint16_t& tag) {
    if (IsOver() || StartsWith("End")) {
        return 1;
    }
    if (!StartsWith("Begin ")) {
        return kOtherCall;
    }
    const auto found = static_cast<std::uint16_t>(FromHex(calls_[next_].substr(6)));
    if (expected != 0 && found != expected) {
        return 1;
    }
    tag = found;
    ++next_;
    ++depth_;
    return 0;
}

std::int32_t CallPlayer::Leave() {
    if (depth_ == 0) {
        return kOtherCall;
    }
    for (int inner = 0; !IsOver(); ++next_) {
        if (StartsWith("Begin ")) {
            ++inner;
        } else if (StartsWith("End") && inner-- == 0) {
            ++next_;
            --depth_;
            return 0;
        }
    }
    return kScriptIsOver;
}

}  // namespace KivGenerics::Testing
