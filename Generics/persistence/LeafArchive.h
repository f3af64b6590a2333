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

/// Reads values of leaves one after the other, without an object in between, from the stream below the library's own archive. The
/// outputs are cleared before.
class StreamValues {
public:
    explicit StreamValues(KivCOMShared::BlockReadStream& stream) noexcept : stream_(stream) {}

    std::int32_t ReadLong(std::int32_t* value) const { return stream_.GetLong(value); }
    std::int32_t ReadDouble(double* value) const { return stream_.GetDouble(value); }
    std::int32_t ReadGUID(GUID* value) const { return stream_.GetGUID(value); }

private:
    KivCOMShared::BlockReadStream& stream_;
};

/// The same by any archive.
class ArchiveValues {
public:
    explicit ArchiveValues(ArchiveDecoder& decoder) noexcept : decoder_(decoder) {}

    std::int32_t ReadLong(std::int32_t* value) const { return decoder_.ReadLong(value); }
    std::int32_t ReadDouble(double* value) const { return decoder_.ReadDouble(value); }
    std::int32_t ReadGUID(GUID* value) const { return decoder_.ReadGUID(value); }

private:
    ArchiveDecoder& decoder_;
};

/// Calls `use` with what reads values, until the next object begins or ends, in the shortest way.
template <class Use>
[[gnu::always_inline]] inline auto WithValues(ArchiveDecoder& decoder, Use use) {
    KivCOMShared::BlockReadStream* const stream = decoder.GetValueStream();
    return stream != nullptr ? use(StreamValues(*stream)) : use(ArchiveValues(decoder));
}

// `Reader` is a StreamValues, an ArchiveValues or an ArchiveDecoder. The leaf is a new one.

template <class Reader>
std::int32_t ReadValue(Integer& leaf, Reader& reader) {
    return reader.ReadLong(&NodeAccess::GetValue(leaf));
}
template <class Reader>
std::int32_t ReadValue(Boolean& leaf, Reader& reader) {
    std::int32_t value = 0;
    const std::int32_t result = reader.ReadLong(&value);
    if (result >= 0) {
        NodeAccess::GetValue(leaf) = value != 0;
    }
    return result;
}
template <class Reader>
std::int32_t ReadValue(Integer64& leaf, Reader& reader) {
    std::int32_t low = 0;
    std::int32_t high = 0;
    std::int32_t result = reader.ReadLong(&low);
    if (result >= 0) {
        result = reader.ReadLong(&high);
    }
    if (result >= 0) {
        NodeAccess::GetValue(leaf) = JoinHalves(low, high);
    }
    return result;
}
template <class Reader>
std::int32_t ReadValue(Double& leaf, Reader& reader) {
    return reader.ReadDouble(&NodeAccess::GetValue(leaf));
}
template <class Reader>
std::int32_t ReadValue(GlobalID& leaf, Reader& reader) {
    return reader.ReadGUID(&NodeAccess::GetValue(leaf));
}
template <class Reader>
std::int32_t ReadValue(String& leaf, Reader& reader) {
    return reader.ReadWideString(NodeAccess::GetValue(leaf));
}

}  // namespace KivGenerics
