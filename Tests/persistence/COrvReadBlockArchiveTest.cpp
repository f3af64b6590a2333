// The archive over a host's stream, for reading.

#include "persistence/COrvReadBlockArchive.h"

#include <cstring>
#include <memory>

#include <gtest/gtest.h>

#include "persistence/Streams.h"

namespace KivGenerics::Testing {
namespace {

constexpr auto kUnexpected = static_cast<std::int32_t>(0x8000FFFF);
constexpr auto kNullPointer = static_cast<std::int32_t>(0x80004003);
constexpr auto kMismatch = static_cast<std::int32_t>(0x8004119A);
constexpr auto kTooLong = static_cast<std::int32_t>(0x80044AEA);

/// Room for every kind of value, full of other things.
struct Values {
    Values() { std::memset(variant, 0xEE, sizeof variant); }

    VARIANT* GetVariant() { return reinterpret_cast<VARIANT*>(variant); }
    /// True when all of them are what an archive makes them before it reads.
    bool AreClear() const {
        return number16 == 0 && real == 0.0 && id.Data1 == 0 && id.Data4[7] == 0 && number32 == 0 && number64 == 0 &&
               text.empty() && variant[0] == 0 && variant[1] == 0;
    }

    std::uint16_t number16 = 0xEEEE;
    double real = 9.0;
    GUID id = {0xEEEEEEEE, 0xEEEE, 0xEEEE, {1, 2, 3, 4, 5, 6, 7, 8}};
    std::int32_t number32 = 99;
    std::int64_t number64 = 99;
    KivBase::WString text = u"old";
    alignas(16) unsigned char variant[32];
};

/// Reads one value of each kind; the results.
std::vector<std::int32_t> ReadAll(KivCOMShared::COrvReadArchive& archive, Values& values) {
    std::vector<std::int32_t> results;
    results.push_back(archive.ReadShort(&values.number16));
    results.push_back(archive.ReadDouble(&values.real));
    results.push_back(archive.ReadGUID(&values.id));
    results.push_back(archive.ReadLong(&values.number32));
    results.push_back(archive.ReadInt64(&values.number64));
    results.push_back(archive.ReadWideString(values.text));
    results.push_back(archive.ReadVariant(values.GetVariant()));
    return results;
}

const std::vector<std::int32_t> kAllUnexpected(7, kUnexpected);

TEST(COrvReadBlockArchiveTest, EveryValueIsReadWithTheStreamsOperationForIt) {
    ScriptedStream stream({"Short FEDC", "Double 3FF8000000000000", "Guid 00000001-0002-0003-0405060708090A0B",
                           "Long FFFFFFFE", "Long 00000005", "Long 00000006", "Text \"text\"", "Variant 0003"});
    COrvReadBlockArchive archive(&stream);
    Values values;
    EXPECT_EQ(std::vector<std::int32_t>(7, 0), ReadAll(archive, values));
    EXPECT_EQ(0xFEDC, values.number16);
    EXPECT_EQ(1.5, values.real);
    EXPECT_EQ(1U, values.id.Data1);
    EXPECT_EQ(2U, values.id.Data2);
    EXPECT_EQ(3U, values.id.Data3);
    EXPECT_EQ(11U, values.id.Data4[7]);
    EXPECT_EQ(-2, values.number32);
    EXPECT_EQ(0x600000005, values.number64);
    EXPECT_EQ(u"text", values.text);
    EXPECT_EQ(values.GetVariant(), stream.variant);
    EXPECT_EQ((Calls{"GetShort", "GetDouble", "GetGUID", "GetLong", "GetLong", "GetLong", "GetStringLength",
                     "GetStringChars 4", "GetVariant"}),
              stream.operations);
}

TEST(COrvReadBlockArchiveTest, WithoutAStreamEveryValueIsClearedAndUnexpected) {
    COrvReadBlockArchive archive(nullptr);
    Values values;
    EXPECT_EQ(kAllUnexpected, ReadAll(archive, values));
    EXPECT_TRUE(values.AreClear());
    std::uint16_t tag = 7;
    EXPECT_EQ(kUnexpected, archive.ReadObjectTag(0, &tag));
    EXPECT_EQ(0, tag);
    tag = 7;
    EXPECT_EQ(kUnexpected, archive.ReadExpectedObjectTag(7, &tag));
    EXPECT_EQ(0, tag);
    EXPECT_EQ(kUnexpected, archive.EndReadObject());
    EXPECT_EQ(kNullPointer, archive.ReadObjectTag(0, nullptr));
    EXPECT_EQ(kNullPointer, archive.ReadExpectedObjectTag(0, nullptr));
}

TEST(COrvReadBlockArchiveTest, AFailedReadClearsTheValueAndAnswersTheStreamsCode) {
    for (const std::int32_t code : {-1, static_cast<std::int32_t>(0x80070057)}) {
        ScriptedStream stream({});
        stream.counter.FailAt(1, code, true);
        COrvReadBlockArchive archive(&stream);
        Values values;
        EXPECT_EQ(std::vector<std::int32_t>(7, code), ReadAll(archive, values));
        EXPECT_TRUE(values.AreClear());
        EXPECT_EQ((Calls{"GetShort", "GetDouble", "GetGUID", "GetLong", "GetLong", "GetStringLength", "GetVariant"}),
                  stream.operations);
    }
}

TEST(COrvReadBlockArchiveTest, SixtyFourBitsKeepTheSignOfTheLowHalf) {
    ScriptedStream stream({"Long 80000000", "Long 00000001", "Long FFFFFFFF", "Long FFFFFFFF"});
    COrvReadBlockArchive archive(&stream);
    std::int64_t value = 0;
    EXPECT_EQ(0, archive.ReadInt64(&value));
    EXPECT_EQ(0x80000000, value);
    EXPECT_EQ(0, archive.ReadInt64(&value));
    EXPECT_EQ(-1 - 0x100000000, value);
}

TEST(COrvReadBlockArchiveTest, AFailedHighHalfLeavesTheLowOne) {
    ScriptedStream stream({"Long 80000001", "Long 00000001"});
    stream.counter.FailAt(2, -8);
    COrvReadBlockArchive archive(&stream);
    std::int64_t value = 5;
    EXPECT_EQ(-8, archive.ReadInt64(&value));
    EXPECT_EQ(-0x7FFFFFFF, value);
}

TEST(COrvReadBlockArchiveTest, ATextOf256000UnitsIsRead) {
    const KivBase::WString text(256000, u'x');
    ScriptedStream stream({TextCall(text.data(), text.size())});
    COrvReadBlockArchive archive(&stream);
    KivBase::WString read;
    EXPECT_EQ(0, archive.ReadWideString(read));
    EXPECT_EQ(text, read);
    EXPECT_EQ((Calls{"GetStringLength", "GetStringChars 256000"}), stream.operations);
}

TEST(COrvReadBlockArchiveTest, ALongerTextIsRefusedUnread) {
    for (const std::uint32_t length : {256001U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        ScriptedStream stream({"Text \"x\""});
        stream.claimedLength = length;
        COrvReadBlockArchive archive(&stream);
        KivBase::WString read = u"old";
        EXPECT_EQ(kTooLong, archive.ReadWideString(read));
        EXPECT_EQ(u"", read);
        EXPECT_EQ(Calls{"GetStringLength"}, stream.operations);
    }
}

TEST(COrvReadBlockArchiveTest, ATextIsCutAtItsFirstNul) {
    ScriptedStream stream({"Text \"ab\\u0000cd\"", "Text \"\\u0000x\""});
    COrvReadBlockArchive archive(&stream);
    KivBase::WString read;
    EXPECT_EQ(0, archive.ReadWideString(read));
    EXPECT_EQ(KivBase::WString(u"ab"), read);
    EXPECT_EQ(0, archive.ReadWideString(read));
    EXPECT_EQ(0U, read.size());
}

TEST(COrvReadBlockArchiveTest, AnEmptyTextIsReadTwiceLikeAnyOther) {
    ScriptedStream stream({"Text \"\""});
    COrvReadBlockArchive archive(&stream);
    KivBase::WString read = u"old";
    EXPECT_EQ(0, archive.ReadWideString(read));
    EXPECT_EQ(u"", read);
    EXPECT_EQ((Calls{"GetStringLength", "GetStringChars 0"}), stream.operations);
}

TEST(COrvReadBlockArchiveTest, TheStreamFillsABufferOfZeros) {
    ScriptedStream stream({"Text \"abc\""});
    stream.claimedLength = 1000;
    COrvReadBlockArchive archive(&stream);
    KivBase::WString read;
    EXPECT_EQ(0, archive.ReadWideString(read));
    EXPECT_TRUE(stream.bufferWasZero);
    EXPECT_EQ(u"abc", read);
}

TEST(COrvReadBlockArchiveTest, TheTextEndsWhereTheStreamSaidItDoes) {
    ScriptedStream stream({"Text \"abc\""});
    stream.overruns = true;
    COrvReadBlockArchive archive(&stream);
    KivBase::WString read;
    EXPECT_EQ(0, archive.ReadWideString(read));
    EXPECT_EQ(u"abc", read);
}

TEST(COrvReadBlockArchiveTest, AFailedTextIsEmpty) {
    ScriptedStream stream({"Text \"abc\""});
    stream.counter.FailAt(2, -8);
    COrvReadBlockArchive archive(&stream);
    KivBase::WString read = u"old";
    EXPECT_EQ(-8, archive.ReadWideString(read));
    EXPECT_EQ(u"", read);
}

TEST(COrvReadBlockArchiveTest, AnyTagIsTakenWhereNoneIsExpected) {
    ScriptedStream stream({"Begin 0406", "Begin 0000"});
    COrvReadBlockArchive archive(&stream);
    std::uint16_t tag = 1;
    EXPECT_EQ(0, archive.ReadObjectTag(0, &tag));
    EXPECT_EQ(0x0406, tag);
    EXPECT_EQ(0, archive.ReadObjectTag(0, &tag));
    EXPECT_EQ(0, tag);
}

TEST(COrvReadBlockArchiveTest, TheExpectedTagIsTaken) {
    ScriptedStream stream({"Begin 0007", "Long 00000001"});
    COrvReadBlockArchive archive(&stream);
    std::uint16_t tag = 0;
    EXPECT_EQ(0, archive.ReadObjectTag(7, &tag));
    EXPECT_EQ(7, tag);
    std::int32_t value = 0;
    EXPECT_EQ(0, archive.ReadLong(&value));
    EXPECT_EQ(1, value);
}

TEST(COrvReadBlockArchiveTest, AnotherTagWaitsUntilItIsAskedFor) {
    ScriptedStream stream({"Begin 0006", "Long 00000001"});
    COrvReadBlockArchive archive(&stream);
    std::uint16_t tag = 9;
    EXPECT_EQ(1, archive.ReadObjectTag(7, &tag));
    EXPECT_EQ(0, tag);
    tag = 9;
    EXPECT_EQ(1, archive.ReadObjectTag(8, &tag));
    EXPECT_EQ(0, tag);
    EXPECT_EQ(kMismatch, archive.ReadExpectedObjectTag(7, &tag));
    EXPECT_EQ(0, archive.ReadObjectTag(6, &tag));
    EXPECT_EQ(6, tag);
    EXPECT_EQ(Calls{"GetObjectTag"}, stream.operations);
    std::int32_t value = 0;
    EXPECT_EQ(0, archive.ReadLong(&value));
    EXPECT_EQ(1, value);
}

TEST(COrvReadBlockArchiveTest, AWaitingTagIsTakenWhereNoneIsExpectedWithoutCallingTheStream) {
    ScriptedStream stream({"Begin 0006"});
    COrvReadBlockArchive archive(&stream);
    std::uint16_t tag = 0;
    EXPECT_EQ(1, archive.ReadObjectTag(7, &tag));
    EXPECT_EQ(0, archive.ReadObjectTag(0, &tag));
    EXPECT_EQ(6, tag);
    EXPECT_EQ(Calls{"GetObjectTag"}, stream.operations);
}

TEST(COrvReadBlockArchiveTest, WhileATagWaitsEveryValueIsClearedAndUnexpected) {
    ScriptedStream stream({"Begin 0006"});
    COrvReadBlockArchive archive(&stream);
    std::uint16_t tag = 0;
    EXPECT_EQ(1, archive.ReadObjectTag(7, &tag));
    Values values;
    EXPECT_EQ(kAllUnexpected, ReadAll(archive, values));
    EXPECT_TRUE(values.AreClear());
    EXPECT_EQ(Calls{"GetObjectTag"}, stream.operations);
}

TEST(COrvReadBlockArchiveTest, EndingAnObjectLeavesFirstTheOneReadAhead) {
    ScriptedStream stream(
        {"Begin 0001", "Begin 0006", "Long 00000001", "End", "Long 00000002", "End", "Long 00000003"});
    COrvReadBlockArchive archive(&stream);
    std::uint16_t tag = 0;
    EXPECT_EQ(0, archive.ReadObjectTag(1, &tag));
    EXPECT_EQ(1, archive.ReadObjectTag(7, &tag));
    EXPECT_EQ(0, archive.EndReadObject());
    EXPECT_EQ((Calls{"GetObjectTag", "GetObjectTag", "GetEndObject", "GetEndObject"}), stream.operations);
    std::int32_t value = 0;
    EXPECT_EQ(0, archive.ReadLong(&value));
    EXPECT_EQ(3, value);
}

TEST(COrvReadBlockArchiveTest, EndingAnObjectWithNothingReadAheadIsOneCall) {
    ScriptedStream stream({"Begin 0001", "End"});
    COrvReadBlockArchive archive(&stream);
    std::uint16_t tag = 0;
    EXPECT_EQ(0, archive.ReadObjectTag(0, &tag));
    EXPECT_EQ(0, archive.EndReadObject());
    EXPECT_EQ((Calls{"GetObjectTag", "GetEndObject"}), stream.operations);
}

TEST(COrvReadBlockArchiveTest, AFailedEndIsAnswered) {
    for (const int k : {1, 2}) {
        ScriptedStream stream({"Begin 0001", "Begin 0006", "End", "End"});
        COrvReadBlockArchive archive(&stream);
        std::uint16_t tag = 0;
        EXPECT_EQ(0, archive.ReadObjectTag(0, &tag));
        EXPECT_EQ(1, archive.ReadObjectTag(7, &tag));
        stream.counter.FailAt(k, -8);
        EXPECT_EQ(-8, archive.EndReadObject());
        EXPECT_EQ(2 + k, stream.counter.GetCount());
    }
}

TEST(COrvReadBlockArchiveTest, WhereNoObjectFollowsTheResultIsOneAndNothingWaits) {
    ScriptedStream stream({"Begin 0001", "End", "Long 00000003"});
    COrvReadBlockArchive archive(&stream);
    std::uint16_t tag = 9;
    EXPECT_EQ(0, archive.ReadObjectTag(0, &tag));
    EXPECT_EQ(1, archive.ReadObjectTag(7, &tag));
    EXPECT_EQ(0, tag);
    EXPECT_EQ(kMismatch, archive.ReadExpectedObjectTag(7, &tag));
    EXPECT_EQ(0, archive.EndReadObject());
    std::int32_t value = 0;
    EXPECT_EQ(0, archive.ReadLong(&value));
}

TEST(COrvReadBlockArchiveTest, AFailedTagIsAnsweredAndNothingWaits) {
    ScriptedStream stream({"Long 00000003"});
    stream.counter.FailAt(1, -8);
    COrvReadBlockArchive archive(&stream);
    std::uint16_t tag = 9;
    EXPECT_EQ(-8, archive.ReadObjectTag(7, &tag));
    EXPECT_EQ(0, tag);
    std::int32_t value = 0;
    EXPECT_EQ(0, archive.ReadLong(&value));
    EXPECT_EQ(3, value);
}

TEST(COrvReadBlockArchiveTest, AnExpectedTagIsStrict) {
    ScriptedStream stream({"Begin 040B"});
    COrvReadBlockArchive archive(&stream);
    std::uint16_t tag = 9;
    EXPECT_EQ(kMismatch, archive.ReadExpectedObjectTag(1036, &tag));
    EXPECT_EQ(0, tag);
    EXPECT_EQ(0, archive.ReadExpectedObjectTag(1035, &tag));
    EXPECT_EQ(1035, tag);
    stream.counter.FailAt(1, -8);
    EXPECT_EQ(-8, archive.ReadExpectedObjectTag(1035, &tag));
}

TEST(COrvReadBlockArchiveTest, ANullPlaceForTheTagTouchesNothing) {
    ScriptedStream stream({"Begin 0006"});
    COrvReadBlockArchive archive(&stream);
    EXPECT_EQ(kNullPointer, archive.ReadObjectTag(0, nullptr));
    EXPECT_EQ(kNullPointer, archive.ReadExpectedObjectTag(6, nullptr));
    EXPECT_EQ(Calls(), stream.operations);
}

TEST(COrvReadBlockArchiveTest, HoldsAReferenceAsLongAsItLives) {
    ScriptedStream stream({});
    {
        const std::unique_ptr<KivCOMShared::COrvReadArchive> archive = std::make_unique<COrvReadBlockArchive>(&stream);
        EXPECT_EQ(2U, stream.references.count);
        EXPECT_EQ(1, stream.references.added);
    }
    EXPECT_EQ(1U, stream.references.count);
    EXPECT_EQ(1, stream.references.released);
    EXPECT_EQ(Calls(), stream.operations);
}

}  // namespace
}  // namespace KivGenerics::Testing
