#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <KivBase/Guid.h>
#include <KivGenerics/Node.h>
#include <KivInspect/Names.h>

namespace KivInspect {

// Values as text. What is appended is the same in every locale, and reads back as exactly the same value.

void AppendValue(std::string& text, std::int32_t value);
void AppendValue(std::string& text, std::int64_t value);
/// "true" or "false".
void AppendValue(std::string& text, bool value);
/// The shortest digits that read back as the same number; "inf", "-inf", "-0", "nan", and for every NaN but the usual one
/// "nan:" and the 16 hexadecimal digits of its bits.
void AppendValue(std::string& text, double value);
/// {xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}, in lower-case hexadecimal digits.
void AppendValue(std::string& text, const GUID& value);
/// Appends UTF-16 text in UTF-8 and in double quotes. Escaped are quotes, backslashes, control characters, surrogates
/// without a partner and what would not be seen: \", \\, \n, \r, \t, and \u with four lower-case digits for the others.
void AppendQuoted(std::string& text, const char16_t* units, std::size_t count);

/// Appends a leaf's whole value; a set's elements stand in braces. Nothing for a composite.
void AppendValue(std::string& text, KivGenerics::Node* leaf);

/// One line of at most about `width` characters for people: a leaf's value, cut with "..." where it is too long; of a set also
/// the number of its elements; of a composite the number of its children. "nothing" for null.
std::string ShortText(KivGenerics::Node* node, std::size_t width = 60);

/// A map's tag as people see it: "4108", or "4108 codepoint" with a name. Empty for other kinds.
std::string TagText(const KivGenerics::Node* node, const Names* names = nullptr);

/// The name of an own temporality: "persistent"; "temporality=7" for values without a name.
std::string TemporalityText(const KivGenerics::Node* node);

}  // namespace KivInspect
