#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <KivStorage/Export.h>

namespace KivStorage {

/// What an item of saved data is: its first byte.
enum class ScannedItemType : std::uint8_t {
    Long = 0x01,
    Double = 0x02,
    Short = 0x03,
    Text = 0x04,
    Guid = 0x05,
    Variant = 0x06,
    ObjectOpens = 0x07,
    ObjectEnds = 0x08,
};

/// An item of saved data as it stands there.
struct KIV_STORAGE_EXPORT ScannedItem {
    ScannedItemType type = ScannedItemType::Long;
    std::uint64_t offset = 0;             ///< where its first byte stands in the data
    std::uint64_t position = 0;           ///< how many bytes of items stand before it
    const std::uint8_t* bytes = nullptr;  ///< the whole item, its type included; valid until the next call
    std::size_t size = 0;

    /// Of a Long.
    std::int32_t GetLong() const noexcept;
    /// Of an ObjectOpens.
    std::uint16_t GetTag() const noexcept;
    /// Of a Double: its 64 bits.
    std::uint64_t GetBits() const noexcept;
    /// Of a Text: the number of its units, and the bytes of one.
    std::uint32_t GetUnits() const noexcept;
    char16_t GetUnit(std::uint32_t i) const noexcept;
};

/// Tells the items in runs of bytes apart; an item may begin in one run and end in the next.
///
/// Threads:    one thread at a time.
/// Cost:       an item within a run is handed out where it stands; one that goes on is collected, 512,005 bytes at most.
class KIV_STORAGE_EXPORT ItemScanner {
public:
    enum class Step {
        Item,  ///< an item is handed out
        RunEnds,  ///< the run has ended, maybe within an item
        Unknown,  ///< no item can stand here: its type is unknown, or it is a text longer than any tree holds
    };

    /// The bytes to go on with, which stand at `offset` in the data; they must stay until RunEnds.
    void Feed(const std::uint8_t* bytes, std::size_t size, std::uint64_t offset) noexcept;
    /// Throws std::bad_alloc. After Unknown it answers Unknown until the next Feed.
    Step Next(ScannedItem& item);

    /// The size of the item that begins at `bytes`; 0 when none does, or when it does not end within `size`.
    static std::size_t SizeWithin(const std::uint8_t* bytes, std::size_t size) noexcept;

    /// How many bytes of an item that goes on in the next run have been seen.
    std::size_t GetPending() const noexcept { return pending_.size(); }
    const std::uint8_t* GetPendingBytes() const noexcept { return pending_.data(); }
    /// Forgets them: what comes next begins with an item.
    void DropPending() noexcept { pending_.clear(); }
    /// How many bytes of the run have not been looked at.
    std::size_t GetRest() const noexcept { return size_ - next_; }
    /// Leaves out bytes of the run.
    void Skip(std::size_t count) noexcept { next_ += count; }

private:
    bool Collect(std::size_t size);
    bool TakeInRun(ScannedItem& item);
    Step Gather(ScannedItem& item);
    void Hand(ScannedItem& item, const std::uint8_t* bytes, std::size_t size, std::uint64_t offset) noexcept;

    const std::uint8_t* bytes_ = nullptr;
    std::size_t size_ = 0;
    std::size_t next_ = 0;
    std::uint64_t offset_ = 0;
    std::uint64_t position_ = 0;
    std::vector<std::uint8_t> pending_;
    std::uint64_t pendingOffset_ = 0;
    bool handed_ = false;  // what is collected was handed out
};

}  // namespace KivStorage
