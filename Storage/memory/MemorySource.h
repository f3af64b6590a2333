#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "format/ByteSink.h"

namespace KivStorage {

/// Bytes that the caller keeps.
class MemorySource final : public ByteSource {
public:
    MemorySource(const std::uint8_t* bytes, std::size_t count) noexcept : bytes_(bytes), count_(count) {}

    Result Read(std::uint8_t* to, std::size_t count, std::size_t& got) override {
        got = std::min(count, count_ - next_);
        if (got > 0) {
            std::memcpy(to, bytes_ + next_, got);
            next_ += got;
        }
        return {};
    }
    const std::uint8_t* Lend(std::size_t count) override {
        if (count > count_ - next_) {
            return nullptr;
        }
        const std::uint8_t* const place = bytes_ + next_;
        next_ += count;
        return place;
    }
    std::uint64_t GetSize() const override { return count_; }
    std::string GetPlace() const override { return "memory"; }

private:
    const std::uint8_t* bytes_;
    std::size_t count_;
    std::size_t next_ = 0;
};

}  // namespace KivStorage
