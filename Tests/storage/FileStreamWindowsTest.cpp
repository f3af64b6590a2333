#include <KivStorage/FileReadStream.h>
#include <KivStorage/FileWriteStream.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "storage/Support.h"

using namespace KivStorage;
using namespace StorageTest;

namespace {

using Names = std::vector<std::string>;

Result Save(const std::filesystem::path& path, int longs) {
    const auto stream = FileWriteStream::Create(path);
    for (int i = 0; i < longs; ++i) {
        stream->PutLong(i);
    }
    return stream->Commit();
}

/// A file that another program has open, and shares as it says.
class OpenElsewhere {
public:
    OpenElsewhere(const std::filesystem::path& path, DWORD sharing)
        : handle_(CreateFileW(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr)) {
        EXPECT_NE(INVALID_HANDLE_VALUE, handle_);
    }
    ~OpenElsewhere() { CloseHandle(handle_); }
    OpenElsewhere(const OpenElsewhere&) = delete;
    OpenElsewhere& operator=(const OpenElsewhere&) = delete;

private:
    HANDLE handle_;
};

std::string Utf8(const std::filesystem::path& path) {
    return path.u8string();
}

/// Folders in folders below this one until the path has more than `units`. Behind the prefix, which takes it at any length.
std::wstring MakeDeepFolders(const Folder& folder, std::size_t units) {
    std::wstring path = L"\\\\?\\" + std::filesystem::path(folder.GetPath()).make_preferred().wstring();
    while (path.size() < units) {
        path += L"\\" + std::wstring(60, L'd') + L"\xD83C\xDF33";
        EXPECT_TRUE(CreateDirectoryW(path.c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS);
    }
    return path;
}

TEST(FileStreamWindowsTest, NamesBeyondTheFirstPlaneOfUnicodeAreKept) {
    const Folder folder;
    const auto path = folder.GetPath() / L"Gr\u00FC\u00DFe \xD83C\xDF33.kiv";
    ASSERT_EQ("", Save(path, 3).sentence);
    EXPECT_EQ((Names{"Gr\xC3\xBC\xC3\x9F"
                     "e \xF0\x9F\x8C\xB3.kiv"}),
              folder.GetNames());
    EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(path.c_str()));
    EXPECT_EQ("", FileReadStream::Create(path)->GetError().sentence);
}

TEST(FileStreamWindowsTest, SentencesNameAFileInUtf8) {
    const Folder folder;
    const auto path = folder.GetPath() / L"\xD83C\xDF33";
    const std::string sentence = FileReadStream::Create(path)->Finish().sentence;
    EXPECT_EQ(0u, sentence.find("There is no such file (file \"" + Utf8(path) + "\": ")) << sentence;
}

TEST(FileStreamWindowsTest, PathsOfMoreThan260UnitsAreWrittenReplacedAndRead) {
    const Folder folder;
    for (const std::size_t units : {230u, 260u, 600u, 3000u}) {
        const std::wstring prefixed = MakeDeepFolders(folder, units) + L"\\tree.kiv";
        const std::filesystem::path path = prefixed.substr(4);
        ASSERT_EQ("", Save(path, 3).sentence) << units;
        ASSERT_EQ("", Save(path, 4).sentence) << units;
        const auto stream = FileReadStream::Create(path);
        for (int i = 0; i < 4; ++i) {
            std::int32_t read = -1;
            ASSERT_EQ(0, stream->GetLong(&read)) << units;
            EXPECT_EQ(i, read);
        }
        EXPECT_EQ("", stream->Finish().sentence);
        EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(prefixed.c_str())) << units;
        // Neither slashes nor dots are understood behind the prefix; they must be before it.
        std::wstring slashed = prefixed.substr(4, prefixed.size() - 12) + L"/./tree.kiv";
        EXPECT_EQ("", FileReadStream::Create(slashed)->GetError().sentence) << units;
    }
}

TEST(FileStreamWindowsTest, AFileThatAnotherProgramKeepsToItselfIsNotRead) {
    const Folder folder;
    ASSERT_EQ("", Save(folder / "tree", 3).sentence);
    const OpenElsewhere other(folder / "tree", 0);
    const Result result = FileReadStream::Create(folder / "tree")->Finish();
    EXPECT_EQ(StorageFileNotOpened, result.code);
    EXPECT_EQ("The file cannot be opened (file \"" + Utf8(folder / "tree") +
                  "\": another program has it open). Check that you may read it.",
              result.sentence);
}

TEST(FileStreamWindowsTest, AFileThatAnotherProgramKeepsToItselfIsNotReplaced) {
    const Folder folder;
    ASSERT_EQ("", Save(folder / "tree", 3).sentence);
    const Bytes old = ReadFile(folder / "tree");
    {
        const OpenElsewhere other(folder / "tree", FILE_SHARE_READ);
        const Result result = Save(folder / "tree", 4);
        EXPECT_EQ(StorageFileNotReplaced, result.code);
        EXPECT_EQ("The file cannot be put in the old one's place (file \"" + Utf8(folder / "tree") +
                      "\": another program has it open). Check that you may write to its folder. The old file stands.",
                  result.sentence);
        EXPECT_EQ(Names{"tree"}, folder.GetNames());
        EXPECT_TRUE(old == ReadFile(folder / "tree"));
    }
    EXPECT_EQ("", Save(folder / "tree", 4).sentence);
}

TEST(FileStreamWindowsTest, AReaderOfOursDoesNotHoldUpTheNextSaveAndGoesOnReadingTheOldFile) {
    const Folder folder;
    ASSERT_EQ("", Save(folder / "tree", 3).sentence);
    auto reader = FileReadStream::Create(folder / "tree");
    ASSERT_EQ("", Save(folder / "tree", 100000).sentence);
    std::int32_t read = -1;
    EXPECT_EQ(0, reader->GetLong(&read));
    EXPECT_EQ(0, reader->GetLong(&read));
    EXPECT_EQ(0, reader->GetLong(&read));
    EXPECT_EQ(2, read);
    EXPECT_EQ("", reader->Finish().sentence);
    // The old file goes with the last who reads it.
    reader.Reset();
    EXPECT_EQ(500164u, ReadFile(folder / "tree").size());
    EXPECT_EQ(Names{"tree"}, folder.GetNames());
}

TEST(FileStreamWindowsTest, DevicesAreNeitherReadNorReplaced) {
    EXPECT_EQ(StorageNotAFile, FileReadStream::Create("NUL")->Finish().code);
}

TEST(FileStreamWindowsTest, AFolderThatAppearsInTheFilesPlaceIsNotReplaced) {
    const Folder folder;
    const auto stream = FileWriteStream::Create(folder / "tree");
    std::filesystem::create_directory(folder / "tree");
    EXPECT_EQ(StorageFileNotReplaced, stream->Commit().code);
    EXPECT_EQ(Names{"tree"}, folder.GetNames());
}

/// A process that is ended in the middle of a save has no time to tidy up. This test is run by the other process as well,
/// which finds the folder in its environment.
TEST(FileStreamWindowsTest, AProcessThatIsEndedWhileItSavesLeavesTheOldFile) {
    const Folder folder;
    if (GetEnvironmentVariableW(L"KIV_SAVING_IN", nullptr, 0) == 0) {
        SetEnvironmentVariableW(L"KIV_SAVING_IN", folder.GetPath().c_str());
        ASSERT_EQ("", Save(folder / "tree", 3).sentence);
    }
    wchar_t place[MAX_PATH] = {};
    ASSERT_NE(0u, GetEnvironmentVariableW(L"KIV_SAVING_IN", place, MAX_PATH));
    const std::filesystem::path file = std::filesystem::path(place) / "tree";
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            const auto stream = FileWriteStream::Create(file);
            for (int i = 0; i < 100000; ++i) {
                stream->PutLong(i);
            }
            TerminateProcess(GetCurrentProcess(), 77);
        },
        testing::ExitedWithCode(77), "");
    SetEnvironmentVariableW(L"KIV_SAVING_IN", nullptr);
    EXPECT_EQ(95u, ReadFile(file).size());
    EXPECT_EQ("", FileReadStream::Create(file)->GetError().sentence);
    EXPECT_EQ(2u, folder.GetNames().size());
    ASSERT_EQ("", Save(file, 4).sentence);
}

}  // namespace
