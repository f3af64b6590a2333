#pragma once

#include <cstdint>

#include <KivGenerics/Forward.h>
#include <KivGenerics/NodeType.h>
#include <KivGenerics/SemanticTag.h>
#include <KivGenerics/Temporality.h>

namespace KivGenerics {

/// What an object's tag says about the node that it holds.
struct ObjectKind {
    NodeType type;
    EnumOrvGenericsTemporality temporality;
    bool longCount;
};

/// Decodes an object's tag. The type may be any number from 0 to 509: the factory refuses what it does not know.
ObjectKind DecodeObjectTag(std::uint16_t tag) noexcept;

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
    explicit ArchiveDecoder(KivCOMShared::COrvReadArchive* archive) noexcept : archive_(archive) {}
    ArchiveDecoder(const ArchiveDecoder&) = delete;
    ArchiveDecoder& operator=(const ArchiveDecoder&) = delete;

    /// The next `count` bytes, 1, 2 or 4, as a number. 0 where a word cannot be read; nothing is taken then.
    std::uint32_t GetBytes(int count);
    /// The next byte, which stays untaken.
    std::uint32_t PeekByte();
    /// Drops what is left of the current word.
    void Realign() noexcept {
        word_ = 0;
        left_ = 0;
    }

    /// A map's semantic tag. Only valid when GetStatus is not negative afterwards.
    SemanticTag GetSemanticTag();

    /// The result of the last word read.
    std::int32_t GetStatus() const noexcept { return status_; }
    bool HasFailed() const noexcept { return status_ < 0; }
    KivCOMShared::COrvReadArchive* GetArchive() const noexcept { return archive_; }

    /// One level of composites being read, as long as it lives.
    class Level {
    public:
        explicit Level(ArchiveDecoder& decoder) noexcept : decoder_(decoder) { ++decoder_.depth_; }
        ~Level() { --decoder_.depth_; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;
        /// True beyond MaxLoadNesting: reading on would use up the stack.
        bool IsTooDeep() const noexcept;

    private:
        ArchiveDecoder& decoder_;
    };

private:
    bool ReadWord(std::uint32_t& word);

    std::int32_t status_ = 0;
    KivCOMShared::COrvReadArchive* archive_;
    std::uint32_t word_ = 0;
    std::int32_t left_ = 0;  // bytes of the word not yet taken
    int depth_ = 0;
};

}  // namespace KivGenerics
