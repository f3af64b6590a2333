// The archive over a host's stream, for writing.

#include "persistence/COrvWriteBlockArchive.h"

#include <memory>

#include <gtest/gtest.h>

#include "persistence/Streams.h"

namespace KivGenerics::Testing {
namespace {

constexpr auto kUnexpected = static_cast<std::int32_t>(0x8000FFFF);

const GUID kId = {0x00112233, 0x4455, 0x6677, {0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}};

using Operation = std::int32_t (*)(KivCOMShared::COrvWriteArchive&);

const VARIANT* SomeVariant() {
    alignas(16) static unsigned char bytes[32] = {};
    return reinterpret_cast<const VARIANT*>(bytes);
}

struct Row {
    Operation operation;
    const char* call;
};

const Row kRows[] = {
    {[](auto& archive) { return archive.WriteShort(0xFEDC); }, "PutShort FEDC"},
    {[](auto& archive) { return archive.WriteDouble(1.5); }, "PutDouble 3FF8000000000000"},
    {[](auto& archive) { return archive.WriteGUID(kId); }, "PutGuid 00112233-4455-6677-8899AABBCCDDEEFF"},
    {[](auto& archive) { return archive.WriteLong(-2); }, "PutLong FFFFFFFE"},
    {[](auto& archive) { return archive.WriteWideString(u"a\0b", 3); }, "PutText \"a\\u0000b\""},
    {[](auto& archive) { return archive.WriteString(KivBase::WString(u"\u20AC")); }, "PutText \"\\u20AC\""},
    {[](auto& archive) { return archive.WriteVariant(SomeVariant()); }, "PutVariant"},
    {[](auto& archive) { return archive.BeginObject(0xFE07); }, "PutBegin FE07"},
    {[](auto& archive) { return archive.EndObject(); }, "PutEnd"},
};

TEST(COrvWriteBlockArchiveTest, EveryOperationIsOneCallOfTheStream) {
    for (const Row& row : kRows) {
        RecordingStream stream;
        COrvWriteBlockArchive archive(&stream);
        EXPECT_EQ(0, row.operation(archive)) << row.call;
        EXPECT_EQ(Calls{row.call}, stream.calls);
    }
}

TEST(COrvWriteBlockArchiveTest, WhatTheStreamAnswersIsAnswered) {
    for (const std::int32_t code : {-1, static_cast<std::int32_t>(0x80070057), 1, 42}) {
        for (const Row& row : kRows) {
            RecordingStream stream;
            stream.counter.FailAt(1, code);
            COrvWriteBlockArchive archive(&stream);
            EXPECT_EQ(code, row.operation(archive)) << row.call;
        }
    }
}

TEST(COrvWriteBlockArchiveTest, WithoutAStreamEveryOperationIsUnexpected) {
    COrvWriteBlockArchive archive(nullptr);
    for (const Row& row : kRows) {
        EXPECT_EQ(kUnexpected, row.operation(archive)) << row.call;
    }
    EXPECT_EQ(kUnexpected, archive.WriteInt64(1));
}

TEST(COrvWriteBlockArchiveTest, TheVariantIsHandedOnAsItIs) {
    RecordingStream stream;
    COrvWriteBlockArchive archive(&stream);
    EXPECT_EQ(0, archive.WriteVariant(SomeVariant()));
    EXPECT_EQ(SomeVariant(), stream.variant);
}

TEST(COrvWriteBlockArchiveTest, SixtyFourBitsAreTwoLongsLowHalfFirst) {
    RecordingStream stream;
    COrvWriteBlockArchive archive(&stream);
    EXPECT_EQ(0, archive.WriteInt64(0x0123456789ABCDEF));
    EXPECT_EQ(0, archive.WriteInt64(-1));
    EXPECT_EQ((Calls{"PutLong 89ABCDEF", "PutLong 01234567", "PutLong FFFFFFFF", "PutLong FFFFFFFF"}), stream.calls);
}

TEST(COrvWriteBlockArchiveTest, AFailedLowHalfIsTheEndOfIt) {
    for (const int k : {1, 2}) {
        RecordingStream stream;
        stream.counter.FailAt(k, -6);
        COrvWriteBlockArchive archive(&stream);
        EXPECT_EQ(-6, archive.WriteInt64(5));
        EXPECT_EQ(k, stream.counter.GetCount());
    }
}

TEST(COrvWriteBlockArchiveTest, HoldsAReferenceAsLongAsItLives) {
    RecordingStream stream;
    {
        const std::unique_ptr<KivCOMShared::COrvWriteArchive> archive =
            std::make_unique<COrvWriteBlockArchive>(&stream);
        EXPECT_EQ(2U, stream.references.count);
        EXPECT_EQ(1, stream.references.added);
    }
    EXPECT_EQ(1U, stream.references.count);
    EXPECT_EQ(1, stream.references.released);
    EXPECT_EQ(Calls(), stream.calls);
}

}  // namespace
}  // namespace KivGenerics::Testing
