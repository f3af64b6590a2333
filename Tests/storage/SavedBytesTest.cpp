#include <utility>

#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>
#include <gtest/gtest.h>

#include "storage/Support.h"

using namespace KivStorage;
using namespace StorageTest;

namespace {

void PutNumbers(MemoryWriteStream& stream, std::int32_t from, std::int32_t to) {
    for (std::int32_t number = from; number < to; ++number) {
        ASSERT_EQ(0, stream.PutLong(number));
    }
}

TEST(SavedBytesTest, WhatIsTakenBeforeTheEndAndWhatComesBehindItAreTheWhole) {
    const auto whole = MemoryWriteStream::Create();
    PutNumbers(*whole, 0, 100000);
    ASSERT_TRUE(whole->Finish().Ok());

    const auto parts = MemoryWriteStream::Create();
    PutNumbers(*parts, 0, 30000);
    const SavedBytes first = parts->TakeBytes();
    EXPECT_EQ(0u, parts->GetBytes().size());
    PutNumbers(*parts, 30000, 100000);
    ASSERT_TRUE(parts->Finish().Ok());
    const SavedBytes rest = parts->TakeBytes();

    EXPECT_EQ(24u + 2u * 65536u, first.size());  // the header and whole blocks of 30,000 numbers of 5 bytes
    EXPECT_TRUE(Join({first.ToVector(), rest.ToVector()}) == whole->GetBytes().ToVector());
}

TEST(SavedBytesTest, TheBytesSoFarAreThoseOfTheWhole) {
    const auto stream = MemoryWriteStream::Create();
    EXPECT_EQ(0u, stream->GetBytes().size());
    PutNumbers(*stream, 0, 30000);
    const Bytes soFar = stream->GetBytes().ToVector();
    EXPECT_EQ(24u + 2u * 65536u, soFar.size());
    PutNumbers(*stream, 30000, 500000);
    ASSERT_TRUE(stream->Finish().Ok());
    const Bytes all = stream->GetBytes().ToVector();
    EXPECT_TRUE(Bytes(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(soFar.size())) == soFar);
    EXPECT_EQ(stream->GetByteCount(), all.size());
}

TEST(SavedBytesTest, WhatWasMovedIsEmpty) {
    const auto stream = MemoryWriteStream::Create();
    PutNumbers(*stream, 0, 3);
    ASSERT_TRUE(stream->Finish().Ok());
    SavedBytes taken = stream->TakeBytes();
    EXPECT_EQ(24u + 12u + 3u * 5u + 44u, taken.size());
    EXPECT_TRUE(stream->TakeBytes().empty());
    SavedBytes other = std::move(taken);
    EXPECT_EQ(0u, taken.size());
    EXPECT_EQ('K', other[1]);
    taken = std::move(other);
    EXPECT_TRUE(other.empty());
    EXPECT_EQ(24u + 12u + 3u * 5u + 44u, taken.size());
}

}  // namespace
