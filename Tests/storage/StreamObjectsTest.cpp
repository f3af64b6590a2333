#include <KivStorage/FileReadStream.h>
#include <KivStorage/FileWriteStream.h>
#include <KivStorage/Interfaces.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>
#include <gtest/gtest.h>

#include "storage/Support.h"

using namespace KivStorage;
using namespace StorageTest;

namespace {

constexpr auto kNoInterface = static_cast<std::int32_t>(0x80004002);
constexpr auto kNullPlace = static_cast<std::int32_t>(0x80004003);

template <class Stream>
void ExpectCountedObject(Stream& stream, const GUID& own, const GUID& other) {
    EXPECT_EQ(2u, stream.AddRef());
    EXPECT_EQ(1u, stream.Release());
    void* object = nullptr;
    EXPECT_EQ(0, stream.QueryInterface(own, &object));
    EXPECT_EQ(static_cast<void*>(&stream), object);
    EXPECT_EQ(1u, stream.Release());
    object = nullptr;
    EXPECT_EQ(0, stream.QueryInterface(UnknownInterfaceId, &object));
    EXPECT_EQ(static_cast<void*>(&stream), object);
    EXPECT_EQ(1u, stream.Release());
    EXPECT_EQ(kNoInterface, stream.QueryInterface(other, &object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(kNullPlace, stream.QueryInterface(own, nullptr));
    EXPECT_EQ(2u, stream.AddRef());
    EXPECT_EQ(1u, stream.Release());
}

TEST(StreamObjectsTest, TheWriteStreamsAreCountedObjectsOfTheirInterface) {
    const Folder folder;
    ExpectCountedObject(*MemoryWriteStream::Create(), BlockWriteStreamId, BlockReadStreamId);
    ExpectCountedObject(*FileWriteStream::Create(folder / "a"), BlockWriteStreamId, BlockReadStreamId);
}

TEST(StreamObjectsTest, TheReadStreamsAreCountedObjectsOfTheirInterface) {
    const Folder folder;
    WriteFile(folder / "a", Frame({}, 0));
    ExpectCountedObject(*MemoryReadStream::Create(nullptr, 0), BlockReadStreamId, BlockWriteStreamId);
    ExpectCountedObject(*FileReadStream::Create(folder / "a"), BlockReadStreamId, BlockWriteStreamId);
}

TEST(StreamObjectsTest, AStreamGoesWithItsLastReferenceThroughItsInterface) {
    const Folder folder;
    KivCOMShared::BlockWriteStream* const stream = FileWriteStream::Create(folder / "a").Detach();
    EXPECT_EQ(1u, folder.GetNames().size());
    EXPECT_EQ(0, stream->PutLong(1));
    EXPECT_EQ(2u, stream->AddRef());
    EXPECT_EQ(1u, stream->Release());
    EXPECT_EQ(1u, folder.GetNames().size());
    EXPECT_EQ(0u, stream->Release());
    EXPECT_EQ(0u, folder.GetNames().size());
}

TEST(StreamObjectsTest, TheErrorOfANewStreamIsNone) {
    EXPECT_EQ(0, MemoryWriteStream::Create()->GetError().code);
    EXPECT_TRUE(MemoryWriteStream::Create()->GetError().Ok());
    EXPECT_EQ("", MemoryWriteStream::Create()->GetError().sentence);
    EXPECT_TRUE(MemoryReadStream::Create(nullptr, 0)->GetError().Ok());
}

TEST(StreamObjectsTest, AWriteErrorNamesThePlace) {
    const auto stream = MemoryWriteStream::Create();
    EXPECT_EQ(0, stream->PutLong(1));
    EXPECT_EQ(StorageNoOpenObject, stream->PutEndObject());
    EXPECT_EQ(
        "An object is ended, but none is open (memory, block 1, byte 33). This is a mistake of the calling program.",
        stream->GetError().sentence);
}

}  // namespace
