#include "format/BlockSearch.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "format/Checksum.h"
#include "format/Framing.h"
#include "format/LittleEndian.h"

namespace KivStorage {
namespace {

// So much is read at a time, and more than a block with what follows it is never needed.
constexpr std::size_t kReadSize = 4 * kBlockSize;
// Bytes that belong to a block of any size when it begins behind one more block of bytes.
constexpr std::size_t kSearchNeeds = 2 * kBlockSize + kTrailerSize;
// A trailer with a greater number of blocks is none: no file system holds so many.
constexpr std::uint64_t kMostBlocks = std::uint64_t{1} << 48;

}  // namespace

// The buffer is not cleared: that would cost more than all else that is done with a small file.
void BlockSearch::MakeRoom(std::size_t size) {
    std::unique_ptr<std::uint8_t[]> larger;
    if (size > capacity_) {
        larger.reset(new std::uint8_t[size]);
        capacity_ = size;
    }
    if (end_ > begin_) {
        std::memmove(larger ? larger.get() : buffer_.get(), Bytes(), end_ - begin_);
    }
    if (larger) {
        buffer_ = std::move(larger);
    }
    end_ -= begin_;
    begin_ = 0;
}

std::size_t BlockSearch::Need(std::size_t count) {
    while (!atEnd_ && end_ - begin_ < count) {
        const std::size_t wanted = std::max(kReadSize, count - (end_ - begin_));
        MakeRoom(end_ - begin_ + wanted);
        std::size_t got = 0;
        error_ = source_.Read(buffer_.get() + end_, wanted, got);
        end_ += got;
        atEnd_ = !error_.Ok() || got < wanted;
    }
    return std::min(count, end_ - begin_);
}

void BlockSearch::Drop(std::size_t count) noexcept {
    begin_ += count;
    offset_ += count;
}

bool BlockSearch::IsBlock(std::size_t at, std::uint64_t number) {
    if (Need(at + kLengthSize) < at + kLengthSize) {
        return false;
    }
    const std::size_t length = GetLittle32(Bytes() + at);
    if (length == 0 || length > kMaxPayload) {
        return false;
    }
    const std::size_t end = at + kLengthSize + length + kChecksumSize;
    return Need(end) == end &&
           Checksum(Bytes() + at, kLengthSize + length, number) == GetLittle64(Bytes() + end - kChecksumSize);
}

bool BlockSearch::IsTrailer(std::size_t at, std::uint64_t& blocks) {
    if (Need(at + kTrailerSize) < at + kTrailerSize || GetLittle32(Bytes() + at) != 0) {
        return false;
    }
    blocks = GetLittle64(Bytes() + at + 4);
    return blocks <= kMostBlocks && Checksum(Bytes() + at, 36, blocks + 1) == GetLittle64(Bytes() + at + 36);
}

void BlockSearch::Begin(std::uint64_t number) noexcept {
    damageOffset_ = offset_;
    damageNumber_ = number;
}

/// The checksum tells a block's number only by trying: the one that its place suggests, and those around it.
bool BlockSearch::IsBlockOfSomeNumber(std::size_t at, std::uint64_t& number) {
    const std::uint64_t expected = damageNumber_ + (offset_ + at - damageOffset_) / kBlockSize;
    const std::uint64_t first = expected > 3 ? expected - 2 : 1;
    for (std::uint64_t candidate = first; candidate <= expected + 3 && attemptsLeft_ > 0; ++candidate) {
        attemptsLeft_ -= 1;
        if (candidate >= damageNumber_ && IsBlock(at, candidate)) {
            number = candidate;
            return true;
        }
    }
    return false;
}

bool BlockSearch::Find(std::size_t& at, std::uint64_t& number) {
    std::uint8_t fullLength[kLengthSize];
    PutLittle32(fullLength, static_cast<std::uint32_t>(kMaxPayload));
    const std::size_t there = std::min(Need(kSearchNeeds), kBlockSize);
    for (at = 0; at <= there; ++at) {
        // All blocks but the last are full, and stand at equal distances unless bytes were put in or taken out.
        const bool onGrid = (offset_ + at - damageOffset_) % kBlockSize == 0;
        const std::size_t left = Need(at + kLengthSize) - at;
        const bool isFull = left == kLengthSize && std::memcmp(Bytes() + at, fullLength, kLengthSize) == 0;
        if ((onGrid || isFull) && IsBlockOfSomeNumber(at, number)) {
            return true;
        }
        std::uint64_t blocks = 0;
        if (IsTrailer(at, blocks)) {
            number = blocks + 1;
            return true;
        }
    }
    at = there;
    return false;
}

}  // namespace KivStorage
