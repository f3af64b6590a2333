#pragma once

#include <cstdint>

namespace KivGenerics {

// The results of saving and loading: 0 or above is no failure. A host's archive or stream may answer any other negative
// number; it is passed on unchanged.
inline constexpr std::int32_t ResultSuccess = 0;
inline constexpr std::int32_t ResultNoObject = 1;  ///< no object, or another object, follows
/// The root is not a map; Node::WriteToArchive.
inline constexpr std::int32_t ResultNotImplemented = static_cast<std::int32_t>(0x80004001);
/// A null place for an object's tag; the library's archives over streams.
inline constexpr std::int32_t ResultNullPointer = static_cast<std::int32_t>(0x80004003);
/// No stream, or a value read while an object's tag waits; the library's archives over streams.
inline constexpr std::int32_t ResultUnexpected = static_cast<std::int32_t>(0x8000FFFF);
inline constexpr std::int32_t ResultOutOfMemory = static_cast<std::int32_t>(0x8007000E);
/// Another object than the expected one, or none; loading a tree or a set.
inline constexpr std::int32_t ArchiveTypeMismatch = static_cast<std::int32_t>(0x8004119A);
/// A text of more than 256,000 units; loading from a stream.
inline constexpr std::int32_t ArchiveStringTooLong = static_cast<std::int32_t>(0x80044AEA);
/// Composites more than 1,000 levels deep; loading.
inline constexpr std::int32_t ArchiveNestingTooDeep = static_cast<std::int32_t>(0x800703E9);

/// The deepest level of composites that loading accepts; a tree's root is level 1.
inline constexpr int MaxLoadNesting = 1000;
/// The longest text, in 16-bit units, that loading from a stream accepts.
inline constexpr std::uint32_t MaxStringUnits = 256000;

}  // namespace KivGenerics
