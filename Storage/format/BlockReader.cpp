#include "format/BlockReader.h"

#include <algorithm>
#include <cstring>

#include "format/BlockWriter.h"
#include "format/Checksum.h"
#include "format/Failure.h"
#include "format/LittleEndian.h"

namespace KivStorage {

BlockReader::BlockReader(ByteSource& source, std::uint64_t maxBytes)
    : source_(source),
      maxBytes_(maxBytes),
      block_(new std::uint8_t[kBlockSize]),
      start_(block_.get()),
      next_(Payload()),
      end_(Payload()) {}

/// Stands at the beginning of a block of so many bytes, which stands there itself.
void BlockReader::Enter(const std::uint8_t* start, std::size_t size) noexcept {
    start_ = start;
    size_ = size;
    next_ = Payload();
    Show();
}

/// A fault of the framing: the place is the block, or trailer, that was being read.
Result BlockReader::Fault(std::int32_t code) const {
    return Fail(code, PlaceInBlock(source_.GetPlace(), headerRead_ ? blocks_ + 1 : 0, blockStart_));
}

Result BlockReader::Fill(std::uint8_t* to, std::size_t count) {
    if (count > maxBytes_ - taken_) {
        return Fault(StorageTooManyBytes);
    }
    std::size_t got = 0;
    if (Result result = source_.Read(to, count, got); !result.Ok()) {
        return result;
    }
    taken_ += got;
    return got == count ? Result{} : Fault(StorageTruncated);
}

/// The next bytes of the block, behind the `at` that have come: where the source lends them, else copied.
Result BlockReader::FillBlock(std::size_t at, std::size_t count) {
    const bool mayRead = count <= maxBytes_ - taken_;
    const bool isLent = at == 0 || start_ != block_.get();
    if (const std::uint8_t* const lent = mayRead && isLent ? source_.Lend(count) : nullptr) {
        Enter(lent - at, 0);
        taken_ += count;
        return {};
    }
    if (at > 0 && isLent) {
        std::memcpy(block_.get(), start_, at);
    }
    Enter(block_.get(), 0);
    return Fill(block_.get() + at, count);
}

Result BlockReader::ReadHeader() {
    std::uint8_t header[kHeaderSize];
    // Short data are cut off only if what there is of the mark is right; else they are something else.
    if (Result result = Fill(header, sizeof kMagic); !result.Ok()) {
        const bool foreign = result.code == StorageTruncated && std::memcmp(header, kMagic, taken_) != 0;
        return foreign ? Fault(StorageNotASavedTree) : result;
    }
    if (std::memcmp(header, kMagic, sizeof kMagic) != 0) {
        return Fault(StorageNotASavedTree);
    }
    if (Result result = Fill(header + sizeof kMagic, sizeof header - sizeof kMagic); !result.Ok()) {
        return result;
    }
    if (GetLittle64(header + 16) != Checksum(header, 16, 0)) {
        return Fault(StorageHeaderDamaged);
    }
    // Bytes reserved today may mean something tomorrow, so they belong to the version.
    if (GetLittle32(header + 8) != kVersion || GetLittle32(header + 12) != 0) {
        return Fault(StorageUnknownVersion);
    }
    headerRead_ = true;
    return {};
}

Result BlockReader::LoadBlock() {
    if (!headerRead_) {
        if (Result result = ReadHeader(); !result.Ok()) {
            return result;
        }
    }
    Enter(start_, 0);
    blockStart_ = taken_;
    if (Result result = FillBlock(0, kLengthSize); !result.Ok()) {
        return result;
    }
    const std::uint32_t length = GetLittle32(start_);
    if (length == 0) {
        return ReadTrailer();
    }
    if (length > kMaxPayload) {
        return Fault(StorageBlockLength);
    }
    if (Result result = FillBlock(kLengthSize, length + kChecksumSize); !result.Ok()) {
        return result;
    }
    const std::uint64_t checksum = Checksum(start_, kLengthSize + length, blocks_ + 1);
    if (checksum != GetLittle64(Payload() + length)) {
        return Fault(StorageBlockDamaged);
    }
    chain_ = ChainChecksum(chain_, checksum);
    blocks_ += 1;
    itemBytes_ += length;
    Enter(start_, length);
    return {};
}

Result BlockReader::ReadTrailer() {
    std::uint8_t trailer[kTrailerSize] = {};
    if (Result result = Fill(trailer + kLengthSize, kTrailerSize - kLengthSize); !result.Ok()) {
        return result;
    }
    if (GetLittle64(trailer + 36) != Checksum(trailer, 36, blocks_ + 1)) {
        return Fault(StorageTrailerDamaged);
    }
    if (GetLittle64(trailer + 4) != blocks_ || GetLittle64(trailer + 20) != itemBytes_ ||
        GetLittle64(trailer + 28) != chain_) {
        return Fault(StorageTotalsDiffer);
    }
    trailerItems_ = GetLittle64(trailer + 12);
    std::uint8_t more = 0;
    std::size_t got = 0;
    if (Result result = source_.Read(&more, 1, got); !result.Ok()) {
        return result;
    }
    if (got > 0) {
        return Fail(StorageTrailingBytes, source_.GetPlace() + ", byte " + std::to_string(taken_));
    }
    atEnd_ = true;
    return {};
}

Result BlockReader::CheckEnd(bool& end) {
    if (GetLeft() == 0 && !atEnd_) {
        if (Result result = LoadBlock(); !result.Ok()) {
            return result;
        }
    }
    end = atEnd_;
    return {};
}

template <class Use>
Result BlockReader::Consume(std::uint64_t count, Use use) {
    while (count > 0) {
        bool end = false;
        if (Result result = CheckEnd(end); !result.Ok()) {
            return result;
        }
        if (end) {
            return Fault(StorageItemCutOff);
        }
        const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(count, GetLeft()));
        use(next_, part);
        next_ += part;
        count -= part;
    }
    return {};
}

Result BlockReader::Read(std::uint8_t* to, std::size_t count) {
    return Consume(count, [&to](const std::uint8_t* from, std::size_t part) {
        std::memcpy(to, from, part);
        to += part;
    });
}

Result BlockReader::Skip(std::uint64_t count) {
    return Consume(count, [](const std::uint8_t*, std::size_t) {});
}

std::uint64_t BlockReader::GetRest() const noexcept {
    const std::uint64_t size = source_.GetSize();
    return GetLeft() + (size > taken_ ? size - taken_ : 0);
}

std::string BlockReader::GetPlace() const {
    // Behind the last byte of a block the next byte stands in the next one, behind its length.
    const bool atBorder = GetLeft() == 0 && !atEnd_;
    const std::uint64_t block = atBorder ? blocks_ + 1 : blocks_;
    const std::uint64_t byte = atBorder ? std::max<std::uint64_t>(taken_, kHeaderSize) + kLengthSize
                                        : blockStart_ + (atEnd_ ? 0 : kLengthSize + size_ - GetLeft());
    return PlaceInBlock(source_.GetPlace(), atEnd_ ? blocks_ + 1 : block, byte);
}

}  // namespace KivStorage
