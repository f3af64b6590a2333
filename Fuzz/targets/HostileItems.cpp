#include "targets/HostileItems.h"

#include <initializer_list>

#include "format/Framing.h"

namespace KivFuzz {
namespace {

using namespace KivStorage;

constexpr std::uint16_t kVector = 2 << 9 | 6;
constexpr std::uint16_t kMap = 2 << 9 | 7;
constexpr std::uint16_t kLongVector = 2 << 9 | 510;
constexpr std::uint16_t kLongMap = 2 << 9 | 511;
constexpr std::uint16_t kIntegerSet = 1035;
constexpr std::uint16_t kStringSet = 1038;
constexpr std::uint16_t kUnknownObject = 2 << 9 | 77;
constexpr std::uint8_t kInteger = 0x81;
constexpr std::uint8_t kString = 0x83;
constexpr std::uint8_t kVectorLeaf = 0x86;
constexpr std::uint8_t kMapLeaf = 0x87;
constexpr std::uint8_t kIntegerSetLeaf = 0x88;
constexpr std::uint8_t kStringSetLeaf = 0x8A;
constexpr std::uint32_t kTagOf16Slots = 4107;
constexpr int kLevels = 990;  // below the root and its first child, and within what loads

/// Appends items, and the packed words of composites.
class Items {
public:
    /// The envelope and a root map whose one child is the next object.
    Items() {
        Begin(0);
        Long(0);
        Begin(kMap);
        Words({0x00, 0x01, 0x01, 0x00});  // tag 1, one child, at index 0, an object
    }

    Items& Begin(std::uint16_t tag) { return Put(ItemBeginObject, tag, 2); }
    Items& End() { return Put(ItemEndObject, 0, 0); }
    Items& Long(std::uint32_t value) { return Put(ItemLong, value, 4); }
    Items& Text(std::uint32_t units, char16_t unit) {
        Put(ItemText, units, 4);
        for (; units > 0; --units) {
            Append(unit, 2);
        }
        return *this;
    }
    /// Packed bytes, filled up with zeros to whole words.
    Items& Words(const std::vector<std::uint8_t>& packed) {
        for (std::size_t i = 0; i < packed.size(); i += 4) {
            std::uint32_t word = 0;
            for (std::size_t byte = i; byte < i + 4; ++byte) {
                word = word << 8 | (byte < packed.size() ? packed[byte] : 0U);
            }
            Long(word);
        }
        return *this;
    }
    /// The header of a vector of any size.
    Items& LongVector(std::uint32_t count, std::uint8_t typeByte) {
        return Begin(kLongVector).Long(count).Words({typeByte, 0});
    }
    /// A map's header with keys of five packed bytes: index and type byte.
    Items& LongMap(std::uint32_t tag, std::uint32_t count, std::uint32_t firstIndex, std::uint32_t step) {
        std::vector<std::uint8_t> packed;
        const auto put = [&packed](std::uint32_t value, int bytes) {
            for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
                packed.push_back(static_cast<std::uint8_t>(value >> shift & 0xFF));
            }
        };
        put(tag, 2);
        put(count, 4);
        for (std::uint32_t i = 0; i < count; ++i) {
            put(0xE0000000 | (firstIndex + step * i), 4);
            put(kInteger, 1);
        }
        return Begin(kLongMap).Words(packed);
    }

    std::size_t GetSize() const noexcept { return bytes_.size(); }
    /// Closes what `open` objects are left of the family's own, the root and the envelope.
    Bytes Close(int open = 1) {
        for (; open + 2 > 0; --open) {
            End();
        }
        return std::move(bytes_);
    }

private:
    Items& Put(ItemType type, std::uint32_t value, int bytes) {
        bytes_.push_back(type);
        return Append(value, bytes);
    }
    Items& Append(std::uint32_t value, int bytes) {
        for (int shift = 0; shift < 8 * bytes; shift += 8) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> shift & 0xFF));
        }
        return *this;
    }

    Bytes bytes_;
};

std::uint32_t CountFor(std::size_t bytes, std::size_t bytesEach) {
    return static_cast<std::uint32_t>(bytes / bytesEach);
}

/// A vector of so many elements of one kind, each added by `add`.
template <class Add>
Bytes VectorOf(std::uint32_t count, std::uint8_t typeByte, Add add) {
    Items items;
    items.LongVector(count, typeByte);
    for (std::uint32_t i = 0; i < count; ++i) {
        add(items, i);
    }
    return items.Close();
}

Bytes MapsWithoutObjects(std::size_t bytes) {
    return VectorOf(CountFor(bytes, 5), kMapLeaf,
                    [](Items& items, std::uint32_t) { items.Words({kTagOf16Slots >> 8, kTagOf16Slots & 0xFF, 0, 0}); });
}

Bytes VectorsWithoutObjects(std::size_t bytes) {
    return VectorOf(CountFor(bytes, 5), kVectorLeaf, [](Items& items, std::uint32_t) { items.Long(0); });
}

Bytes EmptyMaps(std::size_t bytes) {
    return VectorOf(CountFor(bytes, 9), 0, [](Items& items, std::uint32_t) {
        items.Begin(kMap).Words({kTagOf16Slots >> 8, kTagOf16Slots & 0xFF, 0, 0}).End();
    });
}

Bytes EmptyVectors(std::size_t bytes) {
    return VectorOf(CountFor(bytes, 9), 0, [](Items& items, std::uint32_t) { items.Begin(kVector).Long(0).End(); });
}

Bytes VectorsOfOne(std::size_t bytes) {
    return VectorOf(CountFor(bytes, 10), kVectorLeaf,
                    [](Items& items, std::uint32_t) { items.Words({0, 1, kInteger, 0}).Long(7); });
}

/// Each map needs an overflow store for its one child beyond the slots.
Bytes MapsWithOverflow(std::size_t bytes) {
    return VectorOf(CountFor(bytes, 15), kMapLeaf, [](Items& items, std::uint32_t) {
        items.Words({kTagOf16Slots >> 8, kTagOf16Slots & 0xFF, 1, 0xBF, kInteger}).Long(7);
    });
}

Bytes EmptyTexts(std::size_t bytes) {
    return VectorOf(CountFor(bytes, 5), kString, [](Items& items, std::uint32_t) { items.Text(0, 0); });
}

/// One unit more than stands inside a node.
Bytes ShortTexts(std::size_t bytes) {
    return VectorOf(CountFor(bytes, 21), kString, [](Items& items, std::uint32_t) { items.Text(8, u'x'); });
}

Bytes LongestTexts(std::size_t bytes) {
    return VectorOf(CountFor(bytes, 512005), kString, [](Items& items, std::uint32_t) { items.Text(256000, u'x'); });
}

Bytes EmptySets(std::size_t bytes) {
    return VectorOf(CountFor(bytes, 9), kStringSetLeaf,
                    [](Items& items, std::uint32_t) { items.Begin(kStringSet).Long(0).End(); });
}

/// Every element comes before all that are there, so that the place at the end, which is tried first, is never right.
Bytes FallingIntegers(std::size_t bytes) {
    const std::uint32_t count = CountFor(bytes, 5);
    Items items;
    items.LongVector(1, kIntegerSetLeaf).Begin(kIntegerSet).Long(count);
    for (std::uint32_t i = count; i > 0; --i) {
        items.Long(i);
    }
    return items.Close(2);
}

Bytes FallingTexts(std::size_t bytes) {
    const std::uint32_t count = CountFor(bytes, 18) < 0xFFFF ? CountFor(bytes, 18) : 0xFFFF;
    const std::uint32_t sets = CountFor(bytes, std::size_t{9} * (count + 1));
    Items items;
    items.LongVector(sets, kStringSetLeaf);
    for (std::uint32_t set = 0; set < sets; ++set) {
        items.Begin(kStringSet).Long(count);
        for (std::uint32_t i = count; i > 0; --i) {
            items.Text(2, static_cast<char16_t>(i));
        }
        items.End();
    }
    return items.Close();
}

Bytes ChildrenInOverflow(std::size_t bytes, std::uint32_t first, std::uint32_t step) {
    const std::uint32_t count = CountFor(bytes, 12);
    Items items;
    items.LongMap(1, count, first, step);
    for (std::uint32_t i = 0; i < count; ++i) {
        items.Long(i);
    }
    return items.Close();
}
Bytes RisingIndexes(std::size_t bytes) {
    return ChildrenInOverflow(bytes, 16, 1);
}
Bytes FallingIndexes(std::size_t bytes) {
    return ChildrenInOverflow(bytes, 0x1FFFFFFF, static_cast<std::uint32_t>(-1));
}
/// Each child takes the place of the one before.
Bytes OneIndex(std::size_t bytes) {
    return ChildrenInOverflow(bytes, 3, 0);
}

/// All children of one map stand at one index, and each is a map with a child, which the next one has cleared.
Bytes ReplacedMaps(std::size_t bytes) {
    const std::uint32_t count = CountFor(bytes, 21);
    Items items;
    std::vector<std::uint8_t> packed = {0, 1};
    for (int shift = 24; shift >= 0; shift -= 8) {
        packed.push_back(static_cast<std::uint8_t>(count >> shift & 0xFF));
    }
    packed.resize(packed.size() + count, 0);
    items.Begin(kLongMap).Words(packed);
    for (std::uint32_t i = 0; i < count; ++i) {
        items.Begin(kMap).Words({0, 2, 1, 0x80, kInteger}).Long(i).End();
    }
    return items.Close();
}

/// All texts stand at one index, each longer than the one before, so that what one gives back is too small for the next.
Bytes ReplacedTexts(std::size_t bytes) {
    std::uint32_t count = 1;
    for (std::size_t size = 0; size < bytes && count < 30000; ++count) {
        size += 7 + 2 * std::size_t{count};
    }
    Items items;
    std::vector<std::uint8_t> packed = {0, 1, static_cast<std::uint8_t>(0x80 | count >> 8),
                                        static_cast<std::uint8_t>(count & 0xFF)};
    for (std::uint32_t i = 0; i < count; ++i) {
        packed.insert(packed.end(), {0x80, kString});
    }
    items.Begin(kMap).Words(packed);
    for (std::uint32_t i = 0; i < count; ++i) {
        items.Text(i, u'x');
    }
    return items.Close();
}

/// A map that announces more children than there can be, and has keys to the end.
Bytes KeysAlone(std::size_t bytes) {
    Items items;
    items.Begin(kLongMap).Words({0, 1, 0x7F, 0xFF, 0xFF, 0xFF});
    while (items.GetSize() < bytes) {
        items.Long(0);
    }
    return items.Close();
}

Bytes Chains(std::size_t bytes, std::uint16_t tag, const std::vector<std::uint8_t>& header) {
    const std::uint32_t count = CountFor(bytes, std::size_t{9} * kLevels) + 1;
    Items items;
    items.LongVector(count, 0);
    for (std::uint32_t i = 0; i < count; ++i) {
        for (int level = 1; level < kLevels; ++level) {
            items.Begin(tag).Words(header);
        }
        items.Begin(kVector).Long(0);
        for (int level = 0; level < kLevels; ++level) {
            items.End();
        }
    }
    return items.Close();
}
Bytes DeepVectors(std::size_t bytes) {
    return Chains(bytes, kVector, {0, 1, 0, 0});
}
Bytes DeepMaps(std::size_t bytes) {
    return Chains(bytes, kMap, {kTagOf16Slots >> 8, kTagOf16Slots & 0xFF, 1, 0});
}

/// Objects of a kind that nobody knows are skipped with all that they hold.
Bytes SkippedObjects(std::size_t bytes) {
    Items items;
    items.Begin(kUnknownObject);
    while (items.GetSize() < bytes) {
        items.Begin(kUnknownObject).Text(3, u'x').Long(1).End();
    }
    return items.Close();
}

}  // namespace

const std::vector<HostileFamily>& GetHostileFamilies() {
    static const std::vector<HostileFamily> families = {
        {"maps of 16 slots, one word each", MapsWithoutObjects},
        {"vectors, one word each", VectorsWithoutObjects},
        {"empty maps of 16 slots", EmptyMaps},
        {"empty vectors", EmptyVectors},
        {"vectors of one number", VectorsOfOne},
        {"maps with an overflow store", MapsWithOverflow},
        {"empty texts", EmptyTexts},
        {"texts of 8 units", ShortTexts},
        {"texts of 256,000 units", LongestTexts},
        {"empty sets of texts", EmptySets},
        {"a set of falling numbers", FallingIntegers},
        {"sets of falling texts", FallingTexts},
        {"a map with rising indexes", RisingIndexes},
        {"a map with falling indexes", FallingIndexes},
        {"a map with one index for all", OneIndex},
        {"maps that replace each other", ReplacedMaps},
        {"texts that replace each other", ReplacedTexts},
        {"keys without children", KeysAlone},
        {"vectors 990 levels deep", DeepVectors},
        {"maps 990 levels deep", DeepMaps},
        {"objects of an unknown kind", SkippedObjects},
    };
    return families;
}

Bytes FrameItems(const Bytes& items) {
    return StorageTest::Frame(items, CountItems(items.data(), items.size()));
}

}  // namespace KivFuzz
