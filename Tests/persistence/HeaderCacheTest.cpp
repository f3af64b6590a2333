// The headers of maps, those that are known and others.

#include "persistence/HeaderCache.h"

#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "persistence/Archives.h"
#include "persistence/ReadSlotKeys.h"

namespace KivGenerics::Testing {
namespace {

/// What stands in the words of a map's header, the bytes of its tag in front included where there are such.
struct Header {
    std::vector<std::uint8_t> bytes;
    int tagBytes = 0;  // taken before the header is read
    bool longCount = false;
    SemanticTag tag = SemanticTagDefault;
};

Calls ToCalls(const std::vector<std::uint8_t>& bytes) {
    Calls calls;
    for (std::size_t i = 0; i < bytes.size(); i += 4) {
        std::uint32_t word = 0;
        for (std::size_t k = i; k < i + 4; ++k) {
            word = word << 8 | (k < bytes.size() ? bytes[k] : 0U);
        }
        calls.push_back(LongCall(word));
    }
    return calls;
}

/// What became of a header.
struct HeaderRead {
    std::int32_t result = 0;
    std::vector<std::pair<std::int32_t, std::uint32_t>> keys;
    Calls operations;
    std::size_t position = 0;

    bool operator==(const HeaderRead& other) const {
        return result == other.result && keys == other.keys && operations == other.operations &&
               position == other.position;
    }
};

/// Reads a header; the word at `failAt`, counted from 1, cannot be read.
HeaderRead Read(Reading& reading, const Header& header, int failAt) {
    reading.archive.player = CallPlayer(ToCalls(header.bytes));
    reading.archive.operations.clear();
    reading.archive.counter = CallCounter();
    reading.archive.counter.FailAt(failAt, -5);
    if (header.tagBytes > 0) {
        reading.decoder.GetBytes(header.tagBytes);
    }
    HeaderRead read;
    SlotKeys keys(reading.decoder.GetKeyRoom());
    read.result = ReadSlotKeys(reading.decoder, header.tag, header.longCount, keys);
    if (read.result >= 0) {
        for (const SlotKey& key : keys) {
            read.keys.emplace_back(key.index, key.typeCode);
        }
    }
    EXPECT_EQ(reading.decoder.GetPackedBytes().GetCount(), 0);
    read.operations = reading.archive.operations;
    read.position = reading.archive.player.GetPosition();
    return read;
}

using Random = std::mt19937;

int Draw(Random& random, int below) {
    return static_cast<int>(random() % static_cast<unsigned>(below));
}

/// A header of up to `most` keys of all forms.
Header DrawHeader(Random& random, int most) {
    Header header;
    header.tagBytes = Draw(random, 2) * 2;
    header.tag = static_cast<SemanticTag>(1 + Draw(random, 3));
    header.longCount = Draw(random, 8) == 0;
    const int count = Draw(random, most + 1);
    std::vector<std::uint8_t>& bytes = header.bytes;
    const auto put = [&bytes](int byte) { bytes.push_back(static_cast<std::uint8_t>(byte)); };
    for (int i = 0; i < header.tagBytes; ++i) {
        put(i);
    }
    if (header.longCount) {
        put(0);
        put(0);
        put(0);
    }
    put(count);
    for (int i = 0; i < count; ++i) {
        const int isLeaf = Draw(random, 3) == 0 ? 0 : 0x80;
        switch (Draw(random, 4)) {
            case 0:
                put(isLeaf | 0x40 | Draw(random, 32));
                put(Draw(random, 256));
                break;
            case 1:
                put(isLeaf | 0x60 | Draw(random, 32));
                put(Draw(random, 256));
                put(Draw(random, 256));
                put(Draw(random, 256));
                break;
            default: put(isLeaf | Draw(random, 64)); break;
        }
        if (isLeaf != 0) {
            const int type = Draw(random, 20);
            put(Draw(random, 4) << 6 | type);
            if (type >= 16) {
                put(Draw(random, 3));
            }
        }
    }
    return header;
}

TEST(HeaderCacheTest, AHeaderIsReadInTheSameWayWhateverWasReadBefore) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        Random random(seed);
        std::vector<Header> pool;
        for (int i = 0; i < 12; ++i) {
            pool.push_back(DrawHeader(random, i < 9 ? 12 : 60));
        }
        Reading before({});
        int known = 0;
        for (int step = 0; step < 1500; ++step) {
            Header header = pool[static_cast<std::size_t>(Draw(random, 12))];
            const int change = Draw(random, 4);
            if (change == 0 && !header.bytes.empty()) {
                header.bytes[static_cast<std::size_t>(Draw(random, static_cast<int>(header.bytes.size())))] ^=
                    static_cast<std::uint8_t>(1 << Draw(random, 8));
            } else if (change == 1) {
                header.bytes.resize(static_cast<std::size_t>(Draw(random, static_cast<int>(header.bytes.size()) + 1)));
            }
            const int failAt = Draw(random, 6) == 0 ? 1 + Draw(random, 12) : 0;
            Reading fresh({});
            const HeaderRead expected = Read(fresh, header, failAt);
            const HeaderRead read = Read(before, header, failAt);
            ASSERT_EQ(expected, read) << "seed " << seed << ", step " << step;
            known += read.result >= 0 && !read.keys.empty() ? 1 : 0;
        }
        EXPECT_GT(known, 500);
    }
}

SlotKeys& Fill(SlotKeys& keys, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        keys.Add({static_cast<std::int32_t>(i), 0x41});
    }
    keys.Close();
    return keys;
}

TEST(HeaderCacheTest, AHeaderIsKnownByTheBytesBeforeItAndByTheFormOfItsCount) {
    SlotKeyRoom room;
    SlotKeys keys(room);
    Fill(keys, 2);
    CachedHeader header;
    PackedBytes start;
    start.Add(0x01020304);
    start.Take(2);
    EXPECT_FALSE(header.BeginsWith(start, false));
    header.SetWord(0, 7);
    header.End(start, false, 1, keys);
    EXPECT_TRUE(header.BeginsWith(start, false));
    EXPECT_FALSE(header.BeginsWith(start, true));
    PackedBytes other;
    EXPECT_FALSE(header.BeginsWith(other, false));
    other.Add(0x03040000);
    EXPECT_FALSE(header.BeginsWith(other, false)) << "as many bytes must wait";
    EXPECT_EQ(header.GetWordCount(), 1U);
    EXPECT_EQ(header.GetWords()[0], 7);
    EXPECT_EQ(header.end() - header.begin(), 2);
    EXPECT_EQ(header.begin()[1].index, 1);
}

TEST(HeaderCacheTest, AHeaderIsUnknownWhileAnotherTakesItsPlace) {
    SlotKeyRoom room;
    SlotKeys keys(room);
    Fill(keys, 1);
    CachedHeader header;
    header.SetWord(0, 1);
    header.End(PackedBytes(), false, 1, keys);
    header.SetWord(0, 2);
    EXPECT_FALSE(header.BeginsWith(PackedBytes(), false));
}

TEST(HeaderCacheTest, AGreatHeaderIsNotKept) {
    const std::pair<std::size_t, std::size_t> rows[] = {
        {CachedHeader::kMostWords, CachedHeader::kMostKeys},
        {CachedHeader::kMostWords + 1, CachedHeader::kMostKeys},
        {CachedHeader::kMostWords, CachedHeader::kMostKeys + 1},
    };
    for (const auto& [words, keyCount] : rows) {
        SlotKeyRoom room;
        SlotKeys keys(room);
        Fill(keys, keyCount);
        CachedHeader header;
        for (std::size_t i = 0; i < words; ++i) {
            header.SetWord(i, 9);
        }
        header.End(PackedBytes(), false, words, keys);
        EXPECT_EQ(header.BeginsWith(PackedBytes(), false),
                  words == CachedHeader::kMostWords && keyCount == CachedHeader::kMostKeys);
    }
}

}  // namespace
}  // namespace KivGenerics::Testing
