#include "NamesFile.h"

#include <fstream>
#include <vector>

#include "Schema.h"

namespace UnicodeExample {
namespace {

struct TagNames {
    KivGenerics::SemanticTag tag;
    const char* name;
    std::vector<const char*> indexes;  // from 0 up
};

const std::vector<TagNames>& AllNames() {
    static const std::vector<TagNames> names = {
        {TagRoot, "unicode", {"codepoints", "categories", "scripts", "blocks", "files", "totals", "initials", "notes"}},
        {TagGroups, "groups", {}},
        {TagGroup, "group", {"name", "members", "count"}},
        {TagBlock, "block", {"name", "first", "last", "assigned"}},
        {TagFile, "file", {"name", "id", "bytes", "lines"}},
        {TagNotes, "notes", {"directory", "purpose"}},
        {TagCodePoints, "codepoints", {}},
        {TagTotals, "totals", {"version", "codepoints", "textbytes", "scriptnames", "numericvalues"}},
        {TagFiles, "files", {}},
        {TagCharacter,
         "character",
         {"name", "category", "age", "combining", "decomposition", "decompositionkind", "numericvalue", "mirrored",
          "uppercase", "lowercase", "titlecase", "note"}},
        {TagInRange, "inrange", {"name", "category", "age"}},
    };
    return names;
}

/// One tag and its indexes; all names here are plain words, which JSON takes as they are.
void WriteTag(std::ofstream& out, const TagNames& names, const char* separator) {
    out << separator << "    \"" << names.tag << "\": {\n      \"name\": \"" << names.name << '"';
    const char* begin = ",\n      \"indexes\": {\n";
    int index = 0;
    for (const char* const name : names.indexes) {
        out << begin << "        \"" << index++ << "\": \"" << name << '"';
        begin = ",\n";
    }
    out << (names.indexes.empty() ? "\n    }" : "\n      }\n    }");
}

}  // namespace

void WriteNamesBeside(const std::filesystem::path& file) {
    std::filesystem::path beside = file;
    beside += ".names.json";
    std::ofstream out;
    out.exceptions(std::ios::failbit | std::ios::badbit);
    out.open(beside, std::ios::binary);
    out << "{\n  \"names\": 1,\n  \"tags\": {";
    const char* separator = "\n";
    for (const TagNames& names : AllNames()) {
        WriteTag(out, names, separator);
        separator = ",\n";
    }
    out << "\n  }\n}\n";
    out.close();
}

}  // namespace UnicodeExample
