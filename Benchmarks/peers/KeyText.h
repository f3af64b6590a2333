#pragma once

#include <string_view>

namespace Peers {

/// A map's key as decimal digits, for the formats whose keys are texts. Made once for each key; stays valid.
std::string_view GetKeyText(int key);

}  // namespace Peers
