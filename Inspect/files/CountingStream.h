#pragma once

#include <atomic>
#include <cstdint>

#include <KivCOMShared/BlockReadStream.h>
#include <KivInspect/FileSource.h>

namespace KivInspect {

/// A stream that passes everything on to another one, and now and then tells how many bytes of saved data have gone by. It lives
/// where it is made: references are counted and own nothing.
class CountingStream final : public KivCOMShared::BlockReadStream {
public:
    CountingStream(KivCOMShared::BlockReadStream& stream, std::uint64_t total, const Progress& progress) noexcept
        : stream_(stream), total_(total), progress_(progress) {}

    std::int32_t QueryInterface(const GUID& interfaceId, void** object) override {
        return stream_.QueryInterface(interfaceId, object);
    }
    std::uint32_t AddRef() override { return ++references_; }
    std::uint32_t Release() override { return --references_; }
    // What an item takes: one byte for its type, then its value.
    std::int32_t GetLong(std::int32_t* value) override { return Count(5, stream_.GetLong(value)); }
    std::int32_t GetDouble(double* value) override { return Count(9, stream_.GetDouble(value)); }
    std::int32_t GetShort(std::uint16_t* value) override { return Count(3, stream_.GetShort(value)); }
    std::int32_t GetStringLength(std::uint32_t* length) override { return Count(5, stream_.GetStringLength(length)); }
    std::int32_t GetStringChars(std::uint32_t length, char16_t* buffer) override {
        return Count(2 * std::uint64_t{length}, stream_.GetStringChars(length, buffer));
    }
    std::int32_t GetGUID(GUID* value) override { return Count(17, stream_.GetGUID(value)); }
    std::int32_t GetVariant(VARIANT* value) override { return Count(11, stream_.GetVariant(value)); }
    std::int32_t GetObjectTag(std::uint16_t* tag) override { return Count(3, stream_.GetObjectTag(tag)); }
    std::int32_t GetEndObject() override { return Count(1, stream_.GetEndObject()); }

private:
    std::int32_t Count(std::uint64_t bytes, std::int32_t result) {
        constexpr std::uint64_t piece = 1U << 20U;
        done_ += bytes;
        if (done_ >= next_) {
            next_ = done_ + piece;
            progress_(done_, total_);
        }
        return result;
    }

    KivCOMShared::BlockReadStream& stream_;
    std::uint64_t total_;
    const Progress& progress_;
    std::uint64_t done_ = 0;
    std::uint64_t next_ = 0;
    std::atomic<std::uint32_t> references_{1};
};

}  // namespace KivInspect
