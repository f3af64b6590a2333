#pragma once

#include <cstdint>

#include <KivCOMShared/Variant.h>

namespace KivStorage {

/// A variant's type and value in 10 bytes; false, nothing put, when it holds something else than a plain number.
bool PutVariantBytes(std::uint8_t* to, const VARIANT* value) noexcept;

/// The same back; false, the variant untouched, for bytes that PutVariantBytes does not make.
bool GetVariantBytes(const std::uint8_t* from, VARIANT* value) noexcept;

}  // namespace KivStorage
