// Damage to a saved file is found whatever it is: the file is refused, with the place, at once, and what the host has stays as
// it is.

#include <ctime>
#include <string>

#include <KivStorage/LoadTree.h>
#include <gtest/gtest.h>

#include "faults/Documents.h"
#include "fuzz/SavedFiles.h"
#include "fuzz/Soak.h"

using StorageTest::Bytes;

namespace {

constexpr std::size_t kBytesInSoak = std::size_t{1} << 20;
constexpr std::size_t kBytesInShort = std::size_t{48} << 10;

/// Loads one damaged file after another beside a tree of the host's, and counts what is not as it should be.
class Damages {
public:
    Damages() : host_(NewDocument()), before_(Describe(*host_)), changes_(host_->GetChangeCount()) {}

    /// The damage is described only where it is not found.
    template <class DescribeDamage>
    void Check(const Bytes& bytes, DescribeDamage describe) {
        const std::clock_t start = std::clock();
        const auto loaded = KivStorage::LoadTreeFromMemory(bytes.data(), bytes.size());
        slowest_ = std::max(slowest_, std::clock() - start);
        ++loads_;
        const std::string& sentence = loaded.result.sentence;
        const bool namesPlace =
            sentence.find("(memory, ") != std::string::npos && sentence.find("byte ") != std::string::npos;
        if ((loaded.result.Ok() || loaded.tree || !namesPlace) && ++wrong_ <= 10) {
            ADD_FAILURE() << describe() << ": " << (loaded.result.Ok() ? "is taken" : sentence);
        }
    }

    /// What holds over all.
    void Finish(std::size_t leastLoads) {
        EXPECT_EQ(0u, wrong_);
        EXPECT_GE(loads_, leastLoads);
        EXPECT_LT(slowest_, CLOCKS_PER_SEC);
        EXPECT_EQ(before_, Describe(*host_));
        EXPECT_EQ(changes_, host_->GetChangeCount());
        EXPECT_EQ(0, CountUnsoundNodes(*host_));
        testing::Test::RecordProperty("loads", std::to_string(loads_));
    }

private:
    KivBase::ReturnPtrI<KivGenerics::Tree> host_;
    std::string before_;
    int changes_;
    std::size_t loads_ = 0;
    std::size_t wrong_ = 0;
    std::clock_t slowest_ = 0;
};

std::string AtByte(const char* what, std::size_t byte) {
    return what + std::to_string(byte);
}

void Flip(Bytes& bytes, std::size_t bit) {
    bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] ^ 1U << bit % 8);
}

Bytes Spliced(const Bytes& bytes, std::size_t kept, const Bytes& between, std::size_t next) {
    Bytes spliced(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(kept));
    spliced.insert(spliced.end(), between.begin(), between.end());
    spliced.insert(spliced.end(), bytes.begin() + static_cast<std::ptrdiff_t>(next), bytes.end());
    return spliced;
}

std::vector<Bytes> Files() {
    return MakeSavedFiles(IsSoak() ? kBytesInSoak : kBytesInShort);
}

TEST(DamageTest, WhatIsNotDamagedLoads) {
    for (const Bytes& file : Files()) {
        ASSERT_EQ("", KivStorage::LoadTreeFromMemory(file.data(), file.size()).result.sentence);
    }
    const Bytes small = MakeFileOf300Bytes();
    EXPECT_EQ(300u, small.size());
    EXPECT_TRUE(KivStorage::LoadTreeFromMemory(small.data(), small.size()).result.Ok());
    const Bytes large = MakeFileOfThreeBlocks();
    EXPECT_LT(2u * 65536, large.size());
    EXPECT_TRUE(KivStorage::LoadTreeFromMemory(large.data(), large.size()).result.Ok());
}

TEST(DamageTest, EverySingleBitThatFlipsIsFound) {
    Damages damages;
    std::size_t bits = 0;
    for (Bytes& file : Files()) {
        for (std::size_t bit = 0; bit < 8 * file.size(); ++bit) {
            Flip(file, bit);
            damages.Check(file, [bit] { return AtByte("bit ", bit); });
            Flip(file, bit);
        }
        bits += 8 * file.size();
    }
    damages.Finish(bits);
}

TEST(DamageTest, EveryTruncationIsFound) {
    Damages damages;
    std::size_t bytes = 0;
    for (const Bytes& file : Files()) {
        for (std::size_t length = 0; length < file.size(); ++length) {
            // A block of its own, so that a sanitizer sees a step over the end.
            const Bytes cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length));
            damages.Check(cut, [length] { return AtByte("cut to ", length); });
        }
        bytes += file.size();
    }
    damages.Finish(bytes);
}

TEST(DamageTest, EveryTwoBitsThatFlipAreFound) {
    Damages damages;
    Bytes file = MakeFileOf300Bytes();
    const std::size_t bits = 8 * file.size();
    // In short, one pair in 31: the first bit with every 31st, the next with every 31st from one further on, and so on.
    const std::size_t step = IsSoak() ? 1 : 31;
    for (std::size_t first = 0; first < bits; ++first) {
        Flip(file, first);
        for (std::size_t second = first + 1 + first % step; second < bits; second += step) {
            Flip(file, second);
            damages.Check(file, [=] { return AtByte("bits ", first) + " and " + std::to_string(second); });
            Flip(file, second);
        }
        Flip(file, first);
    }
    damages.Finish(bits * (bits - 1) / 2 / step - bits);
}

TEST(DamageTest, EveryByteThatIsLostOrDoubledIsFound) {
    Damages damages;
    std::size_t bytes = 0;
    for (const Bytes& file : Files()) {
        for (std::size_t byte = 0; byte < file.size(); ++byte) {
            damages.Check(Spliced(file, byte, {}, byte + 1), [byte] { return AtByte("without byte ", byte); });
            damages.Check(Spliced(file, byte, {file[byte]}, byte), [byte] { return AtByte("twice byte ", byte); });
        }
        bytes += file.size();
    }
    damages.Finish(2 * bytes);
}

TEST(DamageTest, EveryByteThatIsInsertedAnywhereIsFound) {
    Damages damages;
    const Bytes file = MakeFileOf300Bytes();
    for (std::size_t place = 0; place <= file.size(); ++place) {
        for (unsigned value = 0; value < 256; ++value) {
            damages.Check(Spliced(file, place, {static_cast<std::uint8_t>(value)}, place),
                          [place] { return AtByte("a byte before byte ", place); });
        }
    }
    damages.Finish(301 * 256);
}

TEST(DamageTest, WhateverIsAppendedIsFound) {
    Damages damages;
    const Bytes file = MakeFileOf300Bytes();
    for (const int value : {0x00, 0x0A, 0x1A, 0x89, 0xFF}) {
        for (std::size_t count = 1; count <= 100; ++count) {
            const Bytes garbage(count, static_cast<std::uint8_t>(value));
            damages.Check(Spliced(file, file.size(), garbage, file.size()),
                          [count] { return AtByte("bytes appended: ", count); });
        }
    }
    damages.Finish(500);
}

TEST(DamageTest, TwoFilesInOneAreFound) {
    Damages damages;
    const std::vector<Bytes> files = MakeSavedFiles(20000);
    for (const Bytes& first : files) {
        for (const Bytes& second : files) {
            damages.Check(StorageTest::Join({first, second}), [] { return std::string("two files joined"); });
            // The head of one and the tail of the other, at the same place.
            const std::size_t at = std::min(first.size(), second.size()) / 2;
            const Bytes spliced = Spliced(first, at, {}, first.size());
            const Bytes tail(second.begin() + static_cast<std::ptrdiff_t>(at), second.end());
            const Bytes mixed = StorageTest::Join({spliced, tail});
            if (mixed != first && mixed != second) {
                damages.Check(mixed, [] { return std::string("two files mixed"); });
            }
        }
    }
    damages.Finish(files.size() * files.size());
}

TEST(DamageTest, DamageAtTheEdgesOfEveryBlockOfALargeFileIsFound) {
    Damages damages;
    Bytes file = MakeFileOfThreeBlocks();
    constexpr std::size_t kReach = 20;  // a block's length and checksum, and a few items
    const std::size_t edges[] = {kReach, 24 + 65536, 24 + 2 * 65536, file.size() - 44 - kReach, file.size() - kReach};
    for (const std::size_t edge : edges) {
        for (std::size_t bit = 8 * (edge - kReach); bit < 8 * (edge + kReach); ++bit) {
            Flip(file, bit);
            damages.Check(file, [bit] { return AtByte("bit ", bit); });
            Flip(file, bit);
        }
    }
    damages.Finish(5 * 8 * 2 * kReach);
}

}  // namespace
