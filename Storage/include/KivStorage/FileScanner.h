#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include <KivStorage/Export.h>
#include <KivStorage/Result.h>

namespace KivStorage {

/// What a stretch of saved data is.
enum class ScanPart : std::int32_t {
    Header,
    Block,
    Trailer,
    Unreadable,  ///< neither of these: damaged beyond recognition, put in, or missing when its size is 0
};

/// A stretch of saved data, as it stands there.
struct ScannedPart {
    ScanPart kind = ScanPart::Unreadable;
    std::uint64_t offset = 0;             ///< of its first byte
    std::uint64_t number = 0;             ///< a block's, counted from 1; of anything else that of the next block
    const std::uint8_t* bytes = nullptr;  ///< the whole stretch; valid until the next one is asked for
    std::size_t size = 0;
    Result state;  ///< a success when its checksum matches and it stands in its place

    /// Of a block: its bytes of items, without the length before and the checksum behind them.
    const std::uint8_t* GetItems() const noexcept { return bytes + 4; }
    std::size_t GetItemSize() const noexcept { return size - 12; }
};

/// What a trailer says of the data before it.
struct ScannedTotals {
    std::uint64_t blocks = 0;
    std::uint64_t items = 0;
    std::uint64_t itemBytes = 0;
};

class BlockSearch;
class ByteSource;

/// Takes saved data apart into header, blocks and trailer without believing them, and goes on behind a damage.
///
/// Where a block is not whole, the next one that is, or the trailer, is looked for: blocks know their own number, so that it
/// is told whether some are missing. The stretches that are handed out cover every byte once, in order.
///
/// Lives in:   the heap; a scanner over memory reads bytes that its maker keeps.
/// Threads:    one thread at a time.
/// On failure: what is wrong with the data is in the parts; a source that cannot be read ends the scan and is in GetError.
/// Cost:       a window of less than 1 MiB, whatever the size of the whole; one pass.
class KIV_STORAGE_EXPORT FileScanner {
public:
    /// A scanner over a regular file; what went wrong with opening it is in GetError.
    static std::unique_ptr<FileScanner> OpenFile(const std::filesystem::path& path);
    /// A scanner over bytes that must stay where they are as long as it lives; never null.
    static std::unique_ptr<FileScanner> OpenMemory(const void* bytes, std::size_t count);

    FileScanner(const FileScanner&) = delete;
    FileScanner& operator=(const FileScanner&) = delete;
    ~FileScanner();

    /// The next stretch; false behind the last one. Throws std::bad_alloc.
    bool Next(ScannedPart& part);
    /// Why the source could not be opened or read; a success when it could.
    const Result& GetError() const noexcept { return error_; }
    /// How messages name the data: `file "name"`. Throws std::bad_alloc.
    std::string GetPlace() const;
    /// How many bytes there are in all.
    std::uint64_t GetSize() const noexcept;
    /// What the trailer said; zeros before it has been handed out, or when it is damaged.
    const ScannedTotals& GetTotals() const noexcept { return totals_; }

private:
    explicit FileScanner(std::unique_ptr<ByteSource> source);

    Result Fault(std::int32_t code) const;
    void Hand(ScannedPart& part, ScanPart kind, std::size_t size, Result state);
    bool TakeHeader(ScannedPart& part);
    bool TakeBlock(ScannedPart& part);
    bool TakeTrailer(ScannedPart& part);
    bool TakeTruncated(ScannedPart& part);
    bool TakeTrailing(ScannedPart& part);
    bool TakeDamaged(ScannedPart& part, std::int32_t code);
    bool SearchOn(ScannedPart& part);
    bool FollowsWell(std::size_t size);

    enum class State { Header, Blocks, Searching, Trailing, Done };

    std::unique_ptr<ByteSource> source_;
    std::unique_ptr<BlockSearch> window_;
    Result error_;
    State state_ = State::Header;
    std::int32_t searchCode_ = 0;  // what is wrong with the stretch that is being searched
    std::uint64_t number_ = 1;  // of the next block
    std::uint64_t itemBytes_ = 0;
    std::uint64_t chain_ = 0;
    bool whole_ = true;  // no damage so far: the totals can be compared
    ScannedTotals totals_;
};

}  // namespace KivStorage
