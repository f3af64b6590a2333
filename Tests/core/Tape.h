#pragma once

#include <cstdint>
#include <vector>

#include <KivCOMShared/COrvReadArchive.h>
#include <KivCOMShared/COrvWriteArchive.h>

namespace KivTests {

/// One call of a write archive: enough to play it back. Only what the nodes of these tests write is kept.
struct TapeItem {
    enum class Kind { Number, Begin, End };
    Kind kind;
    std::int64_t number;
};

class WriteTape final : public KivCOMShared::COrvWriteArchive {
public:
    std::vector<TapeItem> items;

    std::int32_t WriteShort(std::uint16_t value) override { return Put(value); }
    std::int32_t WriteLong(std::int32_t value) override { return Put(value); }
    std::int32_t WriteInt64(std::int64_t value) override { return Put(value); }
    std::int32_t BeginObject(std::uint16_t tag) override { return Put(tag, TapeItem::Kind::Begin); }
    std::int32_t EndObject() override { return Put(0, TapeItem::Kind::End); }
    std::int32_t WriteDouble(double) override { return -1; }
    std::int32_t WriteGUID(const GUID&) override { return -1; }
    std::int32_t WriteWideString(const char16_t*, std::uint32_t) override { return -1; }
    std::int32_t WriteVariant(const VARIANT*) override { return -1; }

private:
    std::int32_t Put(std::int64_t number, TapeItem::Kind kind = TapeItem::Kind::Number) {
        items.push_back({kind, number});
        return 0;
    }
};

/// Plays a tape back; anything that does not stand there is a failure.
class ReadTape final : public KivCOMShared::COrvReadArchive {
public:
    explicit ReadTape(std::vector<TapeItem> items) : items_(std::move(items)) {}

    std::int32_t ReadShort(std::uint16_t* value) override { return Get(value); }
    std::int32_t ReadLong(std::int32_t* value) override { return Get(value); }
    std::int32_t ReadInt64(std::int64_t* value) override { return Get(value); }
    std::int32_t ReadObjectTag(std::uint16_t expected, std::uint16_t* tag) override {
        if (At() != TapeItem::Kind::Begin || (expected != 0 && items_[next_].number != expected)) {
            return 1;
        }
        *tag = static_cast<std::uint16_t>(items_[next_++].number);
        return 0;
    }
    std::int32_t ReadExpectedObjectTag(std::uint16_t expected, std::uint16_t* tag) override {
        return ReadObjectTag(expected, tag) == 0 ? 0 : -1;
    }
    std::int32_t EndReadObject() override {
        for (int depth = 1; next_ < items_.size(); ++next_) {
            depth += At() == TapeItem::Kind::Begin ? 1 : (At() == TapeItem::Kind::End ? -1 : 0);
            if (depth == 0) {
                ++next_;
                return 0;
            }
        }
        return -1;
    }
    std::int32_t ReadDouble(double*) override { return -1; }
    std::int32_t ReadGUID(GUID*) override { return -1; }
    std::int32_t ReadWideString(KivBase::WString&) override { return -1; }
    std::int32_t ReadVariant(VARIANT*) override { return -1; }

private:
    TapeItem::Kind At() const { return next_ < items_.size() ? items_[next_].kind : TapeItem::Kind::End; }

    template <class T>
    std::int32_t Get(T* value) {
        if (At() != TapeItem::Kind::Number) {
            return -1;
        }
        *value = static_cast<T>(items_[next_++].number);
        return 0;
    }

    std::vector<TapeItem> items_;
    std::size_t next_ = 0;
};

}  // namespace KivTests
