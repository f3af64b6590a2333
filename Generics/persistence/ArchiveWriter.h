#pragma once

#include <cstdint>
#include <limits>

#include <KivBase/WString.h>

#include "core/TreeImpl.h"
#include "persistence/COrvWriteBlockArchive.h"

namespace KivGenerics {

/// What nodes write themselves with: an archive, of which it may be known that it is the library's own over a stream. Its
/// operations become part of the caller's then, and the only call is that of the stream. Passed by value where children are
/// gone through, so that no call makes the caller read it anew.
class ArchiveWriter {
public:
    /// Over any archive.
    ArchiveWriter(KivCOMShared::COrvWriteArchive* archive) noexcept : archive_(archive) {}
    /// The same archive, for what stands below the root of a tree whose temporality has just been updated. What is known of the
    /// tree is asked here, once for all composites: nothing can change it while it is written.
    ArchiveWriter(const ArchiveWriter& out, const TreeImpl& tree) noexcept
        : archive_(out.archive_),
          stream_(out.stream_),
          isAllPersistent_(tree.IsAllPersistent()),
          areVectorsUniform_(tree.HasUpdatedTemporality()) {}
    /// Over the library's own.
    ArchiveWriter(COrvWriteBlockArchive* archive) noexcept : archive_(archive), stream_(archive->GetStream()) {}

    std::int32_t WriteLong(std::int32_t value) const {
        return stream_ != nullptr ? stream_->PutLong(value) : archive_->WriteLong(value);
    }
    std::int32_t WriteDouble(double value) const {
        return stream_ != nullptr ? stream_->PutDouble(value) : archive_->WriteDouble(value);
    }
    std::int32_t WriteGUID(const GUID& value) const {
        return stream_ != nullptr ? stream_->PutGUID(value) : archive_->WriteGUID(value);
    }
    /// A whole text; the archive's own operation for it decides what becomes of one that is too long.
    std::int32_t WriteString(const KivBase::WString& text) const {
        const bool isShort = text.size() <= (std::numeric_limits<std::uint32_t>::max)();
        return stream_ != nullptr && isShort
                   ? stream_->PutWideString(text.data(), static_cast<std::uint32_t>(text.size()))
                   : archive_->WriteString(text);
    }
    std::int32_t BeginObject(std::uint16_t tag) const {
        return stream_ != nullptr ? stream_->PutBeginObject(tag) : archive_->BeginObject(tag);
    }
    std::int32_t EndObject() const { return stream_ != nullptr ? stream_->PutEndObject() : archive_->EndObject(); }

    KivCOMShared::COrvWriteArchive* GetArchive() const noexcept { return archive_; }
    /// True where everything below the root is known, without a look at it, to be persistent.
    bool IsAllPersistent() const noexcept { return isAllPersistent_; }
    /// True where the children of a vector are known, without a look at them, to have its derived temporality.
    bool AreVectorsUniform() const noexcept { return areVectorsUniform_; }

private:
    KivCOMShared::COrvWriteArchive* archive_;
    KivCOMShared::BlockWriteStream* stream_ =
        nullptr;  // below the archive, where that is the library's own and has one
    bool isAllPersistent_ = false;
    bool areVectorsUniform_ = false;
};

}  // namespace KivGenerics
