#include <KivStorage/FileScanner.h>

#include <algorithm>
#include <utility>

#include "file/InputFile.h"
#include "format/BlockSearch.h"
#include "format/BlockWriter.h"
#include "format/Checksum.h"
#include "format/Failure.h"
#include "format/Framing.h"
#include "format/LittleEndian.h"
#include "memory/MemorySource.h"

namespace KivStorage {

FileScanner::FileScanner(std::unique_ptr<ByteSource> source)
    : source_(std::move(source)), window_(std::make_unique<BlockSearch>(*source_)) {}
FileScanner::~FileScanner() = default;

std::unique_ptr<FileScanner> FileScanner::OpenFile(const std::filesystem::path& path) {
    auto file = std::make_unique<InputFile>();
    Result opened = file->Open(path);
    std::unique_ptr<FileScanner> scanner(new FileScanner(std::move(file)));
    scanner->error_ = std::move(opened);
    return scanner;
}

std::unique_ptr<FileScanner> FileScanner::OpenMemory(const void* bytes, std::size_t count) {
    return std::unique_ptr<FileScanner>(
        new FileScanner(std::make_unique<MemorySource>(static_cast<const std::uint8_t*>(bytes), count)));
}

std::string FileScanner::GetPlace() const {
    return source_->GetPlace();
}

std::uint64_t FileScanner::GetSize() const noexcept {
    return source_->GetSize();
}

/// The sentence for a damage names the place where the next stretch begins.
Result FileScanner::Fault(std::int32_t code) const {
    return Fail(code, PlaceInBlock(source_->GetPlace(), state_ == State::Header ? 0 : number_, window_->GetOffset()));
}

void FileScanner::Hand(ScannedPart& part, ScanPart kind, std::size_t size, Result state) {
    whole_ = whole_ && state.Ok();
    part.kind = kind;
    part.offset = window_->GetOffset();
    part.number = number_;
    part.bytes = window_->Bytes();
    part.size = size;
    part.state = std::move(state);
    window_->Drop(size);  // the bytes stay where they are until more are needed
}

bool FileScanner::Next(ScannedPart& part) {
    if (!error_.Ok() || state_ == State::Done) {
        return false;
    }
    bool found = false;
    switch (state_) {
        case State::Header: found = TakeHeader(part); break;
        case State::Blocks: found = TakeBlock(part); break;
        case State::Searching: found = SearchOn(part); break;
        case State::Trailing: found = TakeTrailing(part); break;
        case State::Done: break;
    }
    if (!window_->GetError().Ok()) {
        error_ = window_->GetError();
        return false;
    }
    return found;
}

bool FileScanner::TakeHeader(ScannedPart& part) {
    const std::size_t got = window_->Need(kHeaderSize);
    const std::uint8_t* const bytes = window_->Bytes();
    Result state;
    const std::size_t mark = got < sizeof kMagic ? got : sizeof kMagic;
    if (got == 0 || !std::equal(bytes, bytes + mark, kMagic)) {
        state = Fault(got == 0 ? StorageTruncated : StorageNotASavedTree);
    } else if (got < kHeaderSize) {
        state = Fault(StorageTruncated);
    } else if (GetLittle64(bytes + 16) != Checksum(bytes, 16, 0)) {
        state = Fault(StorageHeaderDamaged);
    } else if (GetLittle32(bytes + 8) != kVersion || GetLittle32(bytes + 12) != 0) {
        state = Fault(StorageUnknownVersion);
    }
    Hand(part, ScanPart::Header, got, std::move(state));
    state_ = got < kHeaderSize ? State::Done : State::Blocks;
    return true;
}

bool FileScanner::TakeBlock(ScannedPart& part) {
    if (window_->Need(kLengthSize) < kLengthSize) {
        return TakeTruncated(part);
    }
    const std::size_t length = GetLittle32(window_->Bytes());
    if (length == 0) {
        return TakeTrailer(part);
    }
    if (length > kMaxPayload) {
        return TakeDamaged(part, StorageBlockLength);
    }
    const std::size_t size = kLengthSize + length + kChecksumSize;
    if (window_->Need(size) == size) {
        const std::uint64_t checksum = Checksum(window_->Bytes(), kLengthSize + length, number_);
        const bool matches = checksum == GetLittle64(window_->Bytes() + kLengthSize + length);
        // Where the next block follows, the length at least is right.
        if (matches || FollowsWell(size)) {
            Hand(part, ScanPart::Block, size, matches ? Result{} : Fault(StorageBlockDamaged));
            chain_ = ChainChecksum(chain_, checksum);
            itemBytes_ += length;
            number_ += 1;
            return true;
        }
        return TakeDamaged(part, StorageBlockDamaged);
    }
    return TakeDamaged(part, StorageTruncated);
}

bool FileScanner::FollowsWell(std::size_t size) {
    std::uint64_t blocks = 0;
    return window_->IsBlock(size, number_ + 1) || (window_->IsTrailer(size, blocks) && blocks == number_);
}

bool FileScanner::TakeTrailer(ScannedPart& part) {
    std::uint64_t blocks = 0;
    if (!window_->IsTrailer(0, blocks)) {
        const std::size_t left = window_->Need(kTrailerSize + 1);
        if (left > kTrailerSize) {
            return TakeDamaged(part, StorageBlockDamaged);  // a block whose length is gone
        }
        Hand(part, ScanPart::Trailer, left, Fault(left < kTrailerSize ? StorageTruncated : StorageTrailerDamaged));
        state_ = State::Done;
        return true;
    }
    const std::uint8_t* const bytes = window_->Bytes();
    totals_ = {blocks, GetLittle64(bytes + 12), GetLittle64(bytes + 20)};
    // With a block lost, the chain cannot be told.
    const bool same = !whole_ || (totals_.blocks == number_ - 1 && totals_.itemBytes == itemBytes_ &&
                                  GetLittle64(bytes + 28) == chain_);
    Hand(part, ScanPart::Trailer, kTrailerSize, same ? Result{} : Fault(StorageTotalsDiffer));
    state_ = State::Trailing;
    return true;
}

bool FileScanner::TakeTruncated(ScannedPart& part) {
    Hand(part, ScanPart::Unreadable, window_->Need(kLengthSize), Fault(StorageTruncated));
    state_ = State::Done;
    return true;
}

bool FileScanner::TakeTrailing(ScannedPart& part) {
    const std::size_t more = window_->Need(kBlockSize);
    if (more == 0) {
        state_ = State::Done;
        return false;
    }
    Hand(part, ScanPart::Unreadable, more, Fault(StorageTrailingBytes));
    return true;
}

bool FileScanner::TakeDamaged(ScannedPart& part, std::int32_t code) {
    state_ = State::Searching;
    searchCode_ = code;
    window_->Begin(number_);
    return SearchOn(part);
}

/// Hands out what is no block, up to the next one.
bool FileScanner::SearchOn(ScannedPart& part) {
    std::size_t size = 0;
    std::uint64_t number = 0;
    const bool found = window_->Find(size, number);
    if (!found && size == 0) {
        state_ = State::Done;
        return false;
    }
    Hand(part, ScanPart::Unreadable, size, Fault(searchCode_));
    if (found) {
        number_ = number;
        state_ = State::Blocks;
    }
    return true;
}

}  // namespace KivStorage
