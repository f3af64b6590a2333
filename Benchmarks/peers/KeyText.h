#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace Peers {

/// A small map's key as decimal digits, for the formats whose keys are texts: made by the compiler, as a host would have
/// its names.
struct KeyDigits {
    std::array<char, 3> digits{};
    unsigned char length = 0;
};

inline constexpr int kReadyKeys = 1000;

constexpr std::array<KeyDigits, kReadyKeys> MakeKeyDigits() {
    std::array<KeyDigits, kReadyKeys> keys{};
    for (std::size_t key = 0; key < kReadyKeys; ++key) {
        KeyDigits& made = keys[key];
        for (std::size_t unit = key < 10 ? 1 : key < 100 ? 10 : 100; unit > 0; unit /= 10) {
            made.digits[made.length++] = static_cast<char>('0' + key / unit % 10);
        }
    }
    return keys;
}

inline constexpr std::array<KeyDigits, kReadyKeys> kKeyDigits = MakeKeyDigits();

/// The same for any other key; stays valid.
std::string_view MakeRareKeyText(int key);

inline std::string_view GetKeyText(int key) {
    if (key < kReadyKeys) {
        const KeyDigits& ready = kKeyDigits[static_cast<std::size_t>(key)];
        return {ready.digits.data(), ready.length};
    }
    return MakeRareKeyText(key);
}

}  // namespace Peers
