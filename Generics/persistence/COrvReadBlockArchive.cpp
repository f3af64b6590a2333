#include "persistence/COrvReadBlockArchive.h"

#include <cstring>
#include <memory>
#include <new>

#include "core/TextUnits.h"
#include "persistence/Halves.h"

namespace KivGenerics {
namespace {

/// Texts of so many units are read without the heap.
constexpr std::uint32_t kShortText = 63;

}  // namespace

COrvReadBlockArchive::COrvReadBlockArchive(KivCOMShared::BlockReadStream* stream) : stream_(stream) {
    if (stream_ != nullptr) {
        stream_->AddRef();
    }
}

COrvReadBlockArchive::~COrvReadBlockArchive() {
    if (stream_ != nullptr) {
        stream_->Release();
    }
}

std::int32_t COrvReadBlockArchive::ReadInt64(std::int64_t* value) {
    *value = 0;
    if (!MayReadValue()) {
        return ResultUnexpected;
    }
    std::int32_t low = 0;
    std::int32_t high = 0;
    std::int32_t result = stream_->GetLong(&low);
    if (result >= 0) {
        result = stream_->GetLong(&high);
        *value = JoinHalves(low, high);
    }
    return result;
}

std::int32_t COrvReadBlockArchive::ReadWideString(KivBase::WString& text) {
    text.clear();
    if (!MayReadValue()) {
        return ResultUnexpected;
    }
    std::uint32_t length = 0;
    std::int32_t result = stream_->GetStringLength(&length);
    if (result < 0) {
        return result;
    }
    if (length > MaxStringUnits) {
        return ArchiveStringTooLong;
    }
    // Zeros throughout: the text is terminated whatever the stream fills in.
    if (length <= kShortText) {
        char16_t shortText[kShortText + 1];
        std::memset(shortText, 0, (length + 1) * sizeof *shortText);
        return ReadUnits(shortText, length, text);
    }
    const std::unique_ptr<char16_t[]> units(new (std::nothrow) char16_t[length + 1]());
    return units != nullptr ? ReadUnits(units.get(), length, text) : ResultOutOfMemory;
}

std::int32_t COrvReadBlockArchive::ReadUnits(char16_t* units, std::uint32_t length, KivBase::WString& text) {
    const std::int32_t result = stream_->GetStringChars(length, units);
    if (result < 0) {
        return result;
    }
    text.assign(units, CountBeforeNul(units, length));
    return ResultSuccess;
}

std::int32_t COrvReadBlockArchive::ReadVariant(VARIANT* value) {
    VariantInit(value);
    return MayReadValue() ? stream_->GetVariant(value) : ResultUnexpected;
}

std::int32_t COrvReadBlockArchive::ReadObjectTag(std::uint16_t expected, std::uint16_t* tag) {
    if (tag == nullptr) {
        return ResultNullPointer;
    }
    *tag = 0;
    if (stream_ == nullptr) {
        return ResultUnexpected;
    }
    std::uint16_t next = pendingTag_;
    if (next == 0) {
        const std::int32_t result = stream_->GetObjectTag(&next);
        if (result < 0 || result == ResultNoObject) {
            return result;
        }
    }
    if (expected != 0 && next != expected) {
        pendingTag_ = next;
        return ResultNoObject;
    }
    pendingTag_ = 0;
    *tag = next;
    return ResultSuccess;
}

std::int32_t COrvReadBlockArchive::ReadExpectedObjectTag(std::uint16_t expected, std::uint16_t* tag) {
    if (tag == nullptr) {
        return ResultNullPointer;
    }
    *tag = 0;
    if (stream_ == nullptr) {
        return ResultUnexpected;
    }
    COrvReadArchive* const self = this;  // through the virtual table
    const std::int32_t result = self->ReadObjectTag(expected, tag);
    return result == ResultNoObject ? ArchiveTypeMismatch : result;
}

std::int32_t COrvReadBlockArchive::EndReadObject() {
    if (stream_ == nullptr) {
        return ResultUnexpected;
    }
    if (pendingTag_ != 0) {
        const std::int32_t result = stream_->GetEndObject();
        if (result < 0) {
            return result;
        }
        pendingTag_ = 0;
    }
    return stream_->GetEndObject();
}

}  // namespace KivGenerics
