#include "WordArchive.h"

#include <cstring>

namespace {

constexpr std::int32_t kFailed = static_cast<std::int32_t>(0x80004005);
constexpr std::int32_t kNotUsed = static_cast<std::int32_t>(0x80004001);

constexpr std::size_t WordsOf(std::size_t bytes) {
    return (bytes + 3) / 4;
}

}  // namespace

void WordWriteArchive::Put(const void* data, std::size_t size) {
    if (size != 0) {
        const std::size_t old = words.size();
        words.resize(old + WordsOf(size));
        std::memcpy(&words[old], data, size);
    }
}

std::int32_t WordWriteArchive::WriteShort(std::uint16_t value) {
    words.push_back(value);
    return 0;
}
std::int32_t WordWriteArchive::WriteDouble(double value) {
    Put(&value, sizeof value);
    return 0;
}
std::int32_t WordWriteArchive::WriteGUID(const GUID& value) {
    Put(&value, sizeof value);
    return 0;
}
std::int32_t WordWriteArchive::WriteLong(std::int32_t value) {
    words.push_back(static_cast<std::uint32_t>(value));
    return 0;
}
std::int32_t WordWriteArchive::WriteInt64(std::int64_t value) {
    Put(&value, sizeof value);
    return 0;
}
std::int32_t WordWriteArchive::WriteWideString(const char16_t* units, std::uint32_t length) {
    words.push_back(length);
    Put(units, length * sizeof *units);
    return 0;
}
std::int32_t WordWriteArchive::WriteVariant(const VARIANT*) {
    return kNotUsed;
}
std::int32_t WordWriteArchive::BeginObject(std::uint16_t tag) {
    words.push_back(tag);
    return 0;
}
std::int32_t WordWriteArchive::EndObject() {
    return 0;
}

std::int32_t WordReadArchive::Get(void* data, std::size_t size) {
    if (words_.size() - next_ < WordsOf(size)) {
        return kFailed;
    }
    if (size != 0) {
        std::memcpy(data, &words_[next_], size);
        next_ += WordsOf(size);
    }
    return 0;
}

std::int32_t WordReadArchive::ReadShort(std::uint16_t* value) {
    std::uint32_t word = 0;
    const std::int32_t result = Get(&word, sizeof word);
    *value = static_cast<std::uint16_t>(word);
    return result;
}
std::int32_t WordReadArchive::ReadDouble(double* value) {
    return Get(value, sizeof *value);
}
std::int32_t WordReadArchive::ReadGUID(GUID* value) {
    return Get(value, sizeof *value);
}
std::int32_t WordReadArchive::ReadLong(std::int32_t* value) {
    return Get(value, sizeof *value);
}
std::int32_t WordReadArchive::ReadInt64(std::int64_t* value) {
    return Get(value, sizeof *value);
}
std::int32_t WordReadArchive::ReadWideString(KivBase::WString& text) {
    std::uint32_t length = 0;
    std::int32_t result = Get(&length, sizeof length);
    if (result < 0 || words_.size() - next_ < WordsOf(length * sizeof(char16_t))) {
        return kFailed;
    }
    text.resize(length);
    return Get(&text[0], length * sizeof(char16_t));
}
std::int32_t WordReadArchive::ReadVariant(VARIANT*) {
    return kNotUsed;
}
std::int32_t WordReadArchive::ReadObjectTag(std::uint16_t, std::uint16_t* tag) {
    return ReadShort(tag);
}
std::int32_t WordReadArchive::ReadExpectedObjectTag(std::uint16_t, std::uint16_t* tag) {
    return ReadShort(tag);
}
std::int32_t WordReadArchive::EndReadObject() {
    return 0;
}
