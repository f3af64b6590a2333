#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <KivStorage/Export.h>

namespace KivStorage {

/// Bytes that were saved into memory, side by side; moved, not copied. They grow where they are as long as the heap has room
/// behind them, which a vector cannot.
class KIV_STORAGE_EXPORT SavedBytes {
public:
    SavedBytes() noexcept = default;
    SavedBytes(SavedBytes&& other) noexcept;
    SavedBytes& operator=(SavedBytes&& other) noexcept;
    ~SavedBytes();

    /// Null where there never were any.
    const std::uint8_t* data() const noexcept { return bytes_.get(); }
    std::size_t size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }
    const std::uint8_t* begin() const noexcept { return bytes_.get(); }
    const std::uint8_t* end() const noexcept { return bytes_.get() + size_; }
    const std::uint8_t& operator[](std::size_t index) const noexcept { return bytes_[index]; }
    /// A copy. Throws std::bad_alloc.
    std::vector<std::uint8_t> ToVector() const { return {begin(), end()}; }

private:
    friend class MemorySink;
    struct Free {
        void operator()(std::uint8_t* bytes) const noexcept;
    };

    /// Room for so many bytes; false, with nothing changed, where there is no memory for it.
    bool Reserve(std::size_t count) noexcept;

    std::unique_ptr<std::uint8_t[], Free> bytes_;
    std::size_t size_ = 0;
    std::size_t room_ = 0;  // for as many, used or not
};

}  // namespace KivStorage
