#include <csignal>
#include <functional>

#include <KivStorage/FileReadStream.h>
#include <KivStorage/FileWriteStream.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

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

struct stat StatusOf(const std::filesystem::path& path) {
    struct stat status = {};
    EXPECT_EQ(0, ::lstat(path.c_str(), &status)) << path;
    return status;
}

/// Runs `step` in a process of its own and gives the number it answers, 0 to 255.
int InChild(const std::function<int()>& step) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(step());
    }
    int status = 0;
    EXPECT_EQ(child, ::waitpid(child, &status, 0));
    EXPECT_TRUE(WIFEXITED(status));
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// A code's number behind 0xA05300, which fits into a process's answer.
int Short(std::int32_t code) {
    return code & 0xFF;
}

TEST(FileStreamPosixTest, TheModeOfTheOldFileIsKept) {
    const Folder folder;
    for (const mode_t mode : {0600u, 0640u, 0644u, 0755u, 0444u, 0666u}) {
        WriteFile(folder / "tree", {});
        ASSERT_EQ(0, ::chmod((folder / "tree").c_str(), mode));
        ASSERT_EQ("", Save(folder / "tree", 1).sentence);
        EXPECT_EQ(mode, StatusOf(folder / "tree").st_mode & 07777);
        std::filesystem::remove(folder / "tree");
    }
}

TEST(FileStreamPosixTest, ANewFileGetsTheProcessesUsualMode) {
    const Folder folder;
    const mode_t before = ::umask(027);
    const Result result = Save(folder / "tree", 1);
    ::umask(before);
    ASSERT_EQ("", result.sentence);
    EXPECT_EQ(0640u, StatusOf(folder / "tree").st_mode & 07777);
}

TEST(FileStreamPosixTest, WhileItIsWrittenAReplacementIsNoMoreReadableThanTheOldFile) {
    const Folder folder;
    WriteFile(folder / "tree", {});
    ASSERT_EQ(0, ::chmod((folder / "tree").c_str(), 0600));
    const auto stream = FileWriteStream::Create(folder / "tree");
    const Names names = folder.GetNames();
    ASSERT_EQ(2u, names.size());
    EXPECT_EQ(0600u, StatusOf(folder / names[0].c_str()).st_mode & 07777);
}

TEST(FileStreamPosixTest, TheFileBehindASymbolicLinkIsReplacedAndTheLinkStays) {
    const Folder folder;
    std::filesystem::create_directory(folder / "real");
    WriteFile(folder.GetPath() / "real" / "tree", Text("old"));
    std::filesystem::create_symlink("real/tree", folder / "inner");
    std::filesystem::create_symlink(folder / "inner", folder / "link");
    ASSERT_EQ("", Save(folder / "link", 1).sentence);
    EXPECT_TRUE(S_ISLNK(StatusOf(folder / "link").st_mode));
    EXPECT_TRUE(S_ISLNK(StatusOf(folder / "inner").st_mode));
    EXPECT_TRUE(S_ISREG(StatusOf(folder.GetPath() / "real" / "tree").st_mode));
    EXPECT_EQ(85u, ReadFile(folder.GetPath() / "real" / "tree").size());
    EXPECT_EQ((Names{"inner", "link", "real"}), folder.GetNames());
}

TEST(FileStreamPosixTest, TheFileThatADanglingLinkNamesIsMade) {
    const Folder folder;
    std::filesystem::create_symlink("tree", folder / "link");
    ASSERT_EQ("", Save(folder / "link", 1).sentence);
    EXPECT_TRUE(S_ISLNK(StatusOf(folder / "link").st_mode));
    EXPECT_EQ(85u, ReadFile(folder / "tree").size());
}

TEST(FileStreamPosixTest, LinksThatGoRoundAreRefused) {
    const Folder folder;
    std::filesystem::create_symlink("b", folder / "a");
    std::filesystem::create_symlink("a", folder / "b");
    EXPECT_EQ(StorageFileNotCreated, Save(folder / "a", 1).code);
    EXPECT_EQ((Names{"a", "b"}), folder.GetNames());
}

TEST(FileStreamPosixTest, DevicesAndPipesAreNeitherReadNorReplaced) {
    const Folder folder;
    ASSERT_EQ(0, ::mkfifo((folder / "pipe").c_str(), 0600));
    EXPECT_EQ(StorageNotAFile, Save(folder / "pipe", 1).code);
    EXPECT_EQ(StorageNotAFile, FileReadStream::Create(folder / "pipe")->Finish().code);
    EXPECT_EQ(StorageNotAFile, Save("/dev/full", 1).code);
    EXPECT_EQ(StorageNotAFile, FileReadStream::Create("/dev/zero")->Finish().code);
    EXPECT_EQ(Names{"pipe"}, folder.GetNames());
}

/// A limit on the size of files stands for a full disk: the write that meets it is cut short, the next one fails.
int SaveWithRoomFor(const std::filesystem::path& path, rlim_t bytes, int longs) {
    return InChild([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {bytes, bytes};
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) {
            return 255;
        }
        return Short(Save(path, longs).code);
    });
}

TEST(FileStreamPosixTest, AFullDiskLeavesTheOldFileAndNoTemporary) {
    const Folder folder;
    ASSERT_EQ("", Save(folder / "tree", 3).sentence);
    const Bytes old = ReadFile(folder / "tree");
    for (const rlim_t room : {0u, 10u, 23u, 24u, 1000u, 65559u, 65560u, 100000u, 500163u}) {
        EXPECT_EQ(Short(StorageFileNotWritten), SaveWithRoomFor(folder / "tree", room, 100000)) << room;
        EXPECT_EQ(Names{"tree"}, folder.GetNames()) << room;
        EXPECT_TRUE(old == ReadFile(folder / "tree")) << room;
    }
    EXPECT_EQ(0, SaveWithRoomFor(folder / "tree", 500164, 100000));
    EXPECT_EQ(500164u, ReadFile(folder / "tree").size());
}

TEST(FileStreamPosixTest, AfterTheDiskWasFullEveryCallIsRefusedWithThatError) {
    const Folder folder;
    const int answer = InChild([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {70000, 70000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const auto stream = FileWriteStream::Create(folder / "tree");
        std::int32_t code = 0;
        for (int i = 0; i < 100000 && code >= 0; ++i) {
            code = stream->PutLong(i);
        }
        const std::string expected = "The file cannot be written (file \"" + (folder / "tree").string() +
                                     "\": File too large). Check that there is room on the disk. The old file stands.";
        const bool right = code == StorageFileNotWritten && stream->PutShort(1) == code &&
                           stream->PutBeginObject(1) == code && stream->PutEndObject() == code &&
                           stream->PutWideString(nullptr, 1) == code && stream->PutVariant(nullptr) == code &&
                           stream->GetError().sentence == expected && folder.GetNames().empty();
        return right && stream->Commit().code == code ? 0 : 1;
    });
    EXPECT_EQ(0, answer);
}

TEST(FileStreamPosixTest, AFolderInWhichOneMayNotWriteIsReported) {
    const Folder folder;
    ASSERT_EQ("", Save(folder / "tree", 3).sentence);
    ASSERT_EQ(0, ::chmod(folder.GetPath().c_str(), 0555));
    ASSERT_EQ(0, ::chmod((folder / "tree").c_str(), 0000));
    const auto without = [](const std::function<Result()>& step) {
        return InChild([&] {
            // The superuser may write anywhere.
            if (::geteuid() == 0 && ::setuid(65534) != 0) {
                return 255;
            }
            return Short(step().code);
        });
    };
    EXPECT_EQ(Short(StorageFileNotCreated), without([&] { return Save(folder / "tree", 4); }));
    EXPECT_EQ(Short(StorageFileNotCreated), without([&] { return Save(folder / "new", 4); }));
    EXPECT_EQ(Short(StorageFileNotOpened), without([&] { return FileReadStream::Create(folder / "tree")->Finish(); }));
    ASSERT_EQ(0, ::chmod(folder.GetPath().c_str(), 0755));
    EXPECT_EQ(Names{"tree"}, folder.GetNames());
}

TEST(FileStreamPosixTest, AFolderThatAppearsInTheFilesPlaceIsNotReplaced) {
    const Folder folder;
    const auto stream = FileWriteStream::Create(folder / "tree");
    std::filesystem::create_directory(folder / "tree");
    EXPECT_EQ(StorageFileNotReplaced, stream->Commit().code);
    EXPECT_EQ(Names{"tree"}, folder.GetNames());
    EXPECT_TRUE(std::filesystem::is_directory(folder / "tree"));
}

volatile std::sig_atomic_t signals = 0;

TEST(FileStreamPosixTest, SignalsDoNotDisturbASave) {
    const Folder folder;
    struct sigaction action = {};
    struct sigaction before = {};
    action.sa_handler = [](int) { signals = signals + 1; };
    ASSERT_EQ(0, ::sigaction(SIGALRM, &action, &before));  // without SA_RESTART: calls are cut short
    const itimerval every = {{0, 200}, {0, 200}};
    const itimerval never = {{0, 0}, {0, 0}};
    ASSERT_EQ(0, ::setitimer(ITIMER_REAL, &every, nullptr));
    for (int i = 0; i < 20 || (signals < 5 && i < 2000); ++i) {
        EXPECT_EQ("", Save(folder / "tree", 100000).sentence);
        EXPECT_EQ("", FileReadStream::Create(folder / "tree")->GetError().sentence);
    }
    ::setitimer(ITIMER_REAL, &never, nullptr);
    ::sigaction(SIGALRM, &before, nullptr);
    EXPECT_GE(signals, 5);
    EXPECT_EQ(500164u, ReadFile(folder / "tree").size());
}

TEST(FileStreamPosixTest, TheSystemsOwnWordsArePartOfTheSentence) {
    const Folder folder;
    const auto path = folder.GetPath() / "missing" / "tree";
    EXPECT_EQ("No temporary file can be made beside the file (file \"" + path.string() +
                  "\": No such file or directory). Check that its folder exists and that you may write there. "
                  "The old file stands.",
              FileWriteStream::Create(path)->GetError().sentence);
    EXPECT_EQ("There is no such file (file \"" + path.string() + "\": No such file or directory). Check its name.",
              FileReadStream::Create(path)->GetError().sentence);
}

TEST(FileStreamPosixTest, ANameAsLongAsTheFolderTakesIsSaved) {
    const Folder folder;
    const std::string name(255, 'n');
    EXPECT_EQ("", Save(folder.GetPath() / name, 6).sentence);
    EXPECT_EQ(24u + 12u + 30u + 44u, ReadFile(folder.GetPath() / name).size());
    EXPECT_EQ(StorageFileNotCreated, Save(folder.GetPath() / (name + "n"), 6).code);
    EXPECT_EQ(Names{name}, folder.GetNames());
}

}  // namespace
