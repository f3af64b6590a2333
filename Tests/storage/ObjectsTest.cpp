#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>
#include <gtest/gtest.h>

#include "storage/Support.h"
#include "support/WholeVariant.h"

using namespace KivStorage;
using namespace StorageTest;

namespace {

template <class SomeBytes>
KivBase::ReturnPtrI<MemoryReadStream> Read(const SomeBytes& bytes, const ReadLimits& limits = {}) {
    return MemoryReadStream::Create(bytes.data(), bytes.size(), limits);
}

/// `depth` objects, one in another.
Bytes Nested(std::size_t depth) {
    Bytes items;
    for (std::size_t i = 0; i < depth; ++i) {
        items.insert(items.end(), {0x07, 0x01, 0x00});
    }
    items.insert(items.end(), depth, 0x08);
    return Frame(items, 2 * depth);
}

TEST(ObjectsTest, EndingAnObjectSkipsValuesOfEveryTypeAndNestedObjects) {
    const auto out = MemoryWriteStream::Create();
    const GUID id = {1, 2, 3, {4}};
    Variant variant;
    out->PutBeginObject(1);
    out->PutLong(1);
    out->PutBeginObject(2);
    out->PutBeginObject(3);
    out->PutDouble(1);
    out->PutShort(1);
    out->PutWideString(u"skipped", 7);
    out->PutEndObject();
    out->PutGUID(id);
    out->PutVariant(variant);
    out->PutEndObject();
    out->PutLong(2);
    out->PutEndObject();
    out->PutLong(3);
    ASSERT_TRUE(out->Finish().Ok());

    const auto in = Read(out->GetBytes());
    std::uint16_t tag = 0;
    std::int32_t number = 0;
    ASSERT_EQ(0, in->GetObjectTag(&tag));
    ASSERT_EQ(0, in->GetLong(&number));
    ASSERT_EQ(0, in->GetObjectTag(&tag));
    ASSERT_EQ(2, tag);
    EXPECT_EQ(0, in->GetEndObject());
    EXPECT_EQ(0, in->GetLong(&number));
    EXPECT_EQ(2, number);
    EXPECT_EQ(0, in->GetEndObject());
    EXPECT_EQ(0, in->GetLong(&number));
    EXPECT_EQ(3, number);
    EXPECT_TRUE(in->Finish().Ok());
}

TEST(ObjectsTest, EndingAnObjectSkipsATextOfWhichOnlyTheLengthWasRead) {
    const Bytes bytes = Frame(FromHex("07 01 00 04 02 00 00 00 41 00 42 00 08 01 05 00 00 00"), 4);
    const auto in = Read(bytes);
    std::uint16_t tag = 0;
    std::uint32_t length = 0;
    std::int32_t number = 0;
    ASSERT_EQ(0, in->GetObjectTag(&tag));
    ASSERT_EQ(0, in->GetStringLength(&length));
    EXPECT_EQ(0, in->GetEndObject());
    EXPECT_EQ(0, in->GetLong(&number));
    EXPECT_EQ(5, number);
    EXPECT_TRUE(in->Finish().Ok());
}

TEST(ObjectsTest, ASkippedTextMayBeLongerThanWhatFollowsAllowsAndIsRefusedThen) {
    const Bytes bytes = Frame(FromHex("07 01 00 04 FF FF FF FF 41 00 08"), 3);
    const auto in = Read(bytes);
    std::uint16_t tag = 0;
    ASSERT_EQ(0, in->GetObjectTag(&tag));
    EXPECT_EQ(StorageItemCutOff, in->GetEndObject());
}

TEST(ObjectsTest, EndingAnObjectWhereNoneIsOpenIsRefusedByBothStreams) {
    const auto out = MemoryWriteStream::Create();
    EXPECT_EQ(StorageNoOpenObject, out->PutEndObject());
    EXPECT_EQ(StorageNoOpenObject, out->PutLong(1));
    EXPECT_EQ(StorageNoOpenObject, out->Finish().code);
    const Bytes bytes = Frame(FromHex("07 01 00 08"), 2);
    const auto in = Read(bytes);
    EXPECT_EQ(StorageNoOpenObject, in->GetEndObject());
}

TEST(ObjectsTest, AnEndThatStandsWhereNoObjectIsOpenIsAnsweredAsTheEndOfObjects) {
    const Bytes bytes = Frame(FromHex("08"), 1);
    std::uint16_t tag = 0;
    EXPECT_EQ(1, Read(bytes)->GetObjectTag(&tag));
    EXPECT_EQ(StorageItemsLeft, Read(bytes)->Finish().code);
}

TEST(ObjectsTest, FinishingWithAnOpenObjectIsRefusedByBothStreams) {
    const auto out = MemoryWriteStream::Create();
    out->PutBeginObject(1);
    EXPECT_EQ(StorageOpenObjects, out->Finish().code);
    EXPECT_EQ(0u, out->GetBytes().size());
    const Bytes bytes = Frame(FromHex("07 01 00 08"), 2);
    const auto in = Read(bytes);
    std::uint16_t tag = 0;
    ASSERT_EQ(0, in->GetObjectTag(&tag));
    EXPECT_EQ(StorageOpenObjects, in->Finish().code);
}

TEST(ObjectsTest, DataThatEndWithAnOpenObjectAreRefused) {
    const Bytes bytes = Frame(FromHex("07 01 00"), 1);
    std::uint16_t tag = 0;
    std::int32_t number = 0;
    auto in = Read(bytes);
    ASSERT_EQ(0, in->GetObjectTag(&tag));
    EXPECT_EQ(StorageOpenObjects, in->GetEndObject());
    in = Read(bytes);
    ASSERT_EQ(0, in->GetObjectTag(&tag));
    EXPECT_EQ(StorageOpenObjects, in->GetObjectTag(&tag));
    in = Read(bytes);
    ASSERT_EQ(0, in->GetObjectTag(&tag));
    EXPECT_EQ(StorageOpenObjects, in->GetLong(&number));
}

TEST(ObjectsTest, FinishingWithItemsLeftIsRefused) {
    const Bytes bytes = Frame(FromHex("01 00 00 00 00"), 1);
    EXPECT_EQ(StorageItemsLeft, Read(bytes)->Finish().code);
}

TEST(ObjectsTest, NothingIsTakenAfterTheEnd) {
    const auto out = MemoryWriteStream::Create();
    ASSERT_TRUE(out->Finish().Ok());
    const Bytes bytes = out->GetBytes().ToVector();
    EXPECT_EQ(68u, bytes.size());
    EXPECT_EQ(StorageAlreadyFinished, out->PutLong(1));
    EXPECT_EQ(StorageAlreadyFinished, out->Finish().code);
    EXPECT_EQ(bytes, out->GetBytes().ToVector());
    const auto twice = MemoryWriteStream::Create();
    ASSERT_TRUE(twice->Finish().Ok());
    EXPECT_EQ(StorageAlreadyFinished, twice->Finish().code);
    const auto end = MemoryWriteStream::Create();
    ASSERT_TRUE(end->Finish().Ok());
    EXPECT_EQ(StorageAlreadyFinished, end->PutEndObject());

    const auto in = Read(bytes);
    std::int32_t number = 0;
    ASSERT_TRUE(in->Finish().Ok());
    EXPECT_EQ(StorageAlreadyFinished, in->GetLong(&number));
    const auto ended = Read(bytes);
    ASSERT_TRUE(ended->Finish().Ok());
    EXPECT_EQ(StorageAlreadyFinished, ended->GetEndObject());
}

TEST(ObjectsTest, ObjectsNestTwoLevelsDeeperThanTheLimitForComposites) {
    ReadLimits limits;
    limits.nesting = 3;
    const Bytes fits = Nested(5);
    const Bytes tooDeep = Nested(6);
    std::uint16_t tag = 0;
    const auto deep = Read(fits, limits);
    for (int level = 0; level < 5; ++level) {
        EXPECT_EQ(0, deep->GetObjectTag(&tag));
    }
    const auto deeper = Read(tooDeep, limits);
    for (int level = 0; level < 5; ++level) {
        EXPECT_EQ(0, deeper->GetObjectTag(&tag));
    }
    EXPECT_EQ(StorageNestingTooDeep, deeper->GetObjectTag(&tag));
    // What is skipped is held to the same limit.
    const auto skipping = Read(fits, limits);
    ASSERT_EQ(0, skipping->GetObjectTag(&tag));
    EXPECT_EQ(0, skipping->GetEndObject());
    const auto refused = Read(tooDeep, limits);
    ASSERT_EQ(0, refused->GetObjectTag(&tag));
    EXPECT_EQ(StorageNestingTooDeep, refused->GetEndObject());
}

TEST(ObjectsTest, TheDefaultLimitIsAThousandLevelsAndTwoObjects) {
    std::uint16_t tag = 0;
    const Bytes fits = Nested(1002);
    const auto in = Read(fits);
    ASSERT_EQ(0, in->GetObjectTag(&tag));
    EXPECT_EQ(0, in->GetEndObject());
    const Bytes tooDeep = Nested(1003);
    const auto refused = Read(tooDeep);
    ASSERT_EQ(0, refused->GetObjectTag(&tag));
    EXPECT_EQ(StorageNestingTooDeep, refused->GetEndObject());
}

TEST(ObjectsTest, AMillionUnreadNestedObjectsAreSkippedWithoutStack) {
    const Bytes bytes = Nested(1000000);
    ReadLimits limits;
    limits.nesting = 2000000;
    const auto in = Read(bytes, limits);
    std::uint16_t tag = 0;
    ASSERT_EQ(0, in->GetObjectTag(&tag));
    EXPECT_EQ(0, in->GetEndObject());
    EXPECT_TRUE(in->Finish().Ok());
}

TEST(ObjectsTest, TheUnitsOfATextMustBeReadBeforeAnythingElse) {
    const Bytes bytes = Frame(FromHex("07 01 00 04 01 00 00 00 41 00 01 00 00 00 00 08"), 4);
    std::uint16_t tag = 0;
    std::uint32_t length = 0;
    std::int32_t number = 0;
    char16_t units[3] = {};
    const auto start = [&] {
        auto in = Read(bytes);
        EXPECT_EQ(0, in->GetObjectTag(&tag));
        EXPECT_EQ(0, in->GetStringLength(&length));
        return in;
    };
    EXPECT_EQ(StorageTextPending, start()->GetLong(&number));
    EXPECT_EQ(StorageTextPending, start()->GetObjectTag(&tag));
    EXPECT_EQ(StorageTextPending, start()->GetStringLength(&length));
    EXPECT_EQ(StorageTextPending, start()->Finish().code);
    EXPECT_EQ(StorageTextNotAnnounced, start()->GetStringChars(0, units));
    EXPECT_EQ(StorageTextNotAnnounced, start()->GetStringChars(2, units));
    const auto twice = start();
    EXPECT_EQ(0, twice->GetStringChars(1, units));
    EXPECT_EQ(StorageTextNotAnnounced, twice->GetStringChars(1, units));
    EXPECT_EQ(StorageTextNotAnnounced, Read(bytes)->GetStringChars(0, units));
}

TEST(ObjectsTest, AnEmptyTextIsReadInTwoStepsToo) {
    const Bytes bytes = Frame(FromHex("04 00 00 00 00"), 1);
    const auto in = Read(bytes);
    std::uint32_t length = 7;
    char16_t units[1] = {u'x'};
    EXPECT_EQ(0, in->GetStringLength(&length));
    EXPECT_EQ(0u, length);
    EXPECT_EQ(0, in->GetStringChars(0, units));
    EXPECT_EQ(u'x', units[0]);
    EXPECT_TRUE(in->Finish().Ok());
}

TEST(ObjectsTest, ATextUpToTheLimitIsReadAndALongerOneRefused) {
    ReadLimits limits;
    limits.stringUnits = 3;
    const auto lengthOf = [&limits](const char* hex) {
        const Bytes bytes = Frame(FromHex(hex), 1);
        std::uint32_t length = 0;
        const std::int32_t code = Read(bytes, limits)->GetStringLength(&length);
        return code < 0 ? code : static_cast<std::int32_t>(length);
    };
    EXPECT_EQ(3, lengthOf("04 03 00 00 00 41 00 41 00 41 00"));
    EXPECT_EQ(StorageTextTooLong, lengthOf("04 04 00 00 00 41 00 41 00 41 00 41 00"));
    EXPECT_EQ(256000u, ReadLimits().stringUnits);
}

TEST(ObjectsTest, ATextThatCannotFitIntoTheRestOfTheDataIsRefusedBeforeAnybodyMakesRoomForIt) {
    const Bytes bytes = Frame(FromHex("04 00 E8 03 00 41 00"), 1);
    std::uint32_t length = 0;
    EXPECT_EQ(StorageItemCutOff, Read(bytes)->GetStringLength(&length));
}

TEST(ObjectsTest, NullPlacesAreRefused) {
    const Bytes bytes = Frame(FromHex("01 00 00 00 00"), 1);
    EXPECT_EQ(StorageNullPointer, Read(bytes)->GetLong(nullptr));
    EXPECT_EQ(StorageNullPointer, Read(bytes)->GetDouble(nullptr));
    EXPECT_EQ(StorageNullPointer, Read(bytes)->GetShort(nullptr));
    EXPECT_EQ(StorageNullPointer, Read(bytes)->GetStringLength(nullptr));
    EXPECT_EQ(StorageNullPointer, Read(bytes)->GetStringChars(0, nullptr));
    EXPECT_EQ(StorageNullPointer, Read(bytes)->GetGUID(nullptr));
    EXPECT_EQ(StorageNullPointer, Read(bytes)->GetVariant(nullptr));
    EXPECT_EQ(StorageNullPointer, Read(bytes)->GetObjectTag(nullptr));
    EXPECT_EQ(StorageNullPointer, MemoryWriteStream::Create()->PutVariant(nullptr));
    EXPECT_EQ(StorageNullPointer, MemoryWriteStream::Create()->PutWideString(nullptr, 1));
    EXPECT_EQ(StorageNullPointer, MemoryReadStream::Create(nullptr, 1)->GetError().code);
    EXPECT_EQ(StorageTruncated, MemoryReadStream::Create(nullptr, 0)->Finish().code);
}

TEST(ObjectsTest, AVariantThatPointsSomewhereIsRefused) {
    const std::uint16_t types[] = {8, 9, 12, 13, 14, 36, 0x4003, 0x2003};
    for (const std::uint16_t type : types) {
        EXPECT_EQ(StorageUnsupportedVariant, MemoryWriteStream::Create()->PutVariant(Variant(type))) << type;
    }
}

}  // namespace
