#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <KivBase/Guid.h>
#include <KivBase/WString.h>

namespace KivFuzz {

/// The bytes of one run, taken from the front. Behind their end come zeros, for ever: whoever loops asks IsEmpty.
class Input {
public:
    Input(const std::uint8_t* bytes, std::size_t count) noexcept : next_(bytes), left_(count) {}

    bool IsEmpty() const noexcept { return left_ == 0; }
    /// Whether as little is left as of the short inputs, of which there are millions: what takes a hundred times as long as
    /// anything else is too long for them.
    bool IsShort() const noexcept { return left_ <= 128; }
    std::size_t GetCount() const noexcept { return left_; }
    const std::uint8_t* GetBytes() const noexcept { return next_; }

    std::uint8_t TakeByte() noexcept {
        if (left_ == 0) {
            return 0;
        }
        --left_;
        return *next_++;
    }

    /// A number of as many bytes, the least significant first.
    std::uint64_t TakeNumber(int bytes) noexcept {
        std::uint64_t number = 0;
        for (int i = 0; i < bytes; ++i) {
            number |= std::uint64_t{TakeByte()} << (8 * i);
        }
        return number;
    }
    std::uint16_t TakeShort() noexcept { return static_cast<std::uint16_t>(TakeNumber(2)); }
    std::int32_t TakeLong() noexcept { return static_cast<std::int32_t>(static_cast<std::uint32_t>(TakeNumber(4))); }
    std::int64_t TakeInt64() noexcept { return static_cast<std::int64_t>(TakeNumber(8)); }

    double TakeDouble() noexcept {
        const std::uint64_t bits = TakeNumber(8);
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }

    GUID TakeId() noexcept {
        GUID id{};
        id.Data1 = static_cast<std::uint32_t>(TakeNumber(4));
        id.Data2 = TakeShort();
        id.Data3 = TakeShort();
        for (unsigned char& byte : id.Data4) {
            byte = TakeByte();
        }
        return id;
    }

    /// At most as many units, no more than there are bytes for.
    KivBase::WString TakeText(std::size_t units) {
        KivBase::WString text;
        for (; units > 0 && left_ > 0; --units) {
            text += static_cast<char16_t>(TakeShort());
        }
        return text;
    }

private:
    const std::uint8_t* next_;
    std::size_t left_;
};

}  // namespace KivFuzz
