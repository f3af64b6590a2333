#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

/// A tree that takes a while to convert.
std::string LargeTree() {
    std::string text = "kivtext 1\nMap\n  0: Vector\n";
    for (int i = 0; i < 300000; ++i) {
        text += "    - Double 0." + std::to_string(i) + "1\n";
    }
    return text;
}

pid_t StartTool(const std::vector<std::string>& words, int output) {
    std::vector<std::string> all = {KIVTREE};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : all) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    // Whoever runs the tests in the background may ignore these signals, and a process that is started inherits that.
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGINT);
    ::sigaddset(&signals, SIGPIPE);
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setsigdefault(&attributes, &signals);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    if (output >= 0) {
        ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    }
    pid_t process = 0;
    EXPECT_EQ(::posix_spawn(&process, KIVTREE, &actions, &attributes, arguments.data(), environ), 0);
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
    return process;
}

TEST(InterruptTest, AnInterruptedConversionLeavesNothingBehind) {
    const Folder folder;
    WriteFile(folder / "large.kivtext", LargeTree());
    bool interruptedWhileWriting = false;
    for (int attempt = 0; attempt < 20 && !interruptedWhileWriting; ++attempt) {
        const pid_t process = StartTool({"convert", folder / "large.kivtext", folder / "out.json"}, -1);
        int status = 0;
        while (folder.GetNames().size() < 2 && ::waitpid(process, &status, WNOHANG) == 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        ::kill(process, SIGINT);
        ::waitpid(process, &status, 0);
        interruptedWhileWriting = WIFSIGNALED(status) && WTERMSIG(status) == SIGINT;
        const std::vector<std::string> alone = {"large.kivtext"};
        if (interruptedWhileWriting) {
            EXPECT_EQ(folder.GetNames(), alone);
        }
    }
    EXPECT_TRUE(interruptedWhileWriting);
}

TEST(InterruptTest, AReaderThatGoesAwayEndsTheToolQuietly) {
    const Folder folder;
    WriteFile(folder / "large.kivtext", LargeTree());
    int ends[2] = {-1, -1};
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const pid_t process = StartTool({"dump", "--all", folder / "large.kivtext"}, ends[1]);
    ::close(ends[1]);
    ::close(ends[0]);
    int status = 0;
    ::waitpid(process, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGPIPE);
}

TEST(InterruptTest, AFullDiskIsTrouble) {
    const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(full, 0);
    const pid_t process = StartTool({"ls", Data("tree-of-every-kind.kiv")}, full);
    int status = 0;
    ::waitpid(process, &status, 0);
    ::close(full);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 2);
}

TEST(InterruptTest, APipeIsReadLikeAFile) {
    const Folder folder;
    const std::string pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&pipe] { WriteFile(pipe, ReadFile(Data("tree-of-every-kind.kiv"))); });
    const Ran ran = RunTool({"get", pipe, "0:1:"});
    writer.join();
    EXPECT_EQ(ran.out, "-2\n") << ran.err;
}

}  // namespace
}  // namespace ToolTest
