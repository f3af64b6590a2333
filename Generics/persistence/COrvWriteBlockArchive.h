#pragma once

#include <cstdint>

#include <KivCOMShared/BlockWriteStream.h>
#include <KivCOMShared/COrvWriteArchive.h>
#include <KivGenerics/ResultCode.h>

namespace KivGenerics {

/// An archive over a host's stream: each operation is one call, or two, on it. Lives for one save.
///
/// The class is final and its operations stand here, so that who knows it calls the stream alone.
/// On failure: what the stream answers, unchanged; ResultUnexpected without a stream.
class COrvWriteBlockArchive final : public KivCOMShared::COrvWriteArchive {
public:
    /// Releases the stream.
    ~COrvWriteBlockArchive() override;
    std::int32_t WriteShort(std::uint16_t value) override {
        return stream_ != nullptr ? stream_->PutShort(value) : ResultUnexpected;
    }
    std::int32_t WriteDouble(double value) override {
        return stream_ != nullptr ? stream_->PutDouble(value) : ResultUnexpected;
    }
    std::int32_t WriteGUID(const GUID& value) override {
        return stream_ != nullptr ? stream_->PutGUID(value) : ResultUnexpected;
    }
    std::int32_t WriteLong(std::int32_t value) override {
        return stream_ != nullptr ? stream_->PutLong(value) : ResultUnexpected;
    }
    std::int32_t WriteInt64(std::int64_t value) override;
    std::int32_t WriteWideString(const char16_t* units, std::uint32_t length) override {
        return stream_ != nullptr ? stream_->PutWideString(units, length) : ResultUnexpected;
    }
    std::int32_t WriteVariant(const VARIANT* value) override {
        return stream_ != nullptr ? stream_->PutVariant(value) : ResultUnexpected;
    }
    std::int32_t BeginObject(std::uint16_t tag) override {
        return stream_ != nullptr ? stream_->PutBeginObject(tag) : ResultUnexpected;
    }
    std::int32_t EndObject() override { return stream_ != nullptr ? stream_->PutEndObject() : ResultUnexpected; }

    /// Takes a reference on the stream, which may be null.
    explicit COrvWriteBlockArchive(KivCOMShared::BlockWriteStream* stream);
    COrvWriteBlockArchive(const COrvWriteBlockArchive&) = delete;
    COrvWriteBlockArchive& operator=(const COrvWriteBlockArchive&) = delete;

    /// Null, or what every operation calls, with nothing of its own added.
    KivCOMShared::BlockWriteStream* GetStream() const noexcept { return stream_; }

private:
    KivCOMShared::BlockWriteStream* stream_;
};

}  // namespace KivGenerics
