// How vectors are written, read and sized.

#include <KivCOMShared/COrvSizeArchive.h>
#include <KivGenerics/Vector.h>

#include "persistence/BytePacker.h"
#include "persistence/ReadChild.h"
#include "persistence/WriteNode.h"

namespace KivGenerics {
namespace {

// With transient elements none is left out, whatever the count in the header left out.
// kept-on-purpose: vector-writes-every-element
bool IsWritten(Node& element, bool withTransient) {
    return withTransient || NodeAccess::GetDerived(element) <= TemporalityPersistent;
}

std::int32_t ReadLeaves(Vector& vector, ArchiveDecoder& decoder, std::uint32_t count, const LeafKind& kind) {
    if (!IsKnownType(kind.type) && kind.extraWords == 0) {
        return ResultSuccess;
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::int32_t result =
            IsKnownType(kind.type) ? ReadChild(decoder, kind.type, kind.temporality, false,
                                               [&](NodeType type, SemanticTag tag) { return vector.Add(type, tag); })
                                   : SkipWords(decoder, kind.extraWords);
        if (result < 0) {
            return result;
        }
    }
    return ResultSuccess;
}

std::int32_t ReadObjects(Vector& vector, ArchiveDecoder& decoder, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        std::uint16_t objectTag = 0;
        std::int32_t result = decoder.ReadObjectTag(&objectTag);
        if (result != ResultSuccess) {
            return result < 0 ? result : ArchiveTypeMismatch;
        }
        const ObjectKind kind = DecodeObjectTag(objectTag);
        result = ReadChild(decoder, kind.type, kind.temporality, kind.longCount,
                           [&](NodeType type, SemanticTag tag) { return vector.Add(type, tag); });
        if (result >= 0) {
            result = decoder.EndReadObject();
        }
        if (result < 0) {
            return result;
        }
    }
    return ResultSuccess;
}

}  // namespace

// One type byte, the first element's, describes them all: Add keeps elements to one kind.
// kept-on-purpose: vector-type-byte
std::int32_t WriteVector(Vector& vector, ArchiveWriter out, bool withTransient) {
    const int count = vector.GetSize(GetLimit(withTransient));
    const bool isLong = count >= kLongCount;
    std::int32_t result = out.BeginObject(GetObjectTag(vector, isLong ? kLongVector : NodeTypeVector));
    if (result < 0) {
        return result;
    }
    BytePacker packer(out);
    packer.Put(static_cast<std::uint32_t>(count), isLong ? 4 : 2);
    packer.Put(count > 0 ? GetTypeByte(*vector.GetNV(0)) : 0, 1);
    result = packer.Flush();
    const int size = vector.GetSize(TemporalityTemporary);
    for (int i = 0; result >= 0 && i < size; ++i) {
        Node& child = *vector.GetNV(i);
        if (IsWritten(child, withTransient)) {
            result = WriteNode(child, out, withTransient);
        }
    }
    return result < 0 ? result : out.EndObject();
}

std::int32_t Vector::WriteToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient) {
    return WriteVector(*this, archive, withTransient);
}

std::int32_t Vector::ReadFromArchive(ArchiveDecoder& decoder, bool longCount) {
    const ArchiveDecoder::Level level(decoder);
    if (level.IsTooDeep()) {
        return ArchiveNestingTooDeep;
    }
    const std::uint32_t count = decoder.GetBytes(longCount ? 4 : 2);
    if (decoder.HasFailed()) {
        return decoder.GetStatus();
    }
    const std::uint32_t code = decoder.GetBytes(2);
    if (decoder.HasFailed()) {
        return decoder.GetStatus();
    }
    decoder.Realign();
    return code != 0 ? ReadLeaves(*this, decoder, count, DecodeTypeCode(code >> 8, code & 0xFF))
                     : ReadObjects(*this, decoder, count);
}

std::int32_t Vector::SizeDefnArchive(KivCOMShared::COrvSizeArchive* sizer, bool withTransient) {
    sizer->AddSizes(0, 0, 0, 1, 1);
    for (Node* const child : children_) {
        if (IsWritten(*child, withTransient)) {
            const std::int32_t result = child->SizeDefnArchive(sizer, withTransient);
            if (result < 0) {
                return result;
            }
        }
    }
    return ResultSuccess;
}

}  // namespace KivGenerics
