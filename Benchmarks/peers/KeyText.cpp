#include "KeyText.h"

#include <unordered_map>

namespace Peers {

std::string_view MakeRareKeyText(int key) {
    static std::unordered_map<int, std::string> made;
    const auto found = made.find(key);
    return found != made.end() ? found->second : made.emplace(key, std::to_string(key)).first->second;
}

}  // namespace Peers
