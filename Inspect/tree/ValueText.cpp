#include <KivInspect/ValueText.h>

#include <charconv>
#include <cmath>
#include <cstring>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/ToText.h>

#include "text/Utf.h"

namespace KivInspect {
namespace {

using namespace KivGenerics;

/// The bits of the NaN that arithmetic gives.
constexpr std::uint64_t UsualNan = 0x7FF8000000000000;

template <class Number>
void AppendNumber(std::string& text, Number value) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    text.append(digits, end);
}

void AppendHex(std::string& text, std::uint64_t value, int digits) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        text += "0123456789abcdef"[(value >> shift) & 15U];
    }
}

void AppendNan(std::string& text, double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    text += "nan";
    if (bits != UsualNan) {
        text += ':';
        AppendHex(text, bits, 16);
    }
}

/// What would be taken for something else, or not be seen at all, where it stood in a line.
bool IsUnseen(char32_t c) {
    return c < 0x20 || (0x7F <= c && c < 0xA0) || c == 0xAD || (0x200B <= c && c <= 0x200F) || c == 0x2028 ||
           c == 0x2029 || (0x202A <= c && c <= 0x202E) || (0x2060 <= c && c <= 0x206F) || c == 0xFEFF ||
           (0xD800 <= c && c <= 0xDFFF) || (0xFFF9 <= c && c <= 0xFFFB) || c == 0xFFFE || c == 0xFFFF;
}

void AppendEscape(std::string& text, char32_t c) {
    switch (c) {
        case U'\n': text += "\\n"; return;
        case U'\r': text += "\\r"; return;
        case U'\t': text += "\\t"; return;
        default: break;
    }
    text += "\\u";
    AppendHex(text, c, 4);
}

template <class Elements, class AppendElement>
void AppendElements(std::string& text, const Elements& elements, AppendElement append) {
    text += '{';
    const char* separator = "";
    for (const auto& element : elements) {
        text += separator;
        append(element);
        separator = ", ";
    }
    text += '}';
}

template <class Set>
void AppendSet(std::string& text, const Node* node) {
    typename Set::Elements elements;
    static_cast<const Set*>(node)->Get(elements);
    AppendElements(text, elements, [&text](const auto& element) { AppendValue(text, element); });
}

}  // namespace

void AppendValue(std::string& text, std::int32_t value) {
    AppendNumber(text, value);
}

void AppendValue(std::string& text, std::int64_t value) {
    AppendNumber(text, value);
}

void AppendValue(std::string& text, bool value) {
    text += value ? "true" : "false";
}

void AppendValue(std::string& text, double value) {
    if (std::isnan(value)) {
        AppendNan(text, value);
    } else {
        AppendNumber(text, value);
    }
}

void AppendValue(std::string& text, const GUID& value) {
    text += '{';
    AppendHex(text, value.Data1, 8);
    text += '-';
    AppendHex(text, value.Data2, 4);
    text += '-';
    AppendHex(text, value.Data3, 4);
    for (int i = 0; i < 8; ++i) {
        text += i == 0 || i == 2 ? "-" : "";
        AppendHex(text, value.Data4[i], 2);
    }
    text += '}';
}

void AppendQuoted(std::string& text, const char16_t* units, std::size_t count) {
    text += '"';
    for (std::size_t i = 0; i < count;) {
        const char32_t c = TakeCharacter(units, count, i);
        if (c == U'"' || c == U'\\') {
            text += '\\';
            text += static_cast<char>(c);
        } else if (IsUnseen(c)) {
            AppendEscape(text, c);
        } else {
            AppendUtf8(text, c);
        }
    }
    text += '"';
}

void AppendValue(std::string& text, Node* leaf) {
    switch (leaf->GetType()) {
        case NodeTypeInteger: AppendValue(text, static_cast<Integer*>(leaf)->Get()); break;
        case NodeTypeGlobalID: AppendValue(text, static_cast<GlobalID*>(leaf)->Get()); break;
        case NodeTypeString: {
            const auto* const string = static_cast<String*>(leaf);
            AppendQuoted(text, string->Get(), string->GetLength());
            break;
        }
        case NodeTypeDouble: AppendValue(text, static_cast<Double*>(leaf)->Get()); break;
        case NodeTypeBoolean: AppendValue(text, static_cast<Boolean*>(leaf)->Get()); break;
        case NodeTypeVector: break;
        case NodeTypeMap: break;
        case NodeTypeIntegerSet: AppendSet<IntegerSet>(text, leaf); break;
        case NodeTypeIdSet: AppendSet<IdSet>(text, leaf); break;
        case NodeTypeStringSet:
            AppendElements(text, static_cast<StringSet*>(leaf)->Get(), [&text](const KivBase::WString& element) {
                AppendQuoted(text, element.data(), element.size());
            });
            break;
        case NodeTypeDoubleSet: AppendSet<DoubleSet>(text, leaf); break;
        case NodeTypeInteger64: AppendValue(text, static_cast<Integer64*>(leaf)->Get()); break;
    }
}

std::string TagText(const Node* node, const Names* names) {
    const Map* const map = node_cast<Map>(node);
    if (map == nullptr) {
        return {};
    }
    std::string text = std::to_string(map->GetSemanticTagNV());
    if (const std::string* const name = names != nullptr ? names->FindTag(map->GetSemanticTagNV()) : nullptr) {
        text += ' ' + *name;
    }
    return text;
}

std::string TemporalityText(const Node* node) {
    const EnumOrvGenericsTemporality own = node->GetTemporality();
    return TemporalityReserved <= own && own <= TemporalityTemporary ? ToText(own)
                                                                     : "temporality=" + std::to_string(own);
}

}  // namespace KivInspect
