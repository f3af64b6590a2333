#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

using std::chrono::milliseconds;

/// Waits until something holds; half a minute at most, not counted by the clock, which goes on when all stands still.
bool Await(const std::function<bool()>& holds) {
    for (int pauses = 0; pauses < 15000; ++pauses) {
        if (holds()) {
            return true;
        }
        std::this_thread::sleep_for(milliseconds(2));
    }
    return holds();
}

/// A terminal of 100 columns in which the tool runs, in a folder of its own; what it gets is kept byte by byte.
class TerminalTest : public testing::Test {
protected:
    ~TerminalTest() override { Do({"kill-server"}); }

    /// Starts the tool, once the record of the terminal has begun.
    void Run(const std::string& words) {
        WriteFile(folder_ / "wait", "");
        WriteFile(folder_ / "run", "while [ -e wait ]; do sleep 0.01; done\n" + words + " &\necho $! >process\nwait\n");
        const std::string shell = "cd '" + (folder_ / "") + "' && exec env KIVTREE='" KIVTREE "' sh ./run";
        ASSERT_EQ(Do({"-f", "/dev/null", "new-session", "-d", "-x", "100", "-y", "20", shell, ";",  //
                      "set-option", "remain-on-exit", "on", ";",                                   //
                      "pipe-pane", "exec cat >'" + (folder_ / "record") + "'"}),
                  0)
            << ReadFile(folder_ / "tmux-errors");
        ASSERT_TRUE(Await([this] { return std::filesystem::exists(Path("record")); }));
        std::filesystem::remove(Path("wait"));
    }

    void AwaitEnd() {
        ASSERT_TRUE(Await([this] { return Ask({"display-message", "-p", "#{pane_dead}"}) == "1\n"; }));
    }

    /// The tool's process; no child of the terminal's, which would not let it stand still.
    pid_t GetProcess() const {
        EXPECT_TRUE(Await([this] { return ReadFile(folder_ / "process").find('\n') != std::string::npos; }));
        return std::stoi(ReadFile(folder_ / "process"));
    }
    std::string GetScreen() { return Ask({"capture-pane", "-p"}); }
    std::string GetRecord() const { return ReadFile(folder_ / "record"); }
    /// The record is written by a process of its own, which may come after the tool's end.
    bool Records(const std::string& text) const {
        return Await([&] { return GetRecord().find(text) != std::string::npos; });
    }

    int Do(std::vector<std::string> words) {
        words.insert(words.begin(), {"tmux", "-S", folder_ / "socket"});
        WriteFile(folder_ / "nothing", "");
        return Start("/usr/bin/env", words, Path("nothing"), Path("tmux-answer"), Path("tmux-errors"));
    }

    /// Ends the terminal, so that there may be another one.
    void Forget() {
        Do({"kill-server"});
        std::filesystem::remove(Path("record"));
        std::filesystem::remove(Path("process"));
    }

    Folder folder_;

private:
    std::string Ask(const std::vector<std::string>& words) {
        Do(words);
        return ReadFile(folder_ / "tmux-answer");
    }
    std::filesystem::path Path(const char* name) const { return std::filesystem::u8path(folder_ / name); }
};

class ColorTest : public TerminalTest {
protected:
    ColorTest() {
        WriteFile(folder_ / "a", "kivtext 1\nMap\n  0: Map\n    0: Integer transient 1\n");
        WriteFile(folder_ / "b", "kivtext 1\nMap\n  0: Map\n    0: Integer transient 2\n");
    }
};

TEST_F(ColorTest, ATransientNodeIsYellow) {
    Run("$KIVTREE ls a 0:");
    AwaitEnd();
    EXPECT_TRUE(Records("\x1b[33mtransient")) << GetRecord();
}

TEST_F(ColorTest, AChangeIsYellow) {
    Run("$KIVTREE diff a b");
    AwaitEnd();
    EXPECT_TRUE(Records("\x1b[33m~ 0:0: 1 -> 2\x1b[0m")) << GetRecord();
}

TEST_F(ColorTest, NoColorTurnsThemOff) {
    Run("env NO_COLOR=1 $KIVTREE ls a 0:");
    AwaitEnd();
    EXPECT_TRUE(Records("transient")) << GetRecord();
    EXPECT_EQ(GetRecord().find("\x1b["), std::string::npos) << GetRecord();
}

TEST_F(ColorTest, AnEmptyNoColorDoesNot) {
    Run("env NO_COLOR= $KIVTREE ls a 0:");
    AwaitEnd();
    EXPECT_TRUE(Records("\x1b[33mtransient")) << GetRecord();
}

TEST_F(ColorTest, TheOptionIsStrongerThanTheTerminal) {
    Run("$KIVTREE ls --color never a 0:");
    AwaitEnd();
    EXPECT_EQ(GetRecord().find("\x1b["), std::string::npos) << GetRecord();
}

/// A command over a large tree, and what its bar names.
struct LongStep {
    const char* name;
    const char* command;
    const char* bar;
    const char* counter;  ///< of the bytes that the system has moved for the process: "rchar" read, "wchar" written
};

class ProgressTest : public TerminalTest, public testing::WithParamInterface<LongStep> {
protected:
    /// Makes the large file that a command names.
    void MakeFileFor(const std::string& command) {
        if (command.find("document.json") != std::string::npos) {
            WriteFile(folder_ / "document.json", Lines("[0.5", ",\n", "]\n"));
            return;
        }
        WriteFile(folder_ / "large.kivtext", Lines("kivtext 1\nMap\n  0: Vector", "\n    - Double ", "\n"));
        if (command.find("large.kivtext") == std::string::npos) {
            ASSERT_EQ(RunTool({"convert", "-f", folder_ / "large.kivtext", folder_ / "large.kiv"}).code, 0);
        }
        if (command.find("damaged.kiv") != std::string::npos) {
            std::string bytes = ReadFile(folder_ / "large.kiv");
            bytes[3'000'000] = static_cast<char>(bytes[3'000'000] ^ 0x11);
            WriteFile(folder_ / "damaged.kiv", bytes);
        }
    }

    static std::string Lines(const std::string& first, const std::string& before, const std::string& last) {
        std::string text = first;
        for (int i = 0; i < kNodes; ++i) {
            text += before + "0." + std::to_string(i) + "1";
        }
        return text + last;
    }

    /// Runs the tool, and lets it stand still for more than a second once the counter has come so far. False when it was over
    /// before that.
    bool RunHaltingly(const LongStep& step) {
        constexpr long long far = 2'000'000;
        Run(step.command);
        const pid_t process = GetProcess();
        long long count = 0;
        EXPECT_TRUE(Await([&] {
            const std::string counters = ReadFile("/proc/" + std::to_string(process) + "/io");
            const std::size_t at = counters.find(step.counter);
            count = at != std::string::npos ? std::stoll(counters.substr(at + 7)) : -1;
            return count < 0 || count >= far;
        }));
        if (count >= far) {
            ::kill(process, SIGSTOP);
            std::this_thread::sleep_for(milliseconds(1300));
            ::kill(process, SIGCONT);
        }
        AwaitEnd();
        return count >= far;
    }

    static constexpr int kNodes = 600'000;
};

TEST_P(ProgressTest, ABarWithBytesAndRateAndTimeLeftAppearsAfterASecondAndIsGoneAtTheEnd) {
    const std::regex bar(R"(\[[# ]{30}\] )" + std::string(GetParam().bar) +
                         R"( [0-9.]+ of [0-9.]+ MB, [0-9]+ MB/s, [0-9]+:[0-9][0-9] left)");
    bool seen = false;
    MakeFileFor(GetParam().command);
    // Whoever is quick may be through before it is made to stand still.
    for (int attempt = 0; attempt < 5 && !seen; ++attempt) {
        if (attempt > 0) {
            Forget();
        }
        RunHaltingly(GetParam());
        seen = std::regex_search(GetRecord(), bar);
    }
    EXPECT_TRUE(seen) << GetRecord();
    EXPECT_EQ(GetScreen().find("MB/s"), std::string::npos) << GetScreen();
}

INSTANTIATE_TEST_SUITE_P(
    Verbs, ProgressTest,
    testing::Values(
        LongStep{"Info", "$KIVTREE info large.kiv", "reading large.kiv", "rchar"},
        LongStep{"Check", "$KIVTREE check large.kiv", "(checking|reading) large.kiv", "rchar"},
        LongStep{"Annotate", "$KIVTREE annotate large.kiv >annotated", "reading large.kiv", "rchar"},
        LongStep{"Salvage", "$KIVTREE salvage large.kiv", "reading large.kiv", "rchar"},
        LongStep{"Repair", "$KIVTREE salvage damaged.kiv", "reading damaged.kiv", "rchar"},
        LongStep{"Stats", "$KIVTREE stats large.kiv", "reading large.kiv", "rchar"},
        LongStep{"LoadOfTheBinaryForm", "$KIVTREE get large.kiv 0:7:", "reading large.kiv", "rchar"},
        LongStep{"LoadOfText", "$KIVTREE get large.kivtext 0:7:", "reading large.kivtext", "rchar"},
        LongStep{"Import", "$KIVTREE import -f document.json imported.kiv", "reading document.json", "rchar"},
        LongStep{"WritingText", "$KIVTREE convert -f large.kiv out.kivtext", "writing out.kivtext", "wchar"},
        LongStep{"WritingJson", "$KIVTREE convert -f large.kiv out.json", "writing out.json", "wchar"},
        LongStep{"ViewingPage", "$KIVTREE view -f large.kiv -o page.html", "writing page.html", "wchar"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(ProgressTest, ThereIsNoneWhenItIsNotWantedOrResultsStandOnTheTerminal) {
    for (const char* const command :
         {"$KIVTREE stats --no-progress large.kiv", "$KIVTREE annotate --to 100 large.kiv"}) {
        MakeFileFor(command);
        EXPECT_TRUE(RunHaltingly({"", command, "", "rchar"}));
        EXPECT_EQ(GetRecord().find("MB/s"), std::string::npos) << GetRecord();
        Forget();
    }
}

}  // namespace
}  // namespace ToolTest
