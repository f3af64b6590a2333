#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include <KivBase/Guid.h>
#include <KivBase/Utf.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Temporality.h>
#include <KivGenerics/Vector.h>

namespace KivGenerics {

/// A kind's name, "Integer" to "Integer64"; "unknown" for any other number.
inline const char* ToText(NodeType type) noexcept {
    switch (type) {
        case NodeTypeInteger: return "Integer";
        case NodeTypeGlobalID: return "GlobalID";
        case NodeTypeString: return "String";
        case NodeTypeDouble: return "Double";
        case NodeTypeBoolean: return "Boolean";
        case NodeTypeVector: return "Vector";
        case NodeTypeMap: return "Map";
        case NodeTypeIntegerSet: return "IntegerSet";
        case NodeTypeIdSet: return "IdSet";
        case NodeTypeStringSet: return "StringSet";
        case NodeTypeDoubleSet: return "DoubleSet";
        case NodeTypeInteger64: return "Integer64";
    }
    return "unknown";
}

/// A temporality's name, "reserved" to "temporary"; "unknown" for any other number.
inline const char* ToText(EnumOrvGenericsTemporality t) noexcept {
    switch (t) {
        case TemporalityReserved: return "reserved";
        case TemporalityDefault: return "default";
        case TemporalityPersistent: return "persistent";
        case TemporalityTransient: return "transient";
        case TemporalityTemporary: return "temporary";
    }
    return "unknown";
}

inline std::string ToText(bool value) {
    return value ? "true" : "false";
}
inline std::string ToText(std::int32_t value) {
    return std::to_string(value);
}
inline std::string ToText(std::int64_t value) {
    return std::to_string(value);
}

/// The shortest of the forms with 15 to 17 digits that reads back as the same number.
inline std::string ToText(double value) {
    char text[32];
    for (int digits = 15; digits <= 17; ++digits) {
        std::snprintf(text, sizeof text, "%.*g", digits, value);
        double back = 0.0;
        if (value != value || (std::sscanf(text, "%lf", &back) == 1 && !(back < value) && !(back > value))) {
            break;
        }
    }
    return text;
}

/// {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}, in capital hexadecimal digits.
inline std::string ToText(const GUID& id) {
    char text[40];
    std::snprintf(text, sizeof text, "{%08lX-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  static_cast<unsigned long>(id.Data1), static_cast<unsigned>(id.Data2),
                  static_cast<unsigned>(id.Data3), static_cast<unsigned>(id.Data4[0]),
                  static_cast<unsigned>(id.Data4[1]), static_cast<unsigned>(id.Data4[2]),
                  static_cast<unsigned>(id.Data4[3]), static_cast<unsigned>(id.Data4[4]),
                  static_cast<unsigned>(id.Data4[5]), static_cast<unsigned>(id.Data4[6]),
                  static_cast<unsigned>(id.Data4[7]));
    return text;
}

/// The text in UTF-8, in double quotes; quotes, backslashes and control units are escaped as in JSON.
inline std::string ToText(const KivBase::WString& value) {
    KivBase::WString quoted = u"\"";
    for (const char16_t unit : value) {
        if (unit == u'"' || unit == u'\\') {
            quoted += u'\\';
            quoted += unit;
        } else if (unit < 0x20) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
            quoted.append(escape, escape + 6);
        } else {
            quoted += unit;
        }
    }
    quoted += u'"';
    return KivBase::ToUtf8(quoted);
}

/// The elements in ascending order, in braces: "{1, 2, 3}".
template <class Element, class Order>
std::string ToText(const std::set<Element, Order, KivBase::Allocator<Element>>& elements) {
    std::string text = "{";
    for (const Element& element : elements) {
        text += text.size() > 1 ? ", " : "";
        text += ToText(element);
    }
    return text + "}";
}

/// A leaf's value; of a composite its kind, tag and number of children: "Map(tag 4100, 3 children)". "null" for null.
inline std::string ToText(Node* node) {
    if (node == nullptr) {
        return "null";
    }
    const auto elements = [](auto* set) {
        typename std::remove_pointer_t<decltype(set)>::Elements copy;
        set->Get(copy);
        return ToText(copy);
    };
    const auto children = [](Composite* composite) {
        const int size = composite->GetSize(TemporalityTemporary);
        return std::to_string(size) + (size == 1 ? " child)" : " children)");
    };
    switch (node->GetType()) {
        case NodeTypeInteger: return ToText(static_cast<Integer*>(node)->Get());
        case NodeTypeGlobalID: return ToText(static_cast<GlobalID*>(node)->Get());
        case NodeTypeString: {
            const auto* const text = static_cast<String*>(node);
            return ToText(KivBase::WString(text->Get(), text->GetLength()));
        }
        case NodeTypeDouble: return ToText(static_cast<Double*>(node)->Get());
        case NodeTypeBoolean: return ToText(static_cast<Boolean*>(node)->Get());
        case NodeTypeVector: return "Vector(" + children(static_cast<Vector*>(node));
        case NodeTypeMap:
            return "Map(tag " + std::to_string(static_cast<Map*>(node)->GetSemanticTagNV()) + ", " +
                   children(static_cast<Map*>(node));
        case NodeTypeIntegerSet: return elements(static_cast<IntegerSet*>(node));
        case NodeTypeIdSet: return elements(static_cast<IdSet*>(node));
        case NodeTypeStringSet: return ToText(static_cast<StringSet*>(node)->Get());
        case NodeTypeDoubleSet: return elements(static_cast<DoubleSet*>(node));
        case NodeTypeInteger64: return ToText(static_cast<Integer64*>(node)->Get());
    }
    return "unknown";
}

}  // namespace KivGenerics
