#include "Recheck.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <set>
#include <sstream>

#include <KivBase/Utf.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Children.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/ToText.h>

#include "Database.h"
#include "Schema.h"

namespace UnicodeExample {

using namespace KivGenerics;

namespace {

/// Every field of a line as text, by the simplest means there are.
using Fields = std::vector<std::string>;

struct RangeLine {
    unsigned long first = 0;
    unsigned long last = 0;
    std::string value;
};

struct Sample {
    long codePoint = 0;
    Fields fields;
};

void ForEachLine(const std::filesystem::path& path, const std::function<void(const std::string&)>& read) {
    std::ifstream stream(path);
    if (!stream) {
        throw DataError("cannot read " + path.string() + " again");
    }
    for (std::string line; std::getline(stream, line);) {
        read(line);
    }
}

std::vector<RangeLine> ReadRangeLines(const std::filesystem::path& path) {
    std::vector<RangeLine> lines;
    ForEachLine(path, [&lines](const std::string& line) {
        RangeLine range;
        char value[128] = "";
        if (std::sscanf(line.c_str(), "%lx..%lx ; %127[^#\r]", &range.first, &range.last, value) != 3) {
            if (std::sscanf(line.c_str(), "%lx ; %127[^#\r]", &range.first, value) != 2) {
                return;
            }
            range.last = range.first;
        }
        range.value = value;
        range.value.erase(range.value.find_last_not_of(' ') + 1);
        lines.push_back(range);
    });
    return lines;
}

std::string FindValue(const std::vector<RangeLine>& lines, long codePoint) {
    const auto wanted = static_cast<unsigned long>(codePoint);
    for (const RangeLine& line : lines) {
        if (line.first <= wanted && wanted <= line.last) {
            return line.value;
        }
    }
    return "";
}

double Divide(const std::string& text) {
    double numerator = 0;
    double denominator = 1;
    std::sscanf(text.c_str(), "%lf/%lf", &numerator, &denominator);
    return numerator / denominator;
}

/// UnicodeData.txt read for samples and totals: every 89th line, the first 128, and the middle and end of every range.
struct Lines {
    explicit Lines(const std::filesystem::path& path) {
        ForEachLine(path, [this](const std::string& line) { Take(line); });
    }

    void Take(const std::string& line);

    std::vector<Sample> samples;
    std::vector<long> unassigned;  ///< the ends of the first hundred gaps
    std::set<double> numericValues;
    long codePoints = 0;
    long lines = 0;
    long previous = -1;
};

void Lines::Take(const std::string& line) {
    Fields fields;
    std::istringstream stream(line.substr(0, line.find('\r')));
    for (std::string field; std::getline(stream, field, ';');) {
        fields.push_back(field);
    }
    fields.resize(15);
    const long codePoint = std::strtol(fields[0].c_str(), nullptr, 16);
    const bool closes = fields[1].find(", Last>") != std::string::npos;
    if (closes || fields[1].find(", First>") != std::string::npos) {
        fields[1] = fields[1].substr(0, fields[1].find(", ")) + ">";
    }
    if (closes) {
        samples.push_back({(previous + codePoint) / 2, fields});
        codePoints += codePoint - previous;
    } else {
        ++codePoints;
        if (codePoint > previous + 1 && unassigned.size() < 100) {
            unassigned.push_back(codePoint - 1);
        }
    }
    if (lines % 89 == 0 || lines < 128 || closes) {
        samples.push_back({codePoint, fields});
    }
    ++lines;
    if (!fields[8].empty()) {
        numericValues.insert(Divide(fields[8]));
    }
    previous = codePoint;
}

std::string FormatCodePoint(long codePoint) {
    char text[16];
    std::snprintf(text, sizeof text, "%04lX", static_cast<unsigned long>(codePoint));
    return text;
}

/// Asks the tree by key and notes what differs from what the files say.
class Comparison {
public:
    Comparison(const Tree& tree, Recheck& result) : tree_(tree), result_(result) {}

    void CheckSample(const Sample& sample, const std::string& age, const std::string& script, const std::string& block);
    void CheckUnassigned(long codePoint);
    void CheckTotals(const Lines& lines, const std::vector<RangeLine>& scripts);

private:
    using Path = std::initializer_list<long>;

    Node* FindNode(Path path) const;
    template <class T>
    T* Find(Path path) const {
        return node_cast<T>(FindNode(path));
    }
    std::string FindText(Path path) const;
    std::string FindMapping(long codePoint, int field) const;
    std::string FindNumericValue(long codePoint) const;
    std::string FindDecomposition(long codePoint) const;
    std::string FindAge(long codePoint) const;
    std::string FindScripts(long codePoint) const;
    std::string FindBlock(long codePoint) const;
    void CheckCategory(const Sample& sample, const std::string& where);
    void Expect(const std::string& where, const std::string& found, const std::string& expected);

    const Tree& tree_;
    Recheck& result_;
};

void Comparison::Expect(const std::string& where, const std::string& found, const std::string& expected) {
    ++result_.values;
    if (found != expected) {
        result_.differences.push_back(where + ": the tree says \"" + found + "\", the file \"" + expected + "\"");
    }
}

Node* Comparison::FindNode(Path path) const {
    std::string key;
    for (const long index : path) {
        key += std::to_string(index) + ":";
    }
    return tree_.FindNodeByKey(KivBase::FromUtf8(key));
}

std::string Comparison::FindText(Path path) const {
    const auto* const text = Find<String>(path);
    return text != nullptr ? KivBase::ToUtf8(text->Get(), text->GetLength()) : "";
}

std::string Comparison::FindMapping(long codePoint, int field) const {
    const auto* const number = Find<Integer>({PartCodePoints, codePoint, field});
    return number != nullptr ? FormatCodePoint(number->Get()) : "";
}

std::string Comparison::FindNumericValue(long codePoint) const {
    const auto* const value = Find<Double>({PartCodePoints, codePoint, FieldNumericValue});
    return value != nullptr ? ToText(value->Get()) : "";
}

/// The decomposition as the file writes it: "<font> 0041 030A".
std::string Comparison::FindDecomposition(long codePoint) const {
    std::string text = FindText({PartCodePoints, codePoint, FieldDecompositionKind});
    if (!text.empty()) {
        text = "<" + text + ">";
    }
    for (long i = 0; FindNode({PartCodePoints, codePoint, FieldDecomposition, i}) != nullptr; ++i) {
        const auto* const part = Find<Integer>({PartCodePoints, codePoint, FieldDecomposition, i});
        text += (text.empty() ? "" : " ") + (part != nullptr ? FormatCodePoint(part->Get()) : "?");
    }
    return text;
}

std::string Comparison::FindAge(long codePoint) const {
    const auto* const number = Find<Integer>({PartCodePoints, codePoint, FieldAge});
    const int age = number != nullptr ? number->Get() : 0;
    return std::to_string(age / 100) + "." + std::to_string(age % 100);
}

/// The name of the one script that has the code point; those of all that have it, should there be more.
std::string Comparison::FindScripts(long codePoint) const {
    std::string names;
    for (Node* script : Children(FindNode({PartScripts}))) {
        const auto* const members = Find<IntegerSet>({PartScripts, script->GetIndex(), GroupMembers});
        if (members != nullptr && members->Exists(static_cast<std::int32_t>(codePoint))) {
            names += FindText({PartScripts, script->GetIndex(), GroupName});
        }
    }
    return names;
}

std::string Comparison::FindBlock(long codePoint) const {
    for (Node* block : Children(FindNode({PartBlocks}))) {
        const long i = block->GetIndex();
        const auto* const first = Find<Integer>({PartBlocks, i, BlockFirst});
        const auto* const last = Find<Integer>({PartBlocks, i, BlockLast});
        if (first != nullptr && last != nullptr && first->Get() <= codePoint && codePoint <= last->Get()) {
            return FindText({PartBlocks, i, BlockName});
        }
    }
    return "";
}

void Comparison::CheckCategory(const Sample& sample, const std::string& where) {
    const auto* const category = Find<Integer>({PartCodePoints, sample.codePoint, FieldCategory});
    const long number = category != nullptr ? category->Get() : -1;
    Expect(where + " category", FindText({PartCategories, number, GroupName}), sample.fields[2]);
    const auto* const members = Find<IntegerSet>({PartCategories, number, GroupMembers});
    const bool isMember = members != nullptr && members->Exists(static_cast<std::int32_t>(sample.codePoint));
    Expect(where + " in the set of its category", ToText(isMember), "true");
}

void Comparison::CheckSample(const Sample& sample, const std::string& age, const std::string& script,
                             const std::string& block) {
    ++result_.codePoints;
    const long codePoint = sample.codePoint;
    const Fields& file = sample.fields;
    const std::string where = "U+" + FormatCodePoint(codePoint);
    const auto* const combiningClass = Find<Integer>({PartCodePoints, codePoint, FieldCombiningClass});
    const auto* const mirrored = Find<Boolean>({PartCodePoints, codePoint, FieldMirrored});

    Expect(where + " name", FindText({PartCodePoints, codePoint, FieldName}), file[1]);
    CheckCategory(sample, where);
    Expect(where + " combining class", combiningClass != nullptr ? ToText(combiningClass->Get()) : "0", file[3]);
    Expect(where + " decomposition", FindDecomposition(codePoint), file[5]);
    Expect(where + " numeric value", FindNumericValue(codePoint), file[8].empty() ? "" : ToText(Divide(file[8])));
    Expect(where + " mirrored", mirrored != nullptr && mirrored->Get() ? "Y" : "N", file[9]);
    Expect(where + " uppercase", FindMapping(codePoint, FieldUppercase), file[12]);
    Expect(where + " lowercase", FindMapping(codePoint, FieldLowercase), file[13]);
    Expect(where + " titlecase", FindMapping(codePoint, FieldTitlecase), file[14]);
    Expect(where + " age", FindAge(codePoint), age);
    Expect(where + " script", FindScripts(codePoint), script);
    Expect(where + " block", FindBlock(codePoint), block);
}

void Comparison::CheckUnassigned(long codePoint) {
    Expect("U+" + FormatCodePoint(codePoint), ToText(FindNode({PartCodePoints, codePoint})), "null");
}

void Comparison::CheckTotals(const Lines& lines, const std::vector<RangeLine>& scripts) {
    auto* const codePoints = Find<Map>({PartCodePoints});
    const auto* const count = Find<Integer64>({PartTotals, TotalsCodePoints});
    const std::string expected = std::to_string(lines.codePoints);
    Expect("number of code points",
           codePoints != nullptr ? std::to_string(codePoints->GetSize(TemporalityTemporary)) : "", expected);
    Expect("total of code points", count != nullptr ? ToText(count->Get()) : "", expected);

    std::set<std::string> expectedNames;
    for (const RangeLine& line : scripts) {
        expectedNames.insert(line.value);
    }
    std::set<std::string> names;
    if (const auto* const set = Find<StringSet>({PartTotals, TotalsScriptNames})) {
        for (const KivBase::WString& name : set->Get()) {
            names.insert(KivBase::ToUtf8(name));
        }
    }
    Expect("the script names are those of the file", ToText(names == expectedNames), "true");

    DoubleSet::Elements values;
    if (const auto* const set = Find<DoubleSet>({PartTotals, TotalsNumericValues})) {
        set->Get(values);
    }
    const std::set<double> found(values.begin(), values.end());
    Expect("the numeric values are those of the file", ToText(found == lines.numericValues), "true");
}

}  // namespace

Recheck CheckAgainstFiles(const Tree& tree, const std::filesystem::path& directory) {
    const Lines lines(directory / "UnicodeData.txt");
    const std::vector<RangeLine> ages = ReadRangeLines(directory / "DerivedAge.txt");
    const std::vector<RangeLine> scripts = ReadRangeLines(directory / "Scripts.txt");
    const std::vector<RangeLine> blocks = ReadRangeLines(directory / "Blocks.txt");
    Recheck result;
    Comparison comparison(tree, result);
    for (const Sample& sample : lines.samples) {
        comparison.CheckSample(sample, FindValue(ages, sample.codePoint), FindValue(scripts, sample.codePoint),
                               FindValue(blocks, sample.codePoint));
    }
    for (const long codePoint : lines.unassigned) {
        comparison.CheckUnassigned(codePoint);
    }
    comparison.CheckTotals(lines, scripts);
    return result;
}

}  // namespace UnicodeExample
