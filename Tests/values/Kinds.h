#pragma once

#include <cstdio>
#include <string>

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
#include <KivGenerics/Vector.h>
#include <gtest/gtest.h>

namespace KivGenerics::Testing {

using AllKinds = ::testing::Types<Integer, GlobalID, String, Double, Boolean, Vector, Map, IntegerSet, IdSet, StringSet,
                                  DoubleSet, Integer64>;
using LeafKinds =
    ::testing::Types<Integer, GlobalID, String, Double, Boolean, IntegerSet, IdSet, StringSet, DoubleSet, Integer64>;
using SetKinds = ::testing::Types<IntegerSet, IdSet, StringSet, DoubleSet>;

/// A GUID of four 32-bit words, in the order in which GUIDs are compared.
inline GUID Guid(std::uint32_t first, std::uint32_t second = 0, std::uint32_t third = 0, std::uint32_t fourth = 0) {
    GUID id{};
    id.Data1 = first;
    id.Data2 = static_cast<std::uint16_t>(second & 0xFFFFU);
    id.Data3 = static_cast<std::uint16_t>(second >> 16U);
    for (unsigned i = 0; i < 4; ++i) {
        id.Data4[i] = static_cast<unsigned char>((third >> (8U * i)) & 0xFFU);
        id.Data4[4 + i] = static_cast<unsigned char>((fourth >> (8U * i)) & 0xFFU);
    }
    return id;
}

// The value of a node as text, so that an expectation can be a literal for every kind.

inline std::string TextOfValue(std::int32_t value) {
    return std::to_string(value);
}
inline std::string TextOfValue(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}
inline std::string TextOfValue(const KivBase::WString& value) {
    return KivBase::ToUtf8(value);
}
inline std::string TextOfValue(const GUID& value) {
    char text[48];
    std::snprintf(text, sizeof text, "%08x-%04x-%04x", static_cast<unsigned>(value.Data1), unsigned{value.Data2},
                  unsigned{value.Data3});
    std::string result = text;
    for (const unsigned byte : value.Data4) {
        std::snprintf(text, sizeof text, "-%02x", byte);
        result += text;
    }
    return result;
}

template <class Elements>
std::string TextOfElements(const Elements& elements) {
    std::string text;
    for (const auto& element : elements) {
        text += (text.empty() ? "{" : ",") + TextOfValue(element);
    }
    return (text.empty() ? "{" : text) + "}";
}

inline std::string Show(const Boolean& node) {
    return node.Get() ? "true" : "false";
}
inline std::string Show(const Integer& node) {
    return TextOfValue(node.Get());
}
inline std::string Show(const Integer64& node) {
    return std::to_string(node.Get());
}
inline std::string Show(const Double& node) {
    return TextOfValue(node.Get());
}
inline std::string Show(const GlobalID& node) {
    return TextOfValue(node.Get());
}
inline std::string Show(const String& node) {
    return KivBase::ToUtf8(node.Get(), node.GetLength());
}
inline std::string Show(const StringSet& node) {
    return TextOfElements(node.Get());
}
template <class SetNode>
std::string Show(const SetNode& node) {
    typename SetNode::Elements elements;
    node.Get(elements);
    return TextOfElements(elements);
}

/// What is expected of a kind: its number, its bit in the iteration flags, how its visit is called, how many changes a
/// Populate from an empty node counts, and what a new root of it derives as temporality.
struct LeafFacts {
    static constexpr int kPopulateChanges = 1;
    static constexpr int kDerivedWhenNew = 2;
};
struct CompositeFacts {
    static constexpr int kPopulateChanges = 2;
    static constexpr int kDerivedWhenNew = 4;
};
/// The changes that setting a value counts, and the most bytes that a node may take.
struct FixedSizeFacts : LeafFacts {
    static constexpr int kSetChanges = 1;
    static constexpr std::size_t kMostBytes = 48;
};
struct TextFacts : FixedSizeFacts {
    static constexpr std::size_t kMostBytes = 80;
};
struct SetFacts : LeafFacts {
    static constexpr int kSetChanges = 0;
    static constexpr std::size_t kMostBytes = 56;
};

/// For a leaf also the texts of three values: that of a new node, and two of which the first is the smaller.
template <class T>
struct Facts;

template <>
struct Facts<Integer> : FixedSizeFacts {
    static constexpr int kNumber = 1;
    static constexpr int kTypeBit = 0x1;
    static constexpr const char* kVisit = "VisitInteger";
    static constexpr const char* kNew = "0";
    static constexpr const char* kSmall = "-5";
    static constexpr const char* kGreat = "7";
    static void SetSmall(Integer& node) { node.Set(-5); }
    static void SetGreat(Integer& node) { node.Set(7); }
};

template <>
struct Facts<GlobalID> : FixedSizeFacts {
    static constexpr int kNumber = 2;
    static constexpr int kTypeBit = 0x2;
    static constexpr const char* kVisit = "VisitGlobalID";
    static constexpr const char* kNew = "00000000-0000-0000-00-00-00-00-00-00-00-00";
    static constexpr const char* kSmall = "00000001-ffff-ffff-ff-ff-ff-ff-ff-ff-ff-ff";
    static constexpr const char* kGreat = "00000002-5678-1234-04-03-02-01-08-07-06-05";
    static void SetSmall(GlobalID& node) { node.Set(Guid(1, 0xFFFFFFFFU, 0xFFFFFFFFU, 0xFFFFFFFFU)); }
    static void SetGreat(GlobalID& node) { node.Set(Guid(2, 0x12345678U, 0x01020304U, 0x05060708U)); }
};

template <>
struct Facts<String> : TextFacts {
    static constexpr int kNumber = 3;
    static constexpr int kTypeBit = 0x4;
    static constexpr const char* kVisit = "VisitString";
    static constexpr const char* kNew = "";
    static constexpr const char* kSmall = "alpha, longer than what a string object holds inside";
    static constexpr const char* kGreat = "beta";
    static void SetSmall(String& node) { node.Set(u"alpha, longer than what a string object holds inside"); }
    static void SetGreat(String& node) { node.Set(u"beta"); }
};

template <>
struct Facts<Double> : FixedSizeFacts {
    static constexpr int kNumber = 4;
    static constexpr int kTypeBit = 0x8;
    static constexpr const char* kVisit = "VisitDouble";
    static constexpr const char* kNew = "0";
    static constexpr const char* kSmall = "-2.5";
    static constexpr const char* kGreat = "1e+100";
    static void SetSmall(Double& node) { node.Set(-2.5); }
    static void SetGreat(Double& node) { node.Set(1e100); }
};

template <>
struct Facts<Boolean> : FixedSizeFacts {
    static constexpr int kNumber = 5;
    static constexpr int kTypeBit = 0x10;
    static constexpr const char* kVisit = "VisitBoolean";
    static constexpr const char* kNew = "false";
    static constexpr const char* kSmall = "false";
    static constexpr const char* kGreat = "true";
    static void SetSmall(Boolean& node) { node.Set(false); }
    static void SetGreat(Boolean& node) { node.Set(true); }
};

template <>
struct Facts<Vector> : CompositeFacts {
    static constexpr int kNumber = 6;
    static constexpr int kTypeBit = 0x20;
    static constexpr const char* kVisit = "VisitVector";
};

template <>
struct Facts<Map> : CompositeFacts {
    static constexpr int kNumber = 7;
    static constexpr int kTypeBit = 0x40;
    static constexpr const char* kVisit = "VisitMap";
};

template <>
struct Facts<IntegerSet> : SetFacts {
    static constexpr int kNumber = 8;
    static constexpr int kTypeBit = 0x80;
    static constexpr const char* kVisit = "VisitIntegerSet";
    static constexpr const char* kNew = "{}";
    static constexpr const char* kSmall = "{1,5}";
    static constexpr const char* kGreat = "{2}";
    static void SetSmall(IntegerSet& node) { node.Set(IntegerSet::Elements{5, 1}); }
    static void SetGreat(IntegerSet& node) { node.Set(IntegerSet::Elements{2}); }
};

template <>
struct Facts<IdSet> : SetFacts {
    static constexpr int kNumber = 9;
    static constexpr int kTypeBit = 0x100;
    static constexpr const char* kVisit = "VisitIdSet";
    static constexpr const char* kNew = "{}";
    static constexpr const char* kSmall =
        "{00000001-0000-0000-00-00-00-00-00-00-00-00,00000005-0000-0000-00-00-00-00-00-00-00-00}";
    static constexpr const char* kGreat = "{00000002-0000-0000-00-00-00-00-00-00-00-00}";
    static void SetSmall(IdSet& node) { node.Set(IdSet::Elements{Guid(5), Guid(1)}); }
    static void SetGreat(IdSet& node) { node.Set(IdSet::Elements{Guid(2)}); }
};

template <>
struct Facts<StringSet> : SetFacts {
    static constexpr std::size_t kMostBytes = 96;
    static constexpr int kNumber = 10;
    static constexpr int kTypeBit = 0x200;
    static constexpr const char* kVisit = "VisitStringSet";
    static constexpr const char* kNew = "{}";
    static constexpr const char* kSmall = "{a text that does not fit into a string object,e}";
    static constexpr const char* kGreat = "{b}";
    static void SetSmall(StringSet& node) {
        node.Set(StringSet::Elements{u"e", u"a text that does not fit into a string object"});
    }
    static void SetGreat(StringSet& node) { node.Set(StringSet::Elements{u"b"}); }
};

template <>
struct Facts<DoubleSet> : SetFacts {
    static constexpr int kNumber = 11;
    static constexpr int kTypeBit = 0x400;
    static constexpr const char* kVisit = "VisitDoubleSet";
    static constexpr const char* kNew = "{}";
    static constexpr const char* kSmall = "{0.5,2}";
    static constexpr const char* kGreat = "{1.25}";
    static void SetSmall(DoubleSet& node) { node.Set(DoubleSet::Elements{2.0, 0.5}); }
    static void SetGreat(DoubleSet& node) { node.Set(DoubleSet::Elements{1.25}); }
};

template <>
struct Facts<Integer64> : FixedSizeFacts {
    static constexpr int kNumber = 12;
    static constexpr int kTypeBit = 0x800;
    static constexpr const char* kVisit = "VisitInteger64";
    static constexpr const char* kNew = "0";
    static constexpr const char* kSmall = "-4294967296";
    static constexpr const char* kGreat = "5000000000";
    static void SetSmall(Integer64& node) { node.Set(-4294967296); }
    static void SetGreat(Integer64& node) { node.Set(5000000000); }
};

/// Names the tests of a suite that runs over kinds by the kind: "NodeContractTest/Integer".
struct KindNames {
    template <class T>
    static std::string GetName(int) {
        return std::string(Facts<T>::kVisit).substr(std::string("Visit").size());
    }
};

}  // namespace KivGenerics::Testing
