#pragma once

#include <cstddef>
#include <cstdint>

#include <KivGenerics/NodeType.h>
#include <KivGenerics/SemanticTag.h>
#include <KivGenerics/Temporality.h>

#include "persistence/COrvReadBlockArchive.h"
#include "persistence/Encoding.h"
#include "persistence/HeaderCache.h"
#include "persistence/PackedBytes.h"
#include "persistence/SlotKeys.h"

namespace KivGenerics {

/// What an object's tag says about the node that it holds.
struct ObjectKind {
    NodeType type;
    EnumOrvGenericsTemporality temporality;
    bool longCount;
};

/// Decodes an object's tag. The type may be any number from 0 to 509: the factory refuses what it does not know.
inline ObjectKind DecodeObjectTag(std::uint16_t tag) noexcept {
    const int kind = tag & kKindMask;
    const auto temporality = static_cast<EnumOrvGenericsTemporality>(tag >> kTemporalityShift & 7);
    if (kind == kLongVector) {
        return {NodeTypeVector, temporality, true};
    }
    if (kind == kLongMap) {
        return {NodeTypeMap, temporality, true};
    }
    return {static_cast<NodeType>(kind), temporality, false};
}

/// What a type code says about a leaf that is written without an object of its own.
struct LeafKind {
    NodeType type;
    EnumOrvGenericsTemporality temporality;
    int extraWords;  ///< 32-bit words to skip where the type is unknown
};

/// Takes numbers back out of the 32-bit words that BytePacker wrote, and carries the state of one load.
///
/// On failure: GetStatus is negative; what GetBytes and PeekByte answer then means nothing.
class ArchiveDecoder {
public:
    /// Over any archive.
    explicit ArchiveDecoder(KivCOMShared::COrvReadArchive* archive) noexcept : archive_(archive) {}
    /// Over the library's own, whose operations become part of the caller's then.
    explicit ArchiveDecoder(COrvReadBlockArchive* archive) noexcept : archive_(archive), own_(archive) {}
    ArchiveDecoder(const ArchiveDecoder&) = delete;
    ArchiveDecoder& operator=(const ArchiveDecoder&) = delete;

    // The archive's operations. They do not touch the decoder's status.
    std::int32_t ReadLong(std::int32_t* value) {
        return own_ != nullptr ? own_->ReadLong(value) : archive_->ReadLong(value);
    }
    std::int32_t ReadDouble(double* value) {
        return own_ != nullptr ? own_->ReadDouble(value) : archive_->ReadDouble(value);
    }
    std::int32_t ReadGUID(GUID* value) { return own_ != nullptr ? own_->ReadGUID(value) : archive_->ReadGUID(value); }
    std::int32_t ReadWideString(KivBase::WString& text) {
        return own_ != nullptr ? own_->ReadWideString(text) : archive_->ReadWideString(text);
    }
    /// Enters the next object, whatever its tag.
    std::int32_t ReadObjectTag(std::uint16_t* tag) {
        return own_ != nullptr ? own_->EnterObject(tag) : archive_->ReadObjectTag(0, tag);
    }
    std::int32_t EndReadObject() { return own_ != nullptr ? own_->LeaveObject() : archive_->EndReadObject(); }

    /// The next `count` bytes, 1 to 4, as a number. 0 where a word cannot be read; nothing is taken then.
    std::uint32_t GetBytes(int count) { return NeedBytes(count) ? packed_.Take(count) : 0; }
    /// The next byte, which stays untaken.
    std::uint32_t PeekByte() { return NeedBytes(1) ? packed_.Peek() : 0; }
    /// Drops what is left of the current word.
    void Realign() noexcept { packed_.Clear(); }
    /// What waits to be taken of the words read so far: who takes it realigns the decoder afterwards.
    PackedBytes GetPackedBytes() const noexcept { return packed_; }

    /// A map's semantic tag. Only valid when GetStatus is not negative afterwards.
    SemanticTag GetSemanticTag();

    /// The result of the last word read.
    std::int32_t GetStatus() const noexcept { return status_; }
    bool HasFailed() const noexcept { return status_ < 0; }
    KivCOMShared::COrvReadArchive* GetArchive() const noexcept { return archive_; }
    /// The stream below the library's own archive, while it can be read from; null with any other archive.
    KivCOMShared::BlockReadStream* GetValueStream() const noexcept {
        return own_ != nullptr ? own_->GetValueStream() : nullptr;
    }

    /// One level of composites being read, as long as it lives.
    class Level {
    public:
        explicit Level(ArchiveDecoder& decoder) noexcept : decoder_(decoder) { ++decoder_.depth_; }
        ~Level() { --decoder_.depth_; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;
        /// True beyond MaxLoadNesting: reading on would use up the stack.
        bool IsTooDeep() const noexcept { return decoder_.depth_ > MaxLoadNesting; }

    private:
        ArchiveDecoder& decoder_;
    };

    SlotKeyRoom& GetKeyRoom() noexcept { return keys_; }
    HeaderCache& GetHeaders() noexcept { return headers_; }

private:
    /// Reads a word unless so many bytes wait already. False, with the state as it was, where that fails.
    bool NeedBytes(int count) {
        if (packed_.GetCount() < count) {
            std::int32_t word = 0;
            status_ = ReadLong(&word);
            if (status_ < 0) {
                return false;
            }
            packed_.Add(word);
        }
        return true;
    }

    std::int32_t status_ = 0;
    PackedBytes packed_;
    KivCOMShared::COrvReadArchive* archive_;
    COrvReadBlockArchive* own_ = nullptr;  // the same, where it is the library's
    int depth_ = 0;
    SlotKeyRoom keys_;
    HeaderCache headers_;
};

}  // namespace KivGenerics
