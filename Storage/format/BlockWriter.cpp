#include "format/BlockWriter.h"

#include <algorithm>

#include "format/Checksum.h"
#include "format/LittleEndian.h"

namespace KivStorage {

BlockWriter::BlockWriter(ByteSink& sink) : sink_(sink) {
    BeginBlock();
}

void BlockWriter::BeginBlock() {
    const std::size_t front = GetFront();
    block_ = sink_.Lend(front + kBlockSize);
    if (block_ == nullptr) {
        if (own_ == nullptr) {
            own_.reset(new std::uint8_t[kHeaderSize + kBlockSize]);
        }
        block_ = own_.get();
    }
    block_ += front;
    next_ = Payload();
    end_ = Payload() + kMaxPayload;
}

Result BlockWriter::Append(const std::uint8_t* bytes, std::size_t count) {
    while (count > 0) {
        if (GetUsed() == kMaxPayload) {
            if (Result result = Flush(); !result.Ok()) {
                return result;
            }
            BeginBlock();
        }
        const std::size_t part = std::min(count, kMaxPayload - GetUsed());
        std::memcpy(next_, bytes, part);
        next_ += part;
        bytes += part;
        count -= part;
    }
    return {};
}

void BlockWriter::PutHeader(std::uint8_t* header) {
    std::memset(header, 0, kHeaderSize);
    std::memcpy(header, kMagic, sizeof kMagic);
    PutLittle32(header + 8, kVersion);
    PutLittle64(header + 16, Checksum(header, 16, 0));
}

Result BlockWriter::Flush() {
    const std::size_t front = GetFront();
    std::uint8_t* const first = block_ - front;
    std::size_t size = front;
    if (front > 0) {
        PutHeader(first);
        hasHeader_ = true;
    }
    if (const std::size_t used = GetUsed(); used > 0) {
        // The length stands before what is summed up, so that it is covered too; the seed ties the block to its place.
        PutLittle32(block_, static_cast<std::uint32_t>(used));
        const std::uint64_t checksum = Checksum(block_, kLengthSize + used, blocks_ + 1);
        PutLittle64(next_, checksum);
        chain_ = ChainChecksum(chain_, checksum);
        blocks_ += 1;
        itemBytes_ += used;
        next_ = Payload();
        size += kLengthSize + used + kChecksumSize;
    }
    return size > 0 ? sink_.Write(first, size) : Result{};
}

Result BlockWriter::Finish(std::uint64_t items) {
    if (Result result = Flush(); !result.Ok()) {
        return result;
    }
    std::uint8_t trailer[kTrailerSize] = {};
    PutLittle64(trailer + 4, blocks_);
    PutLittle64(trailer + 12, items);
    PutLittle64(trailer + 20, itemBytes_);
    PutLittle64(trailer + 28, chain_);
    PutLittle64(trailer + 36, Checksum(trailer, 36, blocks_ + 1));
    finished_ = true;
    return sink_.Write(trailer, sizeof trailer);
}

std::uint64_t BlockWriter::GetByteCount() const noexcept {
    const std::uint64_t whole = FramedSize(itemBytes_ + GetUsed());
    return finished_ ? whole : whole - kTrailerSize;
}

std::string BlockWriter::GetPlace() const {
    const std::uint64_t written = kHeaderSize + itemBytes_ + blocks_ * (kLengthSize + kChecksumSize);
    return PlaceInBlock(sink_.GetPlace(), blocks_ + 1, written + kLengthSize + GetUsed());
}

std::string PlaceInBlock(const std::string& place, std::uint64_t block, std::uint64_t byte) {
    return place + ", block " + std::to_string(block) + ", byte " + std::to_string(byte);
}

}  // namespace KivStorage
