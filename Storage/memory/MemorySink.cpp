#include "memory/MemorySink.h"

#include <algorithm>
#include <new>

#include "format/Failure.h"

namespace KivStorage {

std::uint8_t* MemorySink::Lend(std::size_t count) {
    if (room_ < count) {
        constexpr std::size_t kMost = 1 << 20;
        const std::size_t size = std::max(count, std::min(count_ / count * count, kMost));
        Piece piece(new (std::nothrow) std::uint8_t[size]);
        if (piece == nullptr) {
            return nullptr;
        }
        pieces_.push_back(std::move(piece));
        next_ = pieces_.back().get();
        room_ = size;
    }
    return next_;
}

void MemorySink::Keep(const std::uint8_t* bytes, std::size_t count) {
    if (bytes == next_) {
        parts_.push_back({bytes, count});
        next_ += count;
        room_ -= count;
    } else {
        Piece piece(new std::uint8_t[count]);
        std::copy_n(bytes, count, piece.get());
        const Part part{piece.get(), count};
        // Not the last: that one is lent.
        pieces_.insert(pieces_.end() - (pieces_.empty() ? 0 : 1), std::move(piece));
        parts_.push_back(part);
    }
    count_ += count;
}

Result MemorySink::Write(const std::uint8_t* bytes, std::size_t count) {
    try {
        Keep(bytes, count);
        return {};
    } catch (const std::bad_alloc&) {
        return FailQuietly(StorageOutOfMemory, "memory");
    }
}

std::string MemorySink::GetPlace() const {
    return "memory";
}

std::vector<std::uint8_t>& MemorySink::Join() {
    const std::size_t needed = joined_.size() + count_;
    if (needed > joined_.capacity()) {
        joined_.reserve(std::max(needed, 2 * joined_.capacity()));
    }
    for (const Part& part : parts_) {
        joined_.insert(joined_.end(), part.bytes, part.bytes + part.count);
    }
    parts_.clear();
    count_ = 0;
    if (pieces_.size() > 1) {
        pieces_.erase(pieces_.begin(), pieces_.end() - 1);
    }
    return joined_;
}

}  // namespace KivStorage
