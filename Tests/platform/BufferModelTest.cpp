#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include <KivBase/Buffer.h>
#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

using KivBase::Buffer;

struct Piece {
    std::size_t size;
    std::size_t alignment;
    unsigned char fill;
};

/// The pieces that a buffer has handed out, by address; each is filled with a number of its own.
class Pieces {
public:
    explicit Pieces(Buffer& buffer) : buffer_(buffer) {}

    void Add(const Piece& piece, bool isInline) {
        void* const memory = isInline ? buffer_.AllocateInline(piece.size, piece.alignment)
                                      : buffer_.Allocate(piece.size, piece.alignment);
        auto* const place = static_cast<unsigned char*>(memory);
        ASSERT_EQ(0U, reinterpret_cast<std::uintptr_t>(place) % piece.alignment);
        const auto next = pieces_.lower_bound(place);
        if (next != pieces_.end()) {
            ASSERT_LE(place + (piece.size != 0 ? piece.size : 1), next->first);
        }
        if (next != pieces_.begin()) {
            const auto previous = std::prev(next);
            ASSERT_LE(previous->first + previous->second.size, place);
        }
        std::fill_n(place, piece.size, piece.fill);
        pieces_[place] = piece;
        places_.push_back(place);
        bytes_ += piece.size;
    }

    void Remove(std::size_t which) {
        unsigned char* const place = places_[which];
        const Piece piece = pieces_.at(place);
        const auto changed = std::find_if(place, place + piece.size, [&](unsigned char c) { return c != piece.fill; });
        ASSERT_EQ(place + piece.size, changed) << "at byte " << changed - place << " of " << piece.size;
        buffer_.Free(place, piece.size, piece.alignment);
        pieces_.erase(place);
        places_[which] = places_.back();
        places_.pop_back();
        bytes_ -= piece.size;
    }

    std::size_t GetCount() const { return places_.size(); }
    std::size_t GetBytes() const { return bytes_; }

private:
    Buffer& buffer_;
    std::map<unsigned char*, Piece> pieces_;
    std::vector<unsigned char*> places_;
    std::size_t bytes_ = 0;
};

std::size_t GetRandomSize(std::mt19937& random) {
    switch (random() % 8) {
        case 0: return random() % 4000;
        case 1: return random() % 40000;
        default: return random() % 200;
    }
}

void RunAgainstModel(std::int32_t blockSize, unsigned seed) {
    SCOPED_TRACE(testing::Message() << "block size " << blockSize << ", seed " << seed);
    std::mt19937 random(seed);
    const std::unique_ptr<Buffer> buffer(KivBase::CreateBuffer(1, 1, blockSize, false));
    Pieces pieces(*buffer);
    for (unsigned step = 0; step < 20000; ++step) {
        // For a while more comes than goes, then more goes than comes.
        const bool growing = step / 2500 % 2 == 0;
        if (pieces.GetCount() == 0 || random() % 10 < (growing ? 6U : 4U)) {
            const std::size_t alignment = std::size_t{1} << (random() % 10 == 0 ? random() % 10 : random() % 4);
            const Piece piece{GetRandomSize(random), alignment, static_cast<unsigned char>(random())};
            pieces.Add(piece, random() % 2 == 0);
        } else {
            pieces.Remove(random() % pieces.GetCount());
        }
        if (testing::Test::HasFatalFailure()) {
            return;
        }
        // Rounding takes less than 8 bytes from a small piece, and a quarter from a large one.
        ASSERT_LE(pieces.GetBytes(), buffer->BytesInUse());
        ASSERT_GE(pieces.GetBytes() + pieces.GetBytes() / 4 + 8 * pieces.GetCount(), buffer->BytesInUse());
        ASSERT_LE(buffer->BytesInUse(), buffer->BytesReserved());
    }
    while (pieces.GetCount() != 0) {
        pieces.Remove(random() % pieces.GetCount());
        if (testing::Test::HasFatalFailure()) {
            return;
        }
    }
    EXPECT_EQ(0U, buffer->BytesInUse());
}

TEST(BufferModelTest, RandomPiecesNeverOverlapAndKeepTheirContent) {
    unsigned seed = 20261;
    for (const std::int32_t blockSize : {1024, 1500, 4096, 65536, 262144}) {
        RunAgainstModel(blockSize, seed++);
    }
}

}  // namespace
}  // namespace KivPlatform::Testing
