#pragma once

#include <cstdint>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/String.h>

#include "core/NodeAccess.h"
#include "persistence/ArchiveDecoder.h"
#include "persistence/ArchiveWriter.h"
#include "persistence/Halves.h"

namespace KivGenerics {

// How scalar leaves are written and read: each is a value or two, without an object of its own. These stand in a header to
// become part of the loops over a composite's children; the leaves' own operations are made of them as well.

inline std::int32_t WriteValue(const Integer& leaf, const ArchiveWriter& out) {
    return out.WriteLong(leaf.Get());
}
inline std::int32_t WriteValue(const Boolean& leaf, const ArchiveWriter& out) {
    return out.WriteLong(leaf.Get() ? 1 : 0);
}
inline std::int32_t WriteValue(const Integer64& leaf, const ArchiveWriter& out) {
    const std::int32_t result = out.WriteLong(GetLowHalf(leaf.Get()));
    return result < 0 ? result : out.WriteLong(GetHighHalf(leaf.Get()));
}
inline std::int32_t WriteValue(const Double& leaf, const ArchiveWriter& out) {
    return out.WriteDouble(leaf.Get());
}
inline std::int32_t WriteValue(const GlobalID& leaf, const ArchiveWriter& out) {
    return out.WriteGUID(NodeAccess::GetValue(leaf));
}
inline std::int32_t WriteValue(const String& leaf, const ArchiveWriter& out) {
    return out.WriteString(NodeAccess::GetValue(leaf));
}

inline std::int32_t ReadValue(Integer& leaf, ArchiveDecoder& decoder) {
    return decoder.ReadLong(&NodeAccess::GetValue(leaf));
}
inline std::int32_t ReadValue(Boolean& leaf, ArchiveDecoder& decoder) {
    std::int32_t value = 0;
    const std::int32_t result = decoder.ReadLong(&value);
    if (result >= 0) {
        NodeAccess::GetValue(leaf) = value != 0;
    }
    return result;
}
inline std::int32_t ReadValue(Integer64& leaf, ArchiveDecoder& decoder) {
    std::int32_t low = 0;
    std::int32_t high = 0;
    std::int32_t result = decoder.ReadLong(&low);
    if (result >= 0) {
        result = decoder.ReadLong(&high);
    }
    if (result >= 0) {
        NodeAccess::GetValue(leaf) = JoinHalves(low, high);
    }
    return result;
}
inline std::int32_t ReadValue(Double& leaf, ArchiveDecoder& decoder) {
    return decoder.ReadDouble(&NodeAccess::GetValue(leaf));
}
inline std::int32_t ReadValue(GlobalID& leaf, ArchiveDecoder& decoder) {
    return decoder.ReadGUID(&NodeAccess::GetValue(leaf));
}
inline std::int32_t ReadValue(String& leaf, ArchiveDecoder& decoder) {
    return decoder.ReadWideString(NodeAccess::GetValue(leaf));
}

}  // namespace KivGenerics
