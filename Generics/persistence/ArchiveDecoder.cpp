#include "persistence/ArchiveDecoder.h"

#include <KivCOMShared/COrvReadArchive.h>
#include <KivGenerics/ResultCode.h>

#include "persistence/Encoding.h"

namespace KivGenerics {

ObjectKind DecodeObjectTag(std::uint16_t tag) noexcept {
    const int kind = tag & kKindMask;
    const auto temporality = static_cast<EnumOrvGenericsTemporality>(tag >> kTemporalityShift & 7);
    if (kind == kLongVector) {
        return {NodeTypeVector, temporality, true};
    }
    if (kind == kLongMap) {
        return {NodeTypeMap, temporality, true};
    }
    return {static_cast<NodeType>(kind), temporality, false};
}

bool ArchiveDecoder::ReadWord(std::uint32_t& word) {
    std::int32_t value = 0;
    status_ = archive_->ReadLong(&value);
    word = static_cast<std::uint32_t>(value);
    return status_ >= 0;
}

std::uint32_t ArchiveDecoder::GetBytes(int count) {
    const auto mask = [](int bytes) { return (std::uint64_t{1} << (8 * bytes)) - 1; };
    std::uint64_t bytes = word_ & mask(left_);
    if (left_ < count) {
        std::uint32_t next = 0;
        if (!ReadWord(next)) {
            return 0;
        }
        bytes = bytes << 32 | next;
        word_ = next;
        left_ += 4;
    }
    left_ -= count;
    return static_cast<std::uint32_t>(bytes >> (8 * left_) & mask(count));
}

std::uint32_t ArchiveDecoder::PeekByte() {
    if (left_ == 0) {
        std::uint32_t next = 0;
        if (!ReadWord(next)) {
            return 0;
        }
        word_ = next;
        left_ = 4;
    }
    return word_ >> (8 * (left_ - 1)) & 0xFF;
}

SemanticTag ArchiveDecoder::GetSemanticTag() {
    const std::uint32_t first = PeekByte();
    if (HasFailed()) {
        return SemanticTagNone;
    }
    const std::uint32_t tag = (first & 0x80) != 0 ? GetBytes(4) & 0x7FFFFFFF : GetBytes(2);
    return static_cast<SemanticTag>(tag);
}

bool ArchiveDecoder::Level::IsTooDeep() const noexcept {
    return decoder_.depth_ > MaxLoadNesting;
}

}  // namespace KivGenerics
