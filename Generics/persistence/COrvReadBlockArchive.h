#pragma once

#include <cstdint>

#include <KivCOMShared/BlockReadStream.h>
#include <KivCOMShared/COrvReadArchive.h>
#include <KivGenerics/ResultCode.h>

namespace KivGenerics {

/// An archive over a host's stream, with one object's tag read ahead. Lives for one load.
///
/// Every value read clears its output first.
/// On failure: what the stream answers, unchanged; ResultUnexpected without a stream, and for a value while a tag that was
/// read ahead waits to be taken.
class COrvReadBlockArchive final : public KivCOMShared::COrvReadArchive {
public:
    /// Releases the stream.
    ~COrvReadBlockArchive() override;
    std::int32_t ReadShort(std::uint16_t* value) override {
        *value = 0;
        return MayReadValue() ? stream_->GetShort(value) : ResultUnexpected;
    }
    std::int32_t ReadDouble(double* value) override {
        *value = 0.0;
        return MayReadValue() ? stream_->GetDouble(value) : ResultUnexpected;
    }
    std::int32_t ReadGUID(GUID* value) override {
        *value = GUID{};
        return MayReadValue() ? stream_->GetGUID(value) : ResultUnexpected;
    }
    std::int32_t ReadLong(std::int32_t* value) override {
        *value = 0;
        return MayReadValue() ? stream_->GetLong(value) : ResultUnexpected;
    }
    std::int32_t ReadInt64(std::int64_t* value) override;
    /// ArchiveStringTooLong beyond MaxStringUnits; ResultOutOfMemory. A text is cut at its first NUL.
    std::int32_t ReadWideString(KivBase::WString& text) override;
    std::int32_t ReadVariant(VARIANT* value) override;
    /// A tag other than the expected one is kept for the next call, and the result is ResultNoObject. ResultNullPointer.
    std::int32_t ReadObjectTag(std::uint16_t expected, std::uint16_t* tag) override;
    /// The same, but ArchiveTypeMismatch instead of ResultNoObject.
    std::int32_t ReadExpectedObjectTag(std::uint16_t expected, std::uint16_t* tag) override;
    /// Leaves first the object that was read ahead, if there is one.
    std::int32_t EndReadObject() override;

    /// Takes a reference on the stream, which may be null.
    explicit COrvReadBlockArchive(KivCOMShared::BlockReadStream* stream);
    COrvReadBlockArchive(const COrvReadBlockArchive&) = delete;
    COrvReadBlockArchive& operator=(const COrvReadBlockArchive&) = delete;

    // ReadObjectTag of whatever object comes next and EndReadObject, as part of the caller where no tag was read ahead.
    std::int32_t EnterObject(std::uint16_t* tag) {
        if (!MayReadValue()) {
            return ReadObjectTag(0, tag);
        }
        *tag = 0;
        std::uint16_t next = 0;
        const std::int32_t result = stream_->GetObjectTag(&next);
        if (result < 0 || result == ResultNoObject) {
            return result;
        }
        *tag = next;
        return ResultSuccess;
    }
    std::int32_t LeaveObject() { return MayReadValue() ? stream_->GetEndObject() : EndReadObject(); }

    /// What reads values until the next object begins or ends; null where none can be read.
    KivCOMShared::BlockReadStream* GetValueStream() const noexcept { return MayReadValue() ? stream_ : nullptr; }

private:
    bool MayReadValue() const noexcept { return stream_ != nullptr && pendingTag_ == 0; }
    std::int32_t ReadUnits(char16_t* units, std::uint32_t length, KivBase::WString& text);

    KivCOMShared::BlockReadStream* stream_;
    std::uint16_t pendingTag_ = 0;  // read ahead and not yet taken; 0 for none
};

}  // namespace KivGenerics
