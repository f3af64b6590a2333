#pragma once

#include <cstdint>
#include <limits>

#include <KivBase/WString.h>

#include "core/TreeImpl.h"
#include "persistence/COrvWriteBlockArchive.h"

namespace KivGenerics {

/// What nodes write themselves with: an archive, of which it may be known that it is the library's own. That one's operations
/// become part of the caller's then, and the only call is that of the stream.
class ArchiveWriter {
public:
    /// Over any archive.
    ArchiveWriter(KivCOMShared::COrvWriteArchive* archive) noexcept : archive_(archive) {}
    /// The same archive, for what stands below the root of a tree whose temporality has just been updated.
    ArchiveWriter(const ArchiveWriter& out, const TreeImpl& tree) noexcept
        : archive_(out.archive_), own_(out.own_), tree_(&tree) {}
    /// Over the library's own.
    ArchiveWriter(COrvWriteBlockArchive* archive) noexcept : archive_(archive), own_(archive) {}

    std::int32_t WriteLong(std::int32_t value) const {
        return own_ != nullptr ? own_->WriteLong(value) : archive_->WriteLong(value);
    }
    std::int32_t WriteDouble(double value) const {
        return own_ != nullptr ? own_->WriteDouble(value) : archive_->WriteDouble(value);
    }
    std::int32_t WriteGUID(const GUID& value) const {
        return own_ != nullptr ? own_->WriteGUID(value) : archive_->WriteGUID(value);
    }
    /// A whole text; the archive's own operation for it decides what becomes of one that is too long.
    std::int32_t WriteString(const KivBase::WString& text) const {
        const bool isShort = text.size() <= (std::numeric_limits<std::uint32_t>::max)();
        return own_ != nullptr && isShort ? own_->WriteWideString(text.data(), static_cast<std::uint32_t>(text.size()))
                                          : archive_->WriteString(text);
    }
    std::int32_t BeginObject(std::uint16_t tag) const {
        return own_ != nullptr ? own_->BeginObject(tag) : archive_->BeginObject(tag);
    }
    std::int32_t EndObject() const { return own_ != nullptr ? own_->EndObject() : archive_->EndObject(); }

    KivCOMShared::COrvWriteArchive* GetArchive() const noexcept { return archive_; }
    /// True where everything below the root is known, without a look at it, to be persistent.
    bool IsAllPersistent() const noexcept { return tree_ != nullptr && tree_->IsAllPersistent(); }
    /// True where the children of a vector are known, without a look at them, to have its derived temporality.
    bool AreVectorsUniform() const noexcept { return tree_ != nullptr && tree_->HasUpdatedTemporality(); }

private:
    KivCOMShared::COrvWriteArchive* archive_;
    COrvWriteBlockArchive* own_ = nullptr;  // the same, where it is the library's
    const TreeImpl* tree_ = nullptr;  // whose update was just made; null where that is not known
};

}  // namespace KivGenerics
