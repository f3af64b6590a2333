#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "format/ByteSink.h"

namespace KivStorage {

/// A window on a source of bytes, and where in it a block or a trailer could begin.
class BlockSearch {
public:
    explicit BlockSearch(ByteSource& source) : source_(source) {}

    /// Reads until `count` bytes are in the window, or all that are left; returns how many there are.
    std::size_t Need(std::size_t count);
    /// The bytes of the window.
    const std::uint8_t* Bytes() const noexcept { return buffer_.get() + begin_; }
    /// Takes bytes out at the window's front.
    void Drop(std::size_t count) noexcept;
    /// Where the window begins in the data.
    std::uint64_t GetOffset() const noexcept { return offset_; }
    const Result& GetError() const noexcept { return error_; }

    /// Whether a whole block of this number begins at `at` in the window.
    bool IsBlock(std::size_t at, std::uint64_t number);
    /// Whether a trailer begins there that matches its checksum; `blocks` gets the number that it names.
    bool IsTrailer(std::size_t at, std::uint64_t& blocks);

    /// From here on damage is being skipped; `number` is that of the block that should stand at the window's front.
    void Begin(std::uint64_t number) noexcept;
    /// Looks for the next block or trailer from the window's front, in as many bytes as a block has at most. True when one
    /// was found: `at` is its place, `number` its number, of a trailer that of the block which it stands for. Else `at`
    /// bytes are none of it.
    bool Find(std::size_t& at, std::uint64_t& number);

private:
    /// Brings the window to the front of a buffer of at least this size.
    void MakeRoom(std::size_t size);
    bool IsBlockOfSomeNumber(std::size_t at, std::uint64_t& number);

    ByteSource& source_;
    std::unique_ptr<std::uint8_t[]> buffer_;
    std::size_t capacity_ = 0;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::uint64_t offset_ = 0;
    Result error_;
    bool atEnd_ = false;
    std::uint64_t damageOffset_ = 0;
    std::uint64_t damageNumber_ = 0;
    std::uint32_t attemptsLeft_ = 20000;  // checksums of whole blocks: data made for it would take hours
};

}  // namespace KivStorage
