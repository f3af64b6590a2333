#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace KivInspect {

/// Appends UTF-8 as a JSON string, quotes included; control characters, quotes and backslashes are escaped. The bytes must be
/// well-formed UTF-8.
void AppendJsonString(std::string& text, std::string_view utf8);

/// Appends UTF-16 as a JSON string in UTF-8. It must have no surrogate without a partner.
void AppendJsonString(std::string& text, const char16_t* units, std::size_t count);

}  // namespace KivInspect
