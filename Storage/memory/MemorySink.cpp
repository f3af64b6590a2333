#include "memory/MemorySink.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "format/Failure.h"

namespace KivStorage {

bool MemorySink::NeedRoom(std::size_t count) noexcept {
    const std::size_t needed = saved_.size_ + count;
    return needed <= saved_.room_ || saved_.Reserve(std::max(needed, 2 * saved_.room_)) || saved_.Reserve(needed);
}

std::uint8_t* MemorySink::Lend(std::size_t count) {
    lent_ = NeedRoom(count) ? saved_.bytes_.get() + saved_.size_ : nullptr;
    return lent_;
}

Result MemorySink::Write(const std::uint8_t* bytes, std::size_t count) {
    if (bytes != lent_ && !NeedRoom(count)) {
        return FailQuietly(StorageOutOfMemory, "memory");
    }
    std::uint8_t* const place = saved_.bytes_.get() + saved_.size_;
    if (bytes != place) {
        // What was lent may stand behind its place: what stood before it has been taken.
        std::memmove(place, bytes, count);
    }
    saved_.size_ += count;
    return {};
}

std::string MemorySink::GetPlace() const {
    return "memory";
}

SavedBytes MemorySink::TakeAll() noexcept {
    lent_ = nullptr;
    if (saved_.size_ > 0) {
        saved_.Reserve(saved_.size_);  // gives back what was not needed, or stays
    }
    return std::move(saved_);
}

SavedBytes MemorySink::TakeSoFar() {
    SavedBytes taken;
    if (saved_.size_ > 0) {
        if (!taken.Reserve(saved_.size_)) {
            throw std::bad_alloc();
        }
        std::memcpy(taken.bytes_.get(), saved_.bytes_.get(), saved_.size_);
        taken.size_ = std::exchange(saved_.size_, 0);
    }
    return taken;
}

}  // namespace KivStorage
