// A whole tree: an object of tag 0 that holds one unused word and the root.

#include <KivCOMShared/COrvSizeArchive.h>
#include <KivGenerics/ResultCode.h>

#include "core/NodeAccess.h"
#include "core/Raise.h"
#include "core/Texts.h"
#include "core/TreeImpl.h"
#include "persistence/COrvReadBlockArchive.h"
#include "persistence/COrvWriteBlockArchive.h"
#include "persistence/ReadChild.h"
#include "persistence/WriteNode.h"

namespace KivGenerics {
namespace {

constexpr std::uint16_t kEnvelopeTag = 0;
constexpr int kAllSlots = 255;

std::int32_t FailureOrSuccess(std::int32_t result) noexcept {
    return result < 0 ? result : ResultSuccess;
}

}  // namespace

std::int32_t TreeImpl::SaveToStream(KivCOMShared::BlockWriteStream* stream, bool withTransient) {
    if (stream == nullptr) {
        Raise(Texts::NullStream);
    }
    COrvWriteBlockArchive archive(stream);
    return Save(&archive, withTransient, kAllSlots);
}

std::int32_t TreeImpl::LoadFromStream(KivCOMShared::BlockReadStream* stream) {
    CheckReadOnly();
    if (stream == nullptr) {
        Raise(Texts::NullStream);
    }
    COrvReadBlockArchive archive(stream);
    CheckReadOnly();  // the load from the archive counts as a change of its own
    ArchiveDecoder decoder(&archive);
    return Load(decoder);
}

std::int32_t TreeImpl::SaveToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient, int slotFlags) {
    if (archive == nullptr) {
        Raise(Texts::NullArchive);
    }
    return Save(archive, withTransient, slotFlags);
}

// While the root is being written nothing can change the tree. The flag goes with the success of the root's write, whatever
// it was before: after a failure, or an exception, the tree stays read-only.
// kept-on-purpose: save-leaves-writable
// kept-on-purpose: failed-save-stays-read-only
std::int32_t TreeImpl::Save(const ArchiveWriter& out, bool withTransient, int slotFlags) {
    std::int32_t result = out.BeginObject(kEnvelopeTag);
    if (result >= 0) {
        result = out.WriteLong(0);
    }
    if (result < 0) {
        return result;
    }
    if (root_ != nullptr) {
        readOnly_ = true;
        UpdateDerivedTemporality();
        if (NodeAccess::GetDerived(*root_) <= GetLimit(withTransient)) {
            result = WriteRoot(*root_, ArchiveWriter(out, *this), withTransient, slotFlags);
            if (result < 0) {
                return result;
            }
        }
        readOnly_ = false;
    }
    return FailureOrSuccess(out.EndObject());
}

std::int32_t TreeImpl::LoadFromArchive(KivCOMShared::COrvReadArchive* archive) {
    CheckReadOnly();
    if (archive == nullptr) {
        Raise(Texts::NullArchive);
    }
    ArchiveDecoder decoder(archive);
    return Load(decoder);
}

// kept-on-purpose: load-discards-first
std::int32_t TreeImpl::Load(ArchiveDecoder& decoder) {
    RemoveRoot();
    std::uint16_t objectTag = 0;
    std::int32_t result = decoder.ReadObjectTag(&objectTag);
    if (result != ResultSuccess) {
        return result < 0 ? result : ArchiveTypeMismatch;
    }
    std::int32_t ignored = 0;
    result = decoder.ReadLong(&ignored);
    if (result < 0) {
        return result;
    }
    result = decoder.ReadObjectTag(&objectTag);
    if (result == ResultSuccess) {
        const ObjectKind kind = DecodeObjectTag(objectTag);
        result = ReadChild(decoder, kind.type, kind.temporality, kind.longCount,
                           [this](NodeType type, SemanticTag tag) { return NewRoot(type, false, tag); });
        if (result >= 0) {
            result = decoder.EndReadObject();
        }
    }
    return result < 0 ? result : FailureOrSuccess(decoder.EndReadObject());
}

// kept-on-purpose: size-without-filter-on-root
std::int32_t TreeImpl::SizeArchive(KivCOMShared::COrvSizeArchive* sizer, bool withTransient) {
    if (sizer == nullptr) {
        Raise(Texts::NullArchive);
    }
    sizer->AddSizes(0, 0, 0, 1, 1);
    return root_ != nullptr ? FailureOrSuccess(root_->SizeDefnArchive(sizer, withTransient)) : ResultSuccess;
}

}  // namespace KivGenerics
