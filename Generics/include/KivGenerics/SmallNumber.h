#pragma once

#include <cstdint>

namespace KivGenerics {

/// A signed number of 8 bits.
///
/// A store through std::int8_t, a kind of char, might change any object for all the compiler knows, which then has to read
/// everything again. This one is of a type of its own.
class SmallNumber {
public:
    constexpr SmallNumber(int value) noexcept : byte_(static_cast<Byte>(static_cast<std::int8_t>(value))) {}
    constexpr operator int() const noexcept { return static_cast<std::int8_t>(byte_); }

private:
    enum class Byte : std::int8_t {};

    Byte byte_;
};

}  // namespace KivGenerics
