// The stream interfaces are tables of functions in a fixed order, so that streams can come from elsewhere than this library.

#include <cstdint>
#include <string>
#include <vector>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Tree.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>
#include <gtest/gtest.h>

namespace {

using namespace KivGenerics;

/// A stream without a class: a pointer to a table, and then what it notes.
struct HandMade {
    const void* const* table;
    std::vector<std::string> calls;
};

std::int32_t QueryInterface(HandMade* self, const GUID*, void**) {
    self->calls.emplace_back("QueryInterface");
    return -1;
}
std::uint32_t AddRef(HandMade* self) {
    self->calls.emplace_back("AddRef");
    return 2;
}
std::uint32_t Release(HandMade* self) {
    self->calls.emplace_back("Release");
    return 1;
}
std::int32_t PutLong(HandMade* self, std::int32_t value) {
    self->calls.push_back("PutLong " + std::to_string(value));
    return 0;
}
std::int32_t PutDouble(HandMade* self, double value) {
    self->calls.push_back("PutDouble " + std::to_string(value));
    return 0;
}
std::int32_t PutShort(HandMade* self, std::uint16_t value) {
    self->calls.push_back("PutShort " + std::to_string(value));
    return 0;
}
std::int32_t PutWideString(HandMade* self, const char16_t* units, std::uint32_t length) {
    self->calls.push_back("PutWideString " + std::string(units, units + length));
    return 0;
}
std::int32_t PutGUID(HandMade* self, const GUID* value) {
    self->calls.push_back("PutGUID " + std::to_string(value->Data1));
    return 0;
}
std::int32_t PutVariant(HandMade* self, const VARIANT*) {
    self->calls.emplace_back("PutVariant");
    return 0;
}
std::int32_t PutBeginObject(HandMade* self, std::uint16_t tag) {
    self->calls.push_back("PutBeginObject " + std::to_string(tag));
    return 0;
}
std::int32_t PutEndObject(HandMade* self) {
    self->calls.emplace_back("PutEndObject");
    return 0;
}

template <class Function>
const void* Entry(Function* function) {
    return reinterpret_cast<const void*>(function);
}

const void* const kWriteTable[] = {
    Entry(QueryInterface), Entry(AddRef),         Entry(Release),       Entry(PutLong),
    Entry(PutDouble),      Entry(PutShort),       Entry(PutWideString), Entry(PutGUID),
    Entry(PutVariant),     Entry(PutBeginObject), Entry(PutEndObject),
};

/// A function of a stream by its place in the table.
template <class Function>
Function* Slot(void* stream, int place) {
    return reinterpret_cast<Function*>((*static_cast<void***>(stream))[place]);
}

TEST(ComLayoutTest, AHandMadeTableIsAStreamToWriteTo) {
    HandMade made = {kWriteTable, {}};
    const void* const object = &made;
    auto* const stream = static_cast<KivCOMShared::BlockWriteStream*>(const_cast<void*>(object));
    const GUID id = {77, 0, 0, {}};
    void* asked = nullptr;
    EXPECT_EQ(-1, stream->QueryInterface(id, &asked));
    EXPECT_EQ(2u, stream->AddRef());
    EXPECT_EQ(0, stream->PutLong(-5));
    EXPECT_EQ(0, stream->PutDouble(0.5));
    EXPECT_EQ(0, stream->PutShort(65535));
    EXPECT_EQ(0, stream->PutWideString(u"abc", 2));
    EXPECT_EQ(0, stream->PutGUID(id));
    EXPECT_EQ(0, stream->PutVariant(nullptr));
    EXPECT_EQ(0, stream->PutBeginObject(9));
    EXPECT_EQ(0, stream->PutEndObject());
    EXPECT_EQ(1u, stream->Release());
    EXPECT_EQ((std::vector<std::string>{"QueryInterface", "AddRef", "PutLong -5", "PutDouble 0.500000",
                                        "PutShort 65535", "PutWideString ab", "PutGUID 77", "PutVariant",
                                        "PutBeginObject 9", "PutEndObject", "Release"}),
              made.calls);
}

TEST(ComLayoutTest, TheLibrarySavesThroughAHandMadeTable) {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    auto* const record = static_cast<Map*>(root->NewNode(0, NodeTypeMap));
    static_cast<String*>(record->NewNode(1, NodeTypeString))->Set(u"tree");
    HandMade made = {kWriteTable, {}};
    const void* const object = &made;
    ASSERT_EQ(0, tree->SaveToStream(static_cast<KivCOMShared::BlockWriteStream*>(const_cast<void*>(object)), false));
    EXPECT_EQ((std::vector<std::string>{"AddRef", "PutBeginObject 0", "PutLong 0", "PutBeginObject 519",
                                        "PutLong 65792", "PutBeginObject 1031", "PutLong 65921", "PutLong -2097152000",
                                        "PutWideString tree", "PutEndObject", "PutEndObject", "PutEndObject",
                                        "Release"}),
              made.calls);
}

TEST(ComLayoutTest, AStreamOfOursIsATableToWriteTo) {
    const auto out = KivStorage::MemoryWriteStream::Create();
    void* const stream = static_cast<KivCOMShared::BlockWriteStream*>(out.Get());
    EXPECT_EQ(2u, Slot<std::uint32_t(void*)>(stream, 1)(stream));
    EXPECT_EQ(1u, Slot<std::uint32_t(void*)>(stream, 2)(stream));
    const GUID id = {1, 2, 3, {4}};
    EXPECT_EQ(0, Slot<std::int32_t(void*, std::int32_t)>(stream, 3)(stream, -7));
    EXPECT_EQ(0, Slot<std::int32_t(void*, double)>(stream, 4)(stream, 2.5));
    EXPECT_EQ(0, Slot<std::int32_t(void*, std::uint16_t)>(stream, 5)(stream, 300));
    EXPECT_EQ(0, Slot<std::int32_t(void*, const char16_t*, std::uint32_t)>(stream, 6)(stream, u"xyz", 3));
    EXPECT_EQ(0, Slot<std::int32_t(void*, const GUID*)>(stream, 7)(stream, &id));
    EXPECT_EQ(0, Slot<std::int32_t(void*, std::uint16_t)>(stream, 9)(stream, 12));
    EXPECT_EQ(0, Slot<std::int32_t(void*)>(stream, 10)(stream));
    ASSERT_TRUE(out->Finish().Ok());

    const auto in = KivStorage::MemoryReadStream::Create(out->GetBytes().data(), out->GetBytes().size());
    void* const source = static_cast<KivCOMShared::BlockReadStream*>(in.Get());
    std::int32_t number = 0;
    double real = 0;
    std::uint16_t small = 0;
    std::uint32_t length = 0;
    char16_t units[4] = {};
    GUID read = {};
    EXPECT_EQ(0, Slot<std::int32_t(void*, std::int32_t*)>(source, 3)(source, &number));
    EXPECT_EQ(0, Slot<std::int32_t(void*, double*)>(source, 4)(source, &real));
    EXPECT_EQ(0, Slot<std::int32_t(void*, std::uint16_t*)>(source, 5)(source, &small));
    EXPECT_EQ(0, Slot<std::int32_t(void*, std::uint32_t*)>(source, 6)(source, &length));
    ASSERT_EQ(3u, length);
    EXPECT_EQ(0, Slot<std::int32_t(void*, std::uint32_t, char16_t*)>(source, 7)(source, length, units));
    EXPECT_EQ(0, Slot<std::int32_t(void*, GUID*)>(source, 8)(source, &read));
    EXPECT_EQ(-7, number);
    EXPECT_EQ(2.5, real);
    EXPECT_EQ(300, small);
    EXPECT_TRUE(std::u16string(u"xyz") == units);
    EXPECT_EQ(0, KivBase::CompareGUID(id, read));
    std::uint16_t tag = 0;
    EXPECT_EQ(0, Slot<std::int32_t(void*, std::uint16_t*)>(source, 10)(source, &tag));
    EXPECT_EQ(12, tag);
    EXPECT_EQ(0, Slot<std::int32_t(void*)>(source, 11)(source));
}

}  // namespace
