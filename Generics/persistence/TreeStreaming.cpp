// A whole tree: an object of tag 0 that holds one unused word and the root.

#include <KivCOMShared/COrvSizeArchive.h>
#include <KivCOMShared/COrvWriteArchive.h>
#include <KivGenerics/ResultCode.h>

#include "core/NodeAccess.h"
#include "core/Raise.h"
#include "core/Texts.h"
#include "core/TreeImpl.h"
#include "persistence/COrvReadBlockArchive.h"
#include "persistence/COrvWriteBlockArchive.h"
#include "persistence/ReadChild.h"

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
    return SaveToArchive(&archive, withTransient, kAllSlots);
}

std::int32_t TreeImpl::LoadFromStream(KivCOMShared::BlockReadStream* stream) {
    CheckReadOnly();
    if (stream == nullptr) {
        Raise(Texts::NullStream);
    }
    COrvReadBlockArchive archive(stream);
    return LoadFromArchive(&archive);
}

// While the root is being written nothing can change the tree. The flag goes with the success of the root's write, whatever
// it was before: after a failure, or an exception, the tree stays read-only.
// kept-on-purpose: save-leaves-writable
// kept-on-purpose: failed-save-stays-read-only
std::int32_t TreeImpl::SaveToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient, int slotFlags) {
    if (archive == nullptr) {
        Raise(Texts::NullArchive);
    }
    std::int32_t result = archive->BeginObject(kEnvelopeTag);
    if (result >= 0) {
        result = archive->WriteLong(0);
    }
    if (result < 0) {
        return result;
    }
    if (root_ != nullptr) {
        readOnly_ = true;
        UpdateDerivedTemporality();
        if (NodeAccess::GetDerived(*root_) <= GetLimit(withTransient)) {
            result = root_->WriteToArchive(archive, withTransient, slotFlags);
            if (result < 0) {
                return result;
            }
        }
        readOnly_ = false;
    }
    return FailureOrSuccess(archive->EndObject());
}

// kept-on-purpose: load-discards-first
std::int32_t TreeImpl::LoadFromArchive(KivCOMShared::COrvReadArchive* archive) {
    CheckReadOnly();
    if (archive == nullptr) {
        Raise(Texts::NullArchive);
    }
    RemoveRoot();
    std::uint16_t objectTag = 0;
    std::int32_t result = archive->ReadObjectTag(0, &objectTag);
    if (result != ResultSuccess) {
        return result < 0 ? result : ArchiveTypeMismatch;
    }
    std::int32_t ignored = 0;
    result = archive->ReadLong(&ignored);
    if (result < 0) {
        return result;
    }
    result = archive->ReadObjectTag(0, &objectTag);
    if (result == ResultSuccess) {
        ArchiveDecoder decoder(archive);
        const ObjectKind kind = DecodeObjectTag(objectTag);
        result = ReadChild(decoder, kind.type, kind.temporality, kind.longCount,
                           [this](NodeType type, SemanticTag tag) { return NewRoot(type, false, tag); });
        if (result >= 0) {
            result = archive->EndReadObject();
        }
    }
    return result < 0 ? result : FailureOrSuccess(archive->EndReadObject());
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
