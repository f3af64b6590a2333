#include <algorithm>
#include <string>
#include <utility>

#include <KivStorage/FileReadStream.h>
#include <KivStorage/FileWriteStream.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>
#include <gtest/gtest.h>

#include "storage/Support.h"

using namespace KivStorage;
using namespace StorageTest;

namespace {

using Names = std::vector<std::string>;

/// Writes one long into a file.
Result Save(const std::filesystem::path& path, std::int32_t value) {
    const auto stream = FileWriteStream::Create(path);
    stream->PutLong(value);
    return stream->Commit();
}

std::int32_t Load(const std::filesystem::path& path) {
    const auto stream = FileReadStream::Create(path);
    std::int32_t value = 0;
    EXPECT_EQ(0, stream->GetLong(&value)) << stream->GetError().sentence;
    EXPECT_EQ("", stream->Finish().sentence);
    return value;
}

TEST(FileStreamTest, AFileHoldsWhatMemoryWouldHold) {
    const Folder folder;
    const auto file = FileWriteStream::Create(folder / "tree");
    const auto memory = MemoryWriteStream::Create();
    for (std::int32_t i = 0; i < 40000; ++i) {
        EXPECT_EQ(0, file->PutLong(i));
        EXPECT_EQ(0, memory->PutLong(i));
    }
    EXPECT_EQ("", file->Commit().sentence);
    ASSERT_TRUE(memory->Finish().Ok());
    EXPECT_TRUE(memory->GetBytes().ToVector() == ReadFile(folder / "tree"));
    EXPECT_EQ(std::filesystem::file_size(folder / "tree"), file->GetByteCount());
    const auto in = FileReadStream::Create(folder / "tree");
    for (std::int32_t i = 0; i < 40000; ++i) {
        std::int32_t value = -1;
        ASSERT_EQ(0, in->GetLong(&value));
        ASSERT_EQ(i, value);
    }
    EXPECT_EQ("", in->Finish().sentence);
}

/// Reads longs as long as they come, then to the end; the last error's code, and how far it came.
template <class Stream>
std::pair<std::int32_t, std::string> ReadAll(Stream& stream) {
    std::int32_t value = 0;
    int read = 0;
    while (stream.GetLong(&value) == 0) {
        EXPECT_EQ(read, value);
        ++read;
    }
    stream.Finish();
    const std::string place = stream.GetPlace();
    return {stream.GetError().code, std::to_string(read) + place.substr((std::min)(place.find(','), place.size()))};
}

// Memory is read where it stands, a file into a block of the stream's own.
TEST(FileStreamTest, AFileAndMemoryAnswerAlikeWhereverTheyAreCutOff) {
    const auto memory = MemoryWriteStream::Create();
    for (std::int32_t i = 0; i < 14000; ++i) {
        memory->PutLong(i);
    }
    ASSERT_TRUE(memory->Finish().Ok());
    const Bytes whole = memory->GetBytes().ToVector();
    const std::size_t secondBlock = 24 + 65536;
    const Folder folder;
    for (const std::size_t border : {std::size_t{0}, std::size_t{24}, secondBlock, whole.size() - 44}) {
        for (std::size_t cut = border > 10 ? border - 10 : 0; cut < border + 10; ++cut) {
            const Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(cut));
            WriteFile(folder / "cut", bytes);
            const auto fromFile = FileReadStream::Create(folder / "cut");
            const auto fromMemory = MemoryReadStream::Create(bytes.data(), bytes.size());
            EXPECT_EQ(ReadAll(*fromFile), ReadAll(*fromMemory)) << cut;
            EXPECT_EQ(StorageTruncated, fromMemory->GetError().code) << cut;
        }
    }
}

TEST(FileStreamTest, TheOldFileStandsUntilCommitAndNoTemporaryIsLeftAfterwards) {
    const Folder folder;
    ASSERT_TRUE(Save(folder / "tree", 1).Ok());
    const auto stream = FileWriteStream::Create(folder / "tree");
    for (int i = 0; i < 50000; ++i) {
        stream->PutLong(2);
    }
    EXPECT_EQ(1, Load(folder / "tree"));
    const Names during = folder.GetNames();
    ASSERT_EQ(2u, during.size());
    EXPECT_EQ(".saving-", during[0].substr(0, 8));
    EXPECT_EQ(24u, during[0].size());
    EXPECT_EQ("tree", during[1]);
    ASSERT_TRUE(stream->Commit().Ok());
    EXPECT_EQ(Names{"tree"}, folder.GetNames());
    EXPECT_EQ(24u + 4u * 12u + 250000u + 44u, ReadFile(folder / "tree").size());
}

TEST(FileStreamTest, AStreamThatGoesWithoutCommitLeavesTheOldFileAndNoTemporary) {
    const Folder folder;
    ASSERT_TRUE(Save(folder / "tree", 1).Ok());
    FileWriteStream::Create(folder / "tree")->PutLong(2);
    EXPECT_EQ(Names{"tree"}, folder.GetNames());
    EXPECT_EQ(1, Load(folder / "tree"));
    FileWriteStream::Create(folder / "other")->PutLong(2);
    EXPECT_EQ(Names{"tree"}, folder.GetNames());
}

TEST(FileStreamTest, CommitRefusesOpenObjectsAndLeavesTheOldFile) {
    const Folder folder;
    ASSERT_TRUE(Save(folder / "tree", 1).Ok());
    const auto stream = FileWriteStream::Create(folder / "tree");
    stream->PutBeginObject(1);
    const Result result = stream->Commit();
    EXPECT_EQ(StorageOpenObjects, result.code);
    EXPECT_EQ("The data end while objects are open (file \"" + (folder / "tree").string() +
                  "\", block 1, byte 31). Whoever wrote them must end every object.",
              result.sentence);
    EXPECT_EQ(Names{"tree"}, folder.GetNames());
    EXPECT_EQ(1, Load(folder / "tree"));
    EXPECT_EQ(StorageOpenObjects, stream->PutEndObject());
    EXPECT_EQ(StorageOpenObjects, stream->Commit().code);
    EXPECT_EQ(1, Load(folder / "tree"));
}

TEST(FileStreamTest, NothingIsTakenAfterCommit) {
    const Folder folder;
    const auto stream = FileWriteStream::Create(folder / "tree");
    stream->PutLong(1);
    ASSERT_TRUE(stream->Commit().Ok());
    EXPECT_EQ(StorageAlreadyFinished, stream->PutLong(2));
    EXPECT_EQ(StorageAlreadyFinished, stream->Commit().code);
    EXPECT_EQ(1, Load(folder / "tree"));
    EXPECT_EQ(Names{"tree"}, folder.GetNames());
}

TEST(FileStreamTest, AFolderThatIsNotThereIsReported) {
    const Folder folder;
    const auto path = folder.GetPath() / "missing" / "tree";
    const auto stream = FileWriteStream::Create(path);
    EXPECT_EQ(StorageFileNotCreated, stream->GetError().code);
    EXPECT_EQ(StorageFileNotCreated, stream->PutLong(1));
    EXPECT_EQ(StorageFileNotCreated, stream->Commit().code);
    EXPECT_EQ(Names{}, folder.GetNames());
    EXPECT_EQ(0u, stream->GetError().sentence.find("No temporary file can be made beside the file (file \""));
}

TEST(FileStreamTest, AFolderInTheFilesPlaceIsRefused) {
    const Folder folder;
    EXPECT_EQ(StorageNotAFile, FileWriteStream::Create(folder.GetPath())->Commit().code);
    EXPECT_EQ(StorageNotAFile, FileReadStream::Create(folder.GetPath())->Finish().code);
    EXPECT_EQ(Names{}, folder.GetNames());
}

TEST(FileStreamTest, AFileThatIsNotThereIsReportedToEveryCall) {
    const Folder folder;
    const auto stream = FileReadStream::Create(folder / "tree");
    std::int32_t value = 0;
    EXPECT_EQ(StorageFileNotFound, stream->GetError().code);
    EXPECT_EQ(StorageFileNotFound, stream->GetLong(&value));
    EXPECT_EQ(StorageFileNotFound, stream->Finish().code);
    EXPECT_EQ(0u, stream->GetError().sentence.find("There is no such file (file \""));
}

TEST(FileStreamTest, AnEmptyFileIsTruncated) {
    const Folder folder;
    WriteFile(folder / "tree", {});
    EXPECT_EQ(StorageTruncated, FileReadStream::Create(folder / "tree")->Finish().code);
}

TEST(FileStreamTest, ADamagedFileIsNamedWithBlockAndByte) {
    const Folder folder;
    ASSERT_TRUE(Save(folder / "tree", 1).Ok());
    Bytes bytes = ReadFile(folder / "tree");
    bytes[30] ^= 1;
    WriteFile(folder / "tree", bytes);
    EXPECT_EQ("A block does not match its checksum (file \"" + (folder / "tree").string() +
                  "\", block 1, byte 24). The data are damaged: take them from a copy.",
              FileReadStream::Create(folder / "tree")->Finish().sentence);
}

TEST(FileStreamTest, TheLimitsHoldForFiles) {
    const Folder folder;
    ASSERT_TRUE(Save(folder / "tree", 1).Ok());
    ReadLimits limits;
    limits.totalBytes = 84;
    std::int32_t value = 0;
    const auto stream = FileReadStream::Create(folder / "tree", limits);
    EXPECT_EQ(0, stream->GetLong(&value));
    EXPECT_EQ(StorageTooManyBytes, stream->Finish().code);
}

TEST(FileStreamTest, AFileWithoutAFolderInItsNameLiesInTheCurrentOne) {
    const Folder folder;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.GetPath());
    const Result result = Save("tree", 5);
    const std::int32_t loaded = Load("tree");
    std::filesystem::current_path(before);
    EXPECT_EQ("", result.sentence);
    EXPECT_EQ(5, loaded);
    EXPECT_EQ(Names{"tree"}, folder.GetNames());
}

}  // namespace
