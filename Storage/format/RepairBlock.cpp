#include <KivStorage/RepairBlock.h>

#include <utility>

#include "format/Checksum.h"
#include "format/Framing.h"
#include "format/LittleEndian.h"

namespace KivStorage {
namespace {

// What stands before a byte is put into the checksum once for all that is tried there: about half of the work.
constexpr std::size_t kPiece = 256;
// What may be put into checksums: some seconds, and enough for every bit of a full block.
constexpr std::uint64_t kByteBudget = 40'000'000'000;

class Repair {
public:
    explicit Repair(const ScannedPart& part)
        : bytes_(part.bytes, part.bytes + part.size),
          covered_(part.size - kChecksumSize),
          number_(part.number),
          before_(part.number),
          trial_(part.number) {}

    /// The place of the byte that had to be changed; the size when there is none.
    std::size_t Run(const RepairProgress& progress) {
        if (TryChecksum()) {
            return covered_;
        }
        if (TryLength()) {
            return 0;
        }
        const std::uint64_t size = covered_;
        const bool everyValue = 255 * size * size <= kByteBudget;
        for (std::size_t at = 0; at < covered_; ++at) {
            if (at == begin_ + kPiece) {
                before_.Add(bytes_.data() + begin_, kPiece);
                begin_ = at;
                if (progress) {
                    progress(at);
                }
            }
            if (everyValue ? TryValues(at) : TryBits(at)) {
                return at;
            }
        }
        return bytes_.size();
    }

    std::vector<std::uint8_t> TakeBytes() { return std::move(bytes_); }

private:
    std::uint64_t Stored() const noexcept { return GetLittle64(bytes_.data() + covered_); }
    bool Matches() const noexcept { return Checksum(bytes_.data(), covered_, number_) == Stored(); }

    /// The same for a change of a byte from begin_ on.
    bool MatchesFromBegin() noexcept {
        trial_.StartFrom(before_);
        trial_.Add(bytes_.data() + begin_, covered_ - begin_);
        return trial_.Get() == Stored();
    }

    /// Whether all but one byte of the checksum are right: then the wrong byte stands there.
    bool TryChecksum() {
        const std::uint64_t right = Checksum(bytes_.data(), covered_, number_);
        const std::uint64_t wrong = right ^ Stored();
        int bytes = 0;
        for (int shift = 0; shift < 64; shift += 8) {
            bytes += (wrong >> shift & 0xFF) != 0 ? 1 : 0;
        }
        if (bytes != 1) {
            return false;
        }
        PutLittle64(bytes_.data() + covered_, right);
        return true;
    }

    /// Whether only the length is wrong, in whatever bytes.
    bool TryLength() {
        const std::uint32_t old = GetLittle32(bytes_.data());
        PutLittle32(bytes_.data(), static_cast<std::uint32_t>(covered_ - kLengthSize));
        if (Matches()) {
            return true;
        }
        PutLittle32(bytes_.data(), old);
        return false;
    }

    bool TryBits(std::size_t at) {
        const std::uint8_t old = bytes_[at];
        for (unsigned bit = 1; bit < 0x100; bit <<= 1) {
            bytes_[at] = static_cast<std::uint8_t>(old ^ bit);
            if (MatchesFromBegin()) {
                return true;
            }
        }
        bytes_[at] = old;
        return false;
    }

    bool TryValues(std::size_t at) {
        const std::uint8_t old = bytes_[at];
        for (unsigned change = 1; change < 0x100; ++change) {
            bytes_[at] = static_cast<std::uint8_t>(old ^ change);
            if (MatchesFromBegin()) {
                return true;
            }
        }
        bytes_[at] = old;
        return false;
    }

    std::vector<std::uint8_t> bytes_;
    std::size_t covered_;
    std::uint64_t number_;
    std::size_t begin_ = 0;  // of the piece that is tried
    PiecewiseChecksum before_;  // of what stands before it
    PiecewiseChecksum trial_;
};

}  // namespace

RepairedBlock RepairBlock(const ScannedPart& part, const RepairProgress& progress) {
    RepairedBlock repaired;
    const bool hasSize = kLengthSize + kChecksumSize < part.size && part.size <= kBlockSize;
    if (part.state.Ok() || !hasSize || (part.kind != ScanPart::Block && part.kind != ScanPart::Unreadable)) {
        return repaired;
    }
    Repair repair(part);
    repaired.changed = repair.Run(progress);
    repaired.found = repaired.changed < part.size;
    if (repaired.found) {
        repaired.bytes = repair.TakeBytes();
    }
    return repaired;
}

}  // namespace KivStorage
