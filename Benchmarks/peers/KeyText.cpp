#include "KeyText.h"

#include <map>
#include <string>
#include <vector>

namespace Peers {
namespace {

constexpr int kCommonKeys = 1000;

std::vector<std::string> MakeCommonKeys() {
    std::vector<std::string> texts;
    for (int key = 0; key < kCommonKeys; ++key) {
        texts.push_back(std::to_string(key));
    }
    return texts;
}

}  // namespace

std::string_view GetKeyText(int key) {
    static const std::vector<std::string> common = MakeCommonKeys();
    if (key < kCommonKeys) {
        return common[static_cast<std::size_t>(key)];
    }
    static std::map<int, std::string> rare;
    const auto found = rare.try_emplace(key, std::to_string(key));
    return found.first->second;
}

}  // namespace Peers
