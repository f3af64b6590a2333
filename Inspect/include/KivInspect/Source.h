#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace KivInspect {

/// Where bytes are read from.
class Source {
public:
    virtual ~Source() = default;

    /// Fills `bytes` with up to `size` bytes and returns how many; 0 at the end alone. Throws an exception derived from
    /// std::exception, with a sentence for people, when it cannot.
    virtual std::size_t Read(char* bytes, std::size_t size) = 0;

protected:
    Source() = default;
    Source(const Source&) = default;
    Source& operator=(const Source&) = default;
};

/// Reads from memory that stays where it is.
class MemorySource final : public Source {
public:
    explicit MemorySource(std::string_view bytes) noexcept : rest_(bytes) {}

    std::size_t Read(char* bytes, std::size_t size) override {
        const std::size_t count = rest_.size() < size ? rest_.size() : size;
        if (count > 0) {
            std::memcpy(bytes, rest_.data(), count);
        }
        rest_.remove_prefix(count);
        return count;
    }

private:
    std::string_view rest_;
};

}  // namespace KivInspect
