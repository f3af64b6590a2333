#include <cmath>
#include <functional>
#include <limits>

#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>
#include <gtest/gtest.h>

#include "storage/Support.h"
#include "support/WholeVariant.h"

using namespace KivStorage;
using namespace StorageTest;

namespace {

const GUID kId = {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}};

/// The bytes of the items that `put` writes, without the framing around one block.
std::string ItemBytes(const std::function<void(MemoryWriteStream&)>& put) {
    const auto stream = MemoryWriteStream::Create();
    put(*stream);
    EXPECT_EQ("", stream->Finish().sentence);
    const Bytes bytes = stream->GetBytes().ToVector();
    EXPECT_GE(bytes.size(), 24u + 12u + 44u);
    return ToHex(Bytes(bytes.begin() + 28, bytes.end() - 52));
}

template <class SomeBytes>
KivBase::ReturnPtrI<MemoryReadStream> Read(const SomeBytes& bytes, const ReadLimits& limits = {}) {
    return MemoryReadStream::Create(bytes.data(), bytes.size(), limits);
}

Bytes Items(const char* hex, std::uint64_t count) {
    return Frame(FromHex(hex), count);
}

using Get = std::function<std::int32_t(MemoryReadStream&)>;

struct Getter {
    const char* name;
    Get get;
};

const Getter kGetters[] = {
    {"long",
     [](MemoryReadStream& s) {
         std::int32_t v = 0;
         return s.GetLong(&v);
     }},
    {"double",
     [](MemoryReadStream& s) {
         double v = 0;
         return s.GetDouble(&v);
     }},
    {"short",
     [](MemoryReadStream& s) {
         std::uint16_t v = 0;
         return s.GetShort(&v);
     }},
    {"text",
     [](MemoryReadStream& s) {
         std::uint32_t v = 0;
         return s.GetStringLength(&v);
     }},
    {"guid",
     [](MemoryReadStream& s) {
         GUID v;
         return s.GetGUID(&v);
     }},
    {"variant",
     [](MemoryReadStream& s) {
         Variant v;
         return s.GetVariant(v);
     }},
    {"object",
     [](MemoryReadStream& s) {
         std::uint16_t v = 0;
         return s.GetObjectTag(&v);
     }},
};

struct ItemCase {
    const char* name;
    const char* hex;
};

const ItemCase kItems[] = {
    {"long", "01 01 02 03 04"},
    {"double", "02 00 00 00 00 00 00 F0 3F"},
    {"short", "03 01 02"},
    {"text", "04 01 00 00 00 41 00"},
    {"guid", "05 78 56 34 12 BC 9A F0 DE 01 02 03 04 05 06 07 08"},
    {"variant", "06 03 00 05 00 00 00 00 00 00 00"},
};

TEST(ItemsTest, ALongIsItsTypeAndFourBytes) {
    EXPECT_EQ("01 FE FF FF FF", ItemBytes([](auto& s) { s.PutLong(-2); }));
    EXPECT_EQ("01 04 03 02 01", ItemBytes([](auto& s) { s.PutLong(0x01020304); }));
}

TEST(ItemsTest, ADoubleIsItsTypeAndEightBytes) {
    EXPECT_EQ("02 00 00 00 00 00 00 F8 BF", ItemBytes([](auto& s) { s.PutDouble(-1.5); }));
}

TEST(ItemsTest, AShortIsItsTypeAndTwoBytes) {
    EXPECT_EQ("03 FE CA", ItemBytes([](auto& s) { s.PutShort(0xCAFE); }));
}

TEST(ItemsTest, ATextIsItsTypeTheNumberOfUnitsAndTheUnits) {
    EXPECT_EQ("04 03 00 00 00 41 00 00 00 AC 20", ItemBytes([](auto& s) { s.PutWideString(u"A\0\u20AC", 3); }));
    EXPECT_EQ("04 00 00 00 00", ItemBytes([](auto& s) { s.PutWideString(nullptr, 0); }));
}

TEST(ItemsTest, AGuidIsItsTypeAndSixteenBytes) {
    EXPECT_EQ("05 78 56 34 12 BC 9A F0 DE 01 02 03 04 05 06 07 08", ItemBytes([](auto& s) { s.PutGUID(kId); }));
}

TEST(ItemsTest, AVariantIsItsTypeAndItsValueWithoutTheBytesThatItsTypeDoesNotUse) {
    const auto bytesOf = [](std::uint16_t type) {
        Variant variant(type, 0x7700000605ULL);
        return ItemBytes([&](auto& s) { s.PutVariant(variant); });
    };
    EXPECT_EQ("06 00 00 00 00 00 00 00 00 00 00", bytesOf(0));
    EXPECT_EQ("06 01 00 00 00 00 00 00 00 00 00", bytesOf(1));
    EXPECT_EQ("06 11 00 05 00 00 00 00 00 00 00", bytesOf(17));
    EXPECT_EQ("06 0B 00 05 06 00 00 00 00 00 00", bytesOf(11));
    EXPECT_EQ("06 03 00 05 06 00 00 00 00 00 00", bytesOf(3));
    EXPECT_EQ("06 14 00 05 06 00 00 77 00 00 00", bytesOf(20));
}

TEST(ItemsTest, AVariantOfEveryPlainTypeComesBack) {
    const struct {
        std::uint16_t type;
        std::uint64_t value;
        std::uint64_t mask;  // the bytes that the type uses
    } rows[] = {{0, 0, 0},
                {1, 0, 0},
                {2, 0xFFFE, 0xFFFF},
                {3, 0xFFFFFFFE, 0xFFFFFFFF},
                {4, 0x3F800000, 0xFFFFFFFF},
                {5, 1ULL << 62, ~0ULL},
                {6, ~0ULL, ~0ULL},
                {7, 1, ~0ULL},
                {10, 0x80004005, 0xFFFFFFFF},
                {11, 0xFFFF, 0xFFFF},
                {16, 0x80, 0xFF},
                {17, 0xFF, 0xFF},
                {18, 0xFFFF, 0xFFFF},
                {19, 0xFFFFFFFF, 0xFFFFFFFF},
                {20, 1ULL << 63, ~0ULL},
                {21, ~0ULL, ~0ULL},
                {22, 0x7FFFFFFF, 0xFFFFFFFF},
                {23, 0xFFFFFFFF, 0xFFFFFFFF}};
    for (const auto& row : rows) {
        const auto out = MemoryWriteStream::Create();
        ASSERT_EQ(0, out->PutVariant(Variant(row.type, row.value))) << row.type;
        ASSERT_TRUE(out->Finish().Ok());
        Variant back(9, ~0ULL);
        ASSERT_EQ(0, Read(out->GetBytes())->GetVariant(back)) << row.type;
        EXPECT_EQ(row.type, back.GetType());
        EXPECT_EQ(row.value, back.GetValue() & row.mask) << row.type;
    }
}

TEST(ItemsTest, AnObjectIsItsTagItsItemsAndItsEnd) {
    EXPECT_EQ("07 FF 01 01 01 00 00 00 08", ItemBytes([](auto& s) {
                  s.PutBeginObject(511);
                  s.PutLong(1);
                  s.PutEndObject();
              }));
}

TEST(ItemsTest, EveryValueComesBack) {
    const auto out = MemoryWriteStream::Create();
    Variant variant(3, 0xFFFFFFF7);
    EXPECT_EQ(0, out->PutLong(std::numeric_limits<std::int32_t>::min()));
    EXPECT_EQ(0, out->PutDouble(-0.0));
    EXPECT_EQ(0, out->PutShort(65535));
    EXPECT_EQ(0, out->PutWideString(u"a\0b", 3));
    EXPECT_EQ(0, out->PutGUID(kId));
    EXPECT_EQ(0, out->PutVariant(variant));
    EXPECT_EQ(0, out->PutBeginObject(0));
    EXPECT_EQ(0, out->PutEndObject());
    ASSERT_TRUE(out->Finish().Ok());

    const auto in = Read(out->GetBytes());
    std::int32_t number = 0;
    EXPECT_EQ(0, in->GetLong(&number));
    EXPECT_EQ(std::numeric_limits<std::int32_t>::min(), number);
    double real = 1;
    EXPECT_EQ(0, in->GetDouble(&real));
    EXPECT_EQ(0.0, real);
    EXPECT_TRUE(std::signbit(real));
    std::uint16_t small = 0;
    EXPECT_EQ(0, in->GetShort(&small));
    EXPECT_EQ(65535, small);
    std::uint32_t length = 0;
    EXPECT_EQ(0, in->GetStringLength(&length));
    ASSERT_EQ(3u, length);
    char16_t units[4] = {u'x', u'x', u'x', u'x'};
    EXPECT_EQ(0, in->GetStringChars(length, units));
    EXPECT_EQ(std::u16string(u"a\0bx", 4), std::u16string(units, 4));
    GUID id = {};
    EXPECT_EQ(0, in->GetGUID(&id));
    EXPECT_EQ(0, KivBase::CompareGUID(kId, id));
    Variant back;
    EXPECT_EQ(0, in->GetVariant(back));
    EXPECT_EQ(3, back.GetType());
    EXPECT_EQ(0xFFFFFFF7u, static_cast<std::uint32_t>(back.GetValue()));
    std::uint16_t tag = 77;
    EXPECT_EQ(0, in->GetObjectTag(&tag));
    EXPECT_EQ(0, tag);
    EXPECT_EQ(0, in->GetEndObject());
    EXPECT_TRUE(in->Finish().Ok());
}

TEST(ItemsTest, AValueReadWhereAnotherStandsIsRefused) {
    for (const ItemCase& item : kItems) {
        for (const Getter& getter : kGetters) {
            SCOPED_TRACE(std::string(getter.name) + " where a " + item.name + " stands");
            const Bytes bytes = Items(item.hex, 1);
            const auto in = Read(bytes);
            const std::string wanted = getter.name;
            const std::int32_t expected = wanted == item.name  ? StorageSuccess
                                          : wanted == "object" ? StorageValueStands
                                                               : StorageWrongItem;
            EXPECT_EQ(expected, getter.get(*in));
        }
    }
}

TEST(ItemsTest, AValueReadWhereAnObjectOpensIsRefused) {
    const Bytes bytes = Items("07 05 00 08", 2);
    for (const Getter& getter : kGetters) {
        EXPECT_EQ(getter.name == std::string("object") ? 0 : StorageObjectOpens, getter.get(*Read(bytes)));
    }
}

TEST(ItemsTest, AValueReadWhereAnObjectEndsIsRefusedAndAskingForAnObjectAnswersOne) {
    const Bytes bytes = Items("07 05 00 08", 2);
    for (const Getter& getter : kGetters) {
        const auto in = Read(bytes);
        std::uint16_t tag = 0;
        ASSERT_EQ(0, in->GetObjectTag(&tag));
        EXPECT_EQ(getter.name == std::string("object") ? 1 : StorageObjectEnds, getter.get(*in));
    }
}

TEST(ItemsTest, AValueReadBehindTheLastItemIsRefusedAndAskingForAnObjectAnswersOne) {
    const Bytes bytes = Items("", 0);
    for (const Getter& getter : kGetters) {
        EXPECT_EQ(getter.name == std::string("object") ? 1 : StorageNoMoreItems, getter.get(*Read(bytes)));
    }
}

TEST(ItemsTest, AskingForAnObjectTwiceWhereNoneFollowsAnswersOneTwice) {
    const Bytes bytes = Items("07 05 00 08 07 06 00 08", 4);
    const auto in = Read(bytes);
    std::uint16_t tag = 9;
    ASSERT_EQ(0, in->GetObjectTag(&tag));
    EXPECT_EQ(1, in->GetObjectTag(&tag));
    EXPECT_EQ(1, in->GetObjectTag(&tag));
    EXPECT_EQ(5, tag);
    EXPECT_EQ(0, in->GetEndObject());
    EXPECT_EQ(0, in->GetObjectTag(&tag));
    EXPECT_EQ(6, tag);
    EXPECT_EQ(0, in->GetEndObject());
    EXPECT_TRUE(in->Finish().Ok());
}

TEST(ItemsTest, AnUnknownItemIsRefused) {
    for (const char* hex : {"00", "09", "FF 01 00 00 00"}) {
        const Bytes bytes = Items(hex, 1);
        for (const Getter& getter : kGetters) {
            EXPECT_EQ(StorageUnknownItem, getter.get(*Read(bytes)));
        }
    }
}

TEST(ItemsTest, AnItemThatTheEndCutsOffIsRefused) {
    for (const ItemCase& item : kItems) {
        Bytes cut = FromHex(item.hex);
        cut.pop_back();
        const Bytes bytes = Frame(cut, 1);
        const auto in = Read(bytes);
        for (const Getter& getter : kGetters) {
            if (getter.name == std::string(item.name)) {
                std::int32_t code = getter.get(*in);
                char16_t units[2];
                code = code == 0 ? in->GetStringChars(1, units) : code;
                EXPECT_EQ(StorageItemCutOff, code) << item.name;
            }
        }
    }
    const Bytes bytes = Items("07 05", 1);
    std::uint16_t tag = 0;
    EXPECT_EQ(StorageItemCutOff, Read(bytes)->GetObjectTag(&tag));
}

TEST(ItemsTest, AVariantOfAnUnknownTypeOrWithBitsBeyondItsTypeIsRefused) {
    Variant variant(3, 1);
    for (const char* hex : {"06 08 00 00 00 00 00 00 00 00 00", "06 03 00 00 00 00 00 01 00 00 00",
                            "06 01 00 01 00 00 00 00 00 00 00", "06 03 40 00 00 00 00 00 00 00 00"}) {
        const Bytes bytes = Items(hex, 1);
        EXPECT_EQ(StorageUnsupportedVariant, Read(bytes)->GetVariant(variant));
        EXPECT_EQ(1u, variant.GetValue());
    }
}

TEST(ItemsTest, AFailedReadLeavesItsOutputAlone) {
    const Bytes bytes = Items("03 01 00", 1);
    std::int32_t number = 42;
    EXPECT_EQ(StorageWrongItem, Read(bytes)->GetLong(&number));
    EXPECT_EQ(42, number);
}

TEST(ItemsTest, TheFirstErrorIsAnsweredToEverythingAfterIt) {
    const Bytes bytes = Items("01 01 00 00 00 03 02 00", 2);
    const auto in = Read(bytes);
    double real = 0;
    EXPECT_EQ(StorageWrongItem, in->GetDouble(&real));
    for (const Getter& getter : kGetters) {
        EXPECT_EQ(StorageWrongItem, getter.get(*in));
    }
    EXPECT_EQ(StorageWrongItem, in->GetEndObject());
    EXPECT_EQ(StorageWrongItem, in->Finish().code);
    EXPECT_EQ(
        "A value of another type stands here (memory, block 1, byte 28). "
        "Load the data with the program that saved them.",
        in->GetError().sentence);
}

}  // namespace
