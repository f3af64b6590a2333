// What kivtree costs, in time and in memory, against loading and walking the same trees: `ToolCosts` makes a tree of about a
// million nodes in a folder of its own, measures, prints, and exits with 1 when a limit is broken. Times are those of the
// processor, the best of three runs each; memory is the most that a process has held at a time.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>
#include <KivInspect/LoadFile.h>
#include <KivInspect/Walk.h>
#include <KivStorage/SaveTree.h>

namespace {

namespace fs = std::filesystem;
using namespace KivGenerics;

constexpr int kRuns = 3;
constexpr double kOutputBytesPerSecond = 200e6;
constexpr double kTimes = 2.0;
constexpr double kMemory = 1.2;
// A stream holds a window of the file and a block of its output, whatever the file's size.
constexpr double kStreamingBytes = 16e6;

struct Cost {
    double seconds = 0.0;
    double bytes = 0.0;
};

/// What a child process costs that does `work`; ends this program when the child fails.
Cost MeasureOnce(const std::function<int()>& work) {
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(work());
    }
    int status = 0;
    rusage used = {};
    if (child < 0 || ::wait4(child, &status, 0, &used) != child || !WIFEXITED(status) || WEXITSTATUS(status) > 1) {
        std::fprintf(stderr, "A measured process did not end well: run its command by hand.\n");
        std::exit(2);
    }
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return {seconds(used.ru_utime) + seconds(used.ru_stime), static_cast<double>(used.ru_maxrss) * 1024};
}

Cost Measure(const std::function<int()>& work) {
    Cost best = MeasureOnce(work);
    for (int run = 1; run < kRuns; ++run) {
        const Cost cost = MeasureOnce(work);
        best = {std::min(best.seconds, cost.seconds), std::min(best.bytes, cost.bytes)};
    }
    return best;
}

int RunTool(std::vector<std::string> words, const fs::path& output) {
    words.insert(words.begin(), KIVTREE);
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const int out = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (out >= 0 && ::dup2(out, STDOUT_FILENO) >= 0) {
        ::execv(KIVTREE, arguments.data());
    }
    return 2;
}

/// What every host has to do with the same files: all of them in memory at once, and every node seen.
int LoadAndWalk(const std::vector<fs::path>& files) {
    std::vector<KivInspect::LoadedFile> loaded;
    std::uint64_t nodes = 0;
    for (const fs::path& file : files) {
        loaded.push_back(KivInspect::LoadFile(file));
        if (!loaded.back().result.Ok()) {
            std::fprintf(stderr, "%s\n", loaded.back().result.sentence.c_str());
            return 2;
        }
        for (KivInspect::Walk walk(loaded.back().tree->GetRoot()); walk.Next() != nullptr;) {
            ++nodes;
        }
    }
    return nodes > 0 ? 0 : 2;
}

void FillRecord(Map* record, int i) {
    static_cast<Integer*>(record->NewNode(0, NodeTypeInteger))->Set(i);
    static_cast<String*>(record->NewNode(1, NodeTypeString))
        ->Set((u"the name of one of the records, number " + KivBase::WString(1, static_cast<char16_t>(u'a' + i % 26))));
    static_cast<Double*>(record->NewNode(2, NodeTypeDouble))->Set(i * 0.37);
    static_cast<Boolean*>(record->NewNode(3, NodeTypeBoolean))->Set(i % 2 == 0);
    auto* const measures = static_cast<Vector*>(record->NewNode(20, NodeTypeVector));
    for (int k = 0; k < 3; ++k) {
        static_cast<Double*>(measures->Add(NodeTypeDouble))->Set(i / (k + 1.5));
    }
}

int SaveRecords(const fs::path& file, int records) {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const list = static_cast<Vector*>(static_cast<Map*>(tree->NewRoot(NodeTypeMap))->NewNode(0, NodeTypeVector));
    for (int i = 0; i < records; ++i) {
        FillRecord(static_cast<Map*>(list->Add(NodeTypeMap, SemanticTag(4100))), i);
    }
    const auto saved = KivStorage::SaveTree(tree.Get(), file);
    if (!saved.Ok()) {
        std::fprintf(stderr, "%s\n", saved.sentence.c_str());
        return 2;
    }
    return 0;
}

class Report {
public:
    explicit Report(fs::path folder) : folder_(std::move(folder)) {
        std::printf("%-30s %10s %10s %10s %10s\n", "", "seconds", "at most", "MB", "at most");
    }

    /// The tool's run, whose output is what it prints or the file `written`, against loading and walking `files`.
    void Compare(const std::string& name, const std::vector<std::string>& words, const std::vector<fs::path>& files,
                 const fs::path& written = {}) {
        const fs::path printed = folder_ / "printed";
        const Cost cost = Measure([&] { return RunTool(words, printed); });
        const Cost least = Measure([&] { return LoadAndWalk(files); });
        const auto bytes = static_cast<double>(fs::file_size(written.empty() ? printed : written));
        Print(name, cost, {kTimes * least.seconds + bytes / kOutputBytesPerSecond, kMemory * least.bytes});
    }

    /// A run that must take little memory, whatever the size of the file.
    void Stream(const std::string& name, const std::vector<std::string>& words) {
        const Cost cost = Measure([&] { return RunTool(words, folder_ / "printed"); });
        Print(name, cost, {0.0, kStreamingBytes});
    }

    int GetBroken() const noexcept { return broken_; }

private:
    void Print(const std::string& name, const Cost& cost, const Cost& limit) {
        const bool slow = limit.seconds > 0.0 && cost.seconds > limit.seconds;
        const bool large = cost.bytes > limit.bytes;
        char atMost[32] = "-";
        if (limit.seconds > 0.0) {
            std::snprintf(atMost, sizeof atMost, "%.2f", limit.seconds);
        }
        std::printf("%-30s %10.2f %10s %10.1f %10.1f%s%s\n", name.c_str(), cost.seconds, atMost, cost.bytes / 1e6,
                    limit.bytes / 1e6, slow ? "  TOO SLOW" : "", large ? "  TOO MUCH MEMORY" : "");
        broken_ += (slow ? 1 : 0) + (large ? 1 : 0);
    }

    fs::path folder_;
    int broken_ = 0;
};

int CheckAll(const fs::path& folder) {
    const fs::path tree = folder / "tree.kiv";
    const fs::path other = folder / "other.kiv";
    // In processes of their own: what this one holds counts for its children, too.
    MeasureOnce([&] { return SaveRecords(tree, 120'000); });
    MeasureOnce([&] { return SaveRecords(other, 119'000); });
    const fs::path text = folder / "tree.kivtext";
    const fs::path json = folder / "tree.json";
    const fs::path back = folder / "back.kiv";
    Report report(folder);
    report.Compare("dump --all", {"dump", "--all", tree}, {tree});
    // Each conversion reads back what it has written, so that it has to do with two trees. The first run makes the file.
    for (const auto& step : {std::pair(tree, text), std::pair(tree, json), std::pair(text, back)}) {
        const fs::path& from = step.first;
        const fs::path& to = step.second;
        MeasureOnce([&] { return RunTool({"convert", from, to}, folder / "printed"); });
        report.Compare("convert " + from.filename().string() + " " + to.filename().string(),
                       {"convert", "-f", from, to}, {from, to}, to);
    }
    report.Compare("diff, the same", {"diff", tree, back}, {tree, back});
    report.Compare("diff, unlike", {"diff", tree, other}, {tree, other});
    report.Stream("info", {"info", tree});
    report.Stream("annotate", {"annotate", tree});
    report.Stream("check --checksums", {"check", "--checksums", tree});
    report.Stream("stats", {"stats", tree});
    return report.GetBroken();
}

}  // namespace

int main() {
    std::string folder = (fs::temp_directory_path() / "kivtree-costs-XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr) {
        std::fprintf(stderr, "No folder can be made in %s: check that there is room and that you may write there.\n",
                     fs::temp_directory_path().c_str());
        return 2;
    }
    const int broken = CheckAll(folder);
    fs::remove_all(folder);
    std::printf("%d limits broken\n", broken);
    return broken == 0 ? 0 : 1;
}
