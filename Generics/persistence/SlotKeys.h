#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace KivGenerics {

/// One child of a map as its header names it.
struct SlotKey {
    std::int32_t index;
    std::uint32_t typeCode;  ///< type byte, and 256 times the extra words; 0 for an object
};

/// Room for the keys of the maps that a load is inside of: those of a map in another stand behind the other's.
class SlotKeyRoom {
public:
    SlotKeyRoom() noexcept : next_(keys_), limit_(keys_ + kRoom) {}  // what is not yet there is not read
    SlotKeyRoom(const SlotKeyRoom&) = delete;
    SlotKeyRoom& operator=(const SlotKeyRoom&) = delete;

private:
    friend class SlotKeys;
    static constexpr std::size_t kRoom = 256;

    SlotKey* next_;
    SlotKey* limit_;
    SlotKey keys_[kRoom];
};

/// The keys of one map being read, as long as it lives. They stay where they are once all of them have come, and where there is no
/// room for them they get an array of their own, so that maps do not need one each.
class SlotKeys {
public:
    explicit SlotKeys(SlotKeyRoom& room) noexcept
        : room_(room),
          outer_(room.next_),
          outerLimit_(room.limit_),
          begin_(outer_),
          end_(outer_),
          limit_(outerLimit_) {}
    ~SlotKeys() {
        room_.next_ = outer_;
        room_.limit_ = outerLimit_;
    }
    SlotKeys(const SlotKeys&) = delete;
    SlotKeys& operator=(const SlotKeys&) = delete;

    /// Throws std::bad_alloc.
    void Add(const SlotKey& key) {
        if (end_ == limit_) {
            Grow();
        }
        *end_++ = key;
    }
    /// The same for several.
    void Add(const SlotKey* first, const SlotKey* last) {
        while (limit_ - end_ < last - first) {
            Grow();
        }
        end_ = std::copy(first, last, end_);
    }
    /// All have come: the keys of maps inside this one will stand behind them.
    void Close() noexcept {
        room_.next_ = end_;
        room_.limit_ = limit_;
    }
    const SlotKey* begin() const noexcept { return begin_; }
    const SlotKey* end() const noexcept { return end_; }

private:
    void Grow() {
        const auto size = static_cast<std::size_t>(end_ - begin_);
        const std::size_t larger = (std::max)(2 * size, SlotKeyRoom::kRoom);
        std::unique_ptr<SlotKey[]> own(new SlotKey[larger]);
        end_ = std::copy(begin_, end_, own.get());
        begin_ = own.get();
        limit_ = begin_ + larger;
        own_ = std::move(own);
    }

    SlotKeyRoom& room_;
    SlotKey* const outer_;
    SlotKey* const outerLimit_;
    SlotKey* begin_;
    SlotKey* end_;
    SlotKey* limit_;
    std::unique_ptr<SlotKey[]> own_;
};

}  // namespace KivGenerics
