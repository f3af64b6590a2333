#pragma once

namespace KivGenerics {

/// Throws Exception with one of the library's texts.
[[noreturn]] void Raise(const char16_t* text);

}  // namespace KivGenerics
