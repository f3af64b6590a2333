#pragma once

#include <filesystem>

namespace UnicodeExample {

/// Writes the names of the schema's tags and indexes beside a saved tree, as "FILE.names.json": a dictionary that tools for
/// people show instead of numbers, and take in keys. Throws std::ios_base::failure.
void WriteNamesBeside(const std::filesystem::path& file);

}  // namespace UnicodeExample
