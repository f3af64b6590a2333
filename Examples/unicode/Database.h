#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <KivBase/Guid.h>

namespace UnicodeExample {

/// What is wrong with the data or the place it was looked for, and what to do.
class DataError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

constexpr std::uint32_t CodePointLimit = 0x110000;

/// The general categories in the order of their numbers.
extern const char* const CategoryNames[30];

/// A line of UnicodeData.txt, or the two lines that stand for a range.
struct Entry {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    bool isRange = false;
    std::string name;
    int category = 0;
    int combiningClass = 0;
    std::string decompositionKind;
    std::vector<std::int32_t> decomposition;
    std::optional<double> numericValue;
    bool mirrored = false;
    std::optional<std::int32_t> uppercase;
    std::optional<std::int32_t> lowercase;
    std::optional<std::int32_t> titlecase;
};

struct Block {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    std::string name;
};

struct SourceFile {
    std::string name;
    GUID id{};
    std::int64_t bytes = 0;
    std::int32_t lines = 0;
};

/// The four text files, read.
struct Database {
    std::string version;
    std::vector<Entry> entries;
    std::vector<Block> blocks;
    std::vector<std::string> scripts;        ///< in alphabetical order
    std::vector<std::int16_t> scriptOf;      ///< by code point: an index of `scripts`, or -1
    std::vector<std::int16_t> ageOf;         ///< by code point: 100 * major + minor, or 0
    std::vector<SourceFile> files;
    std::filesystem::path directory;
};

/// Reads UnicodeData.txt, Blocks.txt, Scripts.txt and DerivedAge.txt. Throws DataError.
Database ReadDatabase(const std::filesystem::path& directory);

}  // namespace UnicodeExample
