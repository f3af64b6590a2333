#pragma once

#include "targets/Targets.h"

namespace KivFuzz {

// What reads for the tools: the same promises as those of Targets.h.

/// Reads a tree in the text form.
void RunText(const std::uint8_t* bytes, std::size_t count);
/// Reads a tree in the JSON form.
void RunJson(const std::uint8_t* bytes, std::size_t count);
/// Makes a tree of a JSON document, and reads the document as a dictionary of names.
void RunImport(const std::uint8_t* bytes, std::size_t count);
/// Looks into a saved file without loading it, as it is and with its checksums made right, and salvages it.
void RunScan(const std::uint8_t* bytes, std::size_t count);
/// Searches a tree with the first line as a regular expression, the second as a pattern of keys, the third as a key.
void RunQuery(const std::uint8_t* bytes, std::size_t count);

inline constexpr Target kInspectTargets[] = {
    {"text", RunText}, {"json", RunJson}, {"import", RunImport}, {"scan", RunScan}, {"query", RunQuery},
};

}  // namespace KivFuzz
