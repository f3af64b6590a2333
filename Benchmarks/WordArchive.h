#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <KivCOMShared/COrvReadArchive.h>
#include <KivCOMShared/COrvWriteArchive.h>

/// The plainest archive there is, so that saving and loading are measured and not where the bytes go: every value as 32-bit
/// words, objects as their tag, nothing checked.
class WordWriteArchive final : public KivCOMShared::COrvWriteArchive {
public:
    std::int32_t WriteShort(std::uint16_t value) override;
    std::int32_t WriteDouble(double value) override;
    std::int32_t WriteGUID(const GUID& value) override;
    std::int32_t WriteLong(std::int32_t value) override;
    std::int32_t WriteInt64(std::int64_t value) override;
    std::int32_t WriteWideString(const char16_t* units, std::uint32_t length) override;
    std::int32_t WriteVariant(const VARIANT* value) override;
    std::int32_t BeginObject(std::uint16_t tag) override;
    std::int32_t EndObject() override;

    std::vector<std::uint32_t> words;

private:
    void Put(const void* data, std::size_t size);
};

class WordReadArchive final : public KivCOMShared::COrvReadArchive {
public:
    explicit WordReadArchive(const std::vector<std::uint32_t>& words) : words_(words) {}
    std::int32_t ReadShort(std::uint16_t* value) override;
    std::int32_t ReadDouble(double* value) override;
    std::int32_t ReadGUID(GUID* value) override;
    std::int32_t ReadLong(std::int32_t* value) override;
    std::int32_t ReadInt64(std::int64_t* value) override;
    std::int32_t ReadWideString(KivBase::WString& text) override;
    std::int32_t ReadVariant(VARIANT* value) override;
    std::int32_t ReadObjectTag(std::uint16_t expected, std::uint16_t* tag) override;
    std::int32_t ReadExpectedObjectTag(std::uint16_t expected, std::uint16_t* tag) override;
    std::int32_t EndReadObject() override;

private:
    std::int32_t Get(void* data, std::size_t size);

    const std::vector<std::uint32_t>& words_;
    std::size_t next_ = 0;
};
