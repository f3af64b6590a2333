#include "Database.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string_view>

namespace UnicodeExample {

const char* const CategoryNames[30] = {"Lu", "Ll", "Lt", "Lm", "Lo", "Mn", "Mc", "Me", "Nd", "Nl",
                                       "No", "Pc", "Pd", "Ps", "Pe", "Pi", "Pf", "Po", "Sm", "Sc",
                                       "Sk", "So", "Zs", "Zl", "Zp", "Cc", "Cf", "Cs", "Co", "Cn"};

namespace {

std::string_view Trim(std::string_view text) {
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> fields;
    for (std::size_t at = 0;;) {
        const std::size_t end = text.find(separator, at);
        fields.push_back(Trim(text.substr(at, end - at)));
        if (end == std::string_view::npos) {
            return fields;
        }
        at = end + 1;
    }
}

/// One text file, held whole while it is read; its errors name the line.
class TextFile {
public:
    TextFile(const std::filesystem::path& directory, const char* name) : path_(directory / name) {
        std::ifstream stream(path_, std::ios::binary);
        if (!stream) {
            throw DataError("cannot read " + path_.string() +
                            ": install the package unicode-data, or name the directory that holds its files");
        }
        text_.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
        if (stream.bad() || text_.empty()) {
            throw DataError(path_.string() + " is empty or cannot be read to its end: install unicode-data again");
        }
        source_.name = name;
        source_.bytes = static_cast<std::int64_t>(text_.size());
        source_.id = MakeId();
    }

    const SourceFile& GetSource() const { return source_; }

    /// Calls `read` with every line, without its comment, that is not empty then.
    void ForEachLine(const std::function<void(std::string_view)>& read) {
        std::string_view rest = text_;
        while (!rest.empty()) {
            ++source_.lines;
            const std::size_t end = rest.find('\n');
            const std::string_view line = rest.substr(0, end);
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
            const std::string_view content = Trim(line.substr(0, line.find('#')));
            if (!content.empty()) {
                read(content);
            }
        }
    }

    /// The version in the first line, "# Blocks-15.0.0.txt".
    std::string FindVersion() const {
        const std::string_view line = std::string_view(text_).substr(0, text_.find('\n'));
        const std::size_t start = line.find('-');
        const std::size_t end = line.find(".txt");
        return start < end && end != std::string_view::npos ? std::string(line.substr(start + 1, end - start - 1))
                                                            : std::string("of an unknown version");
    }

    [[noreturn]] void Fail(const std::string& what) const {
        throw DataError(path_.string() + ", line " + std::to_string(source_.lines) + ": " + what);
    }

    std::int32_t ParseNumber(std::string_view text, int base) const {
        std::int32_t value = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), value, base);
        if (result.ec != std::errc() || result.ptr != text.data() + text.size()) {
            Fail("\"" + std::string(text) + "\" is not a number");
        }
        return value;
    }

    std::uint32_t ParseCodePoint(std::string_view text) const {
        const std::int32_t value = ParseNumber(text, 16);
        if (value < 0 || static_cast<std::uint32_t>(value) >= CodePointLimit) {
            Fail("\"" + std::string(text) + "\" is not a code point");
        }
        return static_cast<std::uint32_t>(value);
    }

    /// "0041" or "0041..005A".
    void ParseRange(std::string_view text, std::uint32_t& first, std::uint32_t& last) const {
        const std::size_t dots = text.find("..");
        first = ParseCodePoint(text.substr(0, dots));
        last = dots == std::string_view::npos ? first : ParseCodePoint(text.substr(dots + 2));
        if (last < first) {
            Fail("the range ends before it begins");
        }
    }

private:
    // Two runs of FNV-1a with different starts: the same bytes give the same id on every machine.
    GUID MakeId() const {
        std::uint64_t halves[2] = {0xCBF29CE484222325, 0x84222325CBF29CE4};
        for (const char c : text_) {
            for (std::uint64_t& half : halves) {
                half = (half ^ static_cast<unsigned char>(c)) * 0x100000001B3;
            }
        }
        GUID id{};
        id.Data1 = static_cast<std::uint32_t>(halves[0] >> 32);
        id.Data2 = static_cast<std::uint16_t>(halves[0] >> 16);
        id.Data3 = static_cast<std::uint16_t>(halves[0]);
        for (int i = 0; i < 8; ++i) {
            id.Data4[i] = static_cast<std::uint8_t>(halves[1] >> (56 - 8 * i));
        }
        return id;
    }

    std::filesystem::path path_;
    std::string text_;
    SourceFile source_;
};

int FindCategory(const TextFile& file, std::string_view name) {
    const auto* const found = std::find(std::begin(CategoryNames), std::end(CategoryNames), name);
    if (found == std::end(CategoryNames)) {
        file.Fail("\"" + std::string(name) + "\" is not a general category");
    }
    return static_cast<int>(found - std::begin(CategoryNames));
}

/// "7", "-1/2" or nothing.
std::optional<double> ParseNumericValue(const TextFile& file, std::string_view text) {
    if (text.empty()) {
        return std::nullopt;
    }
    const auto parse = [&file](std::string_view digits) {
        std::int64_t value = 0;
        const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (result.ec != std::errc() || result.ptr != digits.data() + digits.size()) {
            file.Fail("\"" + std::string(digits) + "\" is not a number");
        }
        return static_cast<double>(value);
    };
    const std::size_t slash = text.find('/');
    return slash == std::string_view::npos ? parse(text) : parse(text.substr(0, slash)) / parse(text.substr(slash + 1));
}

/// "<font> 0041" or "0041 0300" or nothing.
void ParseDecomposition(const TextFile& file, std::string_view text, Entry& entry) {
    if (text.empty()) {
        return;
    }
    if (text.front() == '<') {
        const std::size_t end = text.find('>');
        entry.decompositionKind = text.substr(1, end - 1);
        text = end == std::string_view::npos ? std::string_view() : Trim(text.substr(end + 1));
    }
    for (const std::string_view code : Split(text, ' ')) {
        entry.decomposition.push_back(static_cast<std::int32_t>(file.ParseCodePoint(code)));
    }
}

std::optional<std::int32_t> ParseMapping(const TextFile& file, std::string_view text) {
    return text.empty() ? std::nullopt : std::optional<std::int32_t>(file.ParseCodePoint(text));
}

Entry ParseEntry(const TextFile& file, std::string_view line) {
    const std::vector<std::string_view> fields = Split(line, ';');
    if (fields.size() != 15) {
        file.Fail("expected 15 fields, found " + std::to_string(fields.size()));
    }
    Entry entry;
    entry.first = entry.last = file.ParseCodePoint(fields[0]);
    entry.name = fields[1];
    entry.category = FindCategory(file, fields[2]);
    entry.combiningClass = file.ParseNumber(fields[3], 10);
    ParseDecomposition(file, fields[5], entry);
    entry.numericValue = ParseNumericValue(file, fields[8]);
    entry.mirrored = fields[9] == "Y";
    entry.uppercase = ParseMapping(file, fields[12]);
    entry.lowercase = ParseMapping(file, fields[13]);
    entry.titlecase = ParseMapping(file, fields[14]);
    return entry;
}

/// A pair "<CJK Ideograph, First>" and "<CJK Ideograph, Last>" becomes one entry named "<CJK Ideograph>".
void ReadEntries(TextFile& file, Database& database) {
    constexpr std::string_view firstMark = ", First>";
    constexpr std::string_view lastMark = ", Last>";
    const auto endsWith = [](const std::string& name, std::string_view mark) {
        return name.size() > mark.size() && name.compare(name.size() - mark.size(), mark.size(), mark) == 0;
    };
    bool isOpen = false;
    file.ForEachLine([&](std::string_view line) {
        Entry entry = ParseEntry(file, line);
        if (endsWith(entry.name, lastMark) != isOpen) {
            file.Fail(isOpen ? "a range begins above that does not end here" : "a range ends here that does not begin");
        }
        if (isOpen) {
            database.entries.back().last = entry.first;
            isOpen = false;
            return;
        }
        if (!database.entries.empty() && entry.first <= database.entries.back().last) {
            file.Fail("the code points do not ascend");
        }
        if (endsWith(entry.name, firstMark)) {
            isOpen = entry.isRange = true;
            entry.name.replace(entry.name.size() - firstMark.size(), firstMark.size(), ">");
        }
        database.entries.push_back(std::move(entry));
    });
    if (isOpen) {
        file.Fail("the last range does not end");
    }
}

/// Files of lines "range; value": calls `read` with both.
void ReadRanges(TextFile& file, const std::function<void(std::uint32_t, std::uint32_t, std::string_view)>& read) {
    file.ForEachLine([&](std::string_view line) {
        const std::vector<std::string_view> fields = Split(line, ';');
        if (fields.size() != 2) {
            file.Fail("expected 2 fields, found " + std::to_string(fields.size()));
        }
        std::uint32_t first = 0;
        std::uint32_t last = 0;
        file.ParseRange(fields[0], first, last);
        read(first, last, fields[1]);
    });
}

void ReadScripts(TextFile& file, Database& database) {
    std::map<std::string, std::int16_t, std::less<>> numbers;
    std::vector<std::pair<Block, const std::string*>> ranges;
    ReadRanges(file, [&](std::uint32_t first, std::uint32_t last, std::string_view name) {
        const auto entry = numbers.emplace(name, std::int16_t{0}).first;
        ranges.push_back({Block{first, last, {}}, &entry->first});
    });
    for (auto& [name, number] : numbers) {
        number = static_cast<std::int16_t>(database.scripts.size());
        database.scripts.push_back(name);
    }
    database.scriptOf.assign(CodePointLimit, -1);
    for (const auto& [range, name] : ranges) {
        std::fill(database.scriptOf.begin() + range.first, database.scriptOf.begin() + range.last + 1,
                  numbers.find(*name)->second);
    }
}

void ReadAges(TextFile& file, Database& database) {
    database.ageOf.assign(CodePointLimit, 0);
    ReadRanges(file, [&](std::uint32_t first, std::uint32_t last, std::string_view version) {
        const std::size_t dot = version.find('.');
        if (dot == std::string_view::npos) {
            file.Fail("\"" + std::string(version) + "\" is not a version");
        }
        const int age =
            100 * file.ParseNumber(version.substr(0, dot), 10) + file.ParseNumber(version.substr(dot + 1), 10);
        std::fill(database.ageOf.begin() + first, database.ageOf.begin() + last + 1, static_cast<std::int16_t>(age));
    });
}

}  // namespace

Database ReadDatabase(const std::filesystem::path& directory) {
    if (!std::filesystem::is_directory(directory)) {
        throw DataError(
            directory.string() +
            " is not a directory: install the package unicode-data, or name the directory that holds its files");
    }
    Database database;
    database.directory = directory;
    TextFile unicodeData(directory, "UnicodeData.txt");
    ReadEntries(unicodeData, database);
    TextFile blocks(directory, "Blocks.txt");
    database.version = blocks.FindVersion();
    ReadRanges(blocks, [&](std::uint32_t first, std::uint32_t last, std::string_view name) {
        database.blocks.push_back({first, last, std::string(name)});
    });
    TextFile scripts(directory, "Scripts.txt");
    ReadScripts(scripts, database);
    TextFile ages(directory, "DerivedAge.txt");
    ReadAges(ages, database);
    database.files = {unicodeData.GetSource(), blocks.GetSource(), scripts.GetSource(), ages.GetSource()};
    return database;
}

}  // namespace UnicodeExample
