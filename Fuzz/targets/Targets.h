#pragma once

#include <cstddef>
#include <cstdint>

namespace KivFuzz {

// Each of these takes any bytes whatever, uses the library with them, and checks what must hold then. A promise that is broken
// throws std::logic_error with a sentence about it.

/// Loads from a host's stream that makes its values of the bytes as they come.
void RunStream(const std::uint8_t* bytes, std::size_t count);
/// Loads the bytes as a saved file, as they are and with their checksums made right.
void RunFile(const std::uint8_t* bytes, std::size_t count);
/// Loads a file whose items are the bytes, and whose checksums are right.
void RunItems(const std::uint8_t* bytes, std::size_t count);
/// Loads through a host's archive that answers any result, any tag and any value to any call.
void RunArchive(const std::uint8_t* bytes, std::size_t count);
/// Builds a tree, saves it, loads that, and saves it again.
void RunRoundTrip(const std::uint8_t* bytes, std::size_t count);
/// Calls the streams, and the library's archives over them, in any order.
void RunCalls(const std::uint8_t* bytes, std::size_t count);
/// Saves and loads with a host whose calls, memory or paths fail.
void RunFaults(const std::uint8_t* bytes, std::size_t count);
/// Looks for a node by any key.
void RunKey(const std::uint8_t* bytes, std::size_t count);

/// A target by the name that its program, its corpus and its regressions have.
struct Target {
    const char* name;
    void (*run)(const std::uint8_t* bytes, std::size_t count);
};

inline constexpr Target kTargets[] = {
    {"stream", RunStream},       {"file", RunFile},   {"items", RunItems}, {"archive", RunArchive},
    {"roundtrip", RunRoundTrip}, {"calls", RunCalls}, {"key", RunKey},     {"faults", RunFaults},
};

}  // namespace KivFuzz
