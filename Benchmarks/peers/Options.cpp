#include "Options.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "Failure.h"
#include "Systems.h"

namespace Peers {
namespace {

constexpr const char* kUsage =
    "usage: PeerBenchmarks [option...]\n"
    "\n"
    "  --rounds N            samples of each figure (9)\n"
    "  --only NAME,...       these systems beside this library: %s\n"
    "  --workload NAME,...   these workloads: %s\n"
    "  --unicode FILE        the tree of the Unicode Character Database as the example UnicodeData saves it: workload "
    "W5\n"
    "  --one-by-one          this library makes one leaf at a time, and its walk calls a visitor; else many at once, "
    "and inline\n"
    "  --fresh               with memory fresh from the system; else with a warm heap\n"
    "  --csv FILE            every figure with its quartiles\n"
    "  --markdown FILE       the tables that are printed\n"
    "  --svg FOLDER          plots: systems.svg, operations.svg, with --growth growth-W1.svg and growth-W2.svg\n"
    "  --growth              measures trees of growing size, too\n"
    "  --check               asserts what must hold; implies --growth; the last line is \"N passed, N failed\"\n";

std::vector<std::string> Split(const std::string& list) {
    std::vector<std::string> parts;
    std::istringstream stream(list);
    for (std::string part; std::getline(stream, part, ',');) {
        parts.push_back(part);
    }
    return parts;
}

template <class Entry, class GetOption>
std::string Join(const std::vector<Entry>& entries, GetOption getOption) {
    std::string joined;
    for (const Entry& entry : entries) {
        joined += (joined.empty() ? "" : ",") + std::string(getOption(entry));
    }
    return joined;
}

const char* OptionOf(const SystemEntry& system) {
    return system.option;
}
const char* OptionOf(const Workload& workload) {
    return workload.name;
}

template <class Entry>
std::string List(const std::vector<Entry>& entries) {
    return Join(entries, [](const Entry& entry) { return OptionOf(entry); });
}

/// The entries that are named, in the order of `all`.
template <class Entry>
std::vector<Entry> Choose(const std::vector<Entry>& all, const std::string& names) {
    const std::vector<std::string> chosen = Split(names);
    std::vector<Entry> found;
    for (const Entry& entry : all) {
        for (const std::string& name : chosen) {
            if (name == OptionOf(entry)) {
                found.push_back(entry);
            }
        }
    }
    if (found.size() != chosen.size()) {
        Fail("\"" + names + "\" names one that is not known. Known: " + List(all));
    }
    return found;
}

/// Those that are named, or all; that of the Unicode tree only when its file is given.
std::vector<Workload> ChooseWorkloads(const std::string& names, const std::string& unicode) {
    std::vector<Workload> all = GetWorkloads();
    if (!unicode.empty()) {
        all.push_back(MakeRecordedWorkload(unicode));
    }
    return names.empty() ? all : Choose(all, names);
}

void PrintUsage() {
    std::printf(kUsage, List(GetPeers()).c_str(), List(GetWorkloads()).c_str());
}

}  // namespace

Options ReadOptions(int count, char** arguments) {
    Options options;
    std::vector<SystemEntry> peers = GetPeers();
    std::string workloads;
    std::string unicode;
    bool oneByOne = false;
    for (int i = 1; i < count; ++i) {
        const std::string option = arguments[i];
        const auto value = [&]() -> std::string {
            return i + 1 < count ? arguments[++i] : (Fail(option + " needs a value"), "");
        };
        if (option == "--help" || option == "-h") {
            PrintUsage();
            std::exit(0);
        } else if (option == "--rounds") {
            const std::string rounds = value();
            options.request.rounds = std::atoi(rounds.c_str());
            if (options.request.rounds < 1) {
                Fail("\"" + rounds + "\" is no number of rounds: 1 or more");
            }
        } else if (option == "--only") {
            peers = Choose(peers, value());
        } else if (option == "--workload") {
            workloads = value();
        } else if (option == "--unicode") {
            unicode = value();
        } else if (option == "--fresh") {
            options.request.heap = Heap::Fresh;
        } else if (option == "--one-by-one") {
            oneByOne = true;
        } else if (option == "--svg") {
            options.svg = value();
        } else if (option == "--growth") {
            options.growth = true;
        } else if (option == "--check") {
            options.check = true;
            options.growth = true;
        } else if (option == "--csv") {
            options.csv = value();
        } else if (option == "--markdown") {
            options.markdown = value();
        } else {
            PrintUsage();
            Fail("\"" + option + "\" is not understood");
        }
    }
    if (options.check && oneByOne) {
        Fail("--check is about what comes together: leave out --one-by-one");
    }
    if (options.check && (peers.size() != GetPeers().size() || !workloads.empty())) {
        Fail("--check is about every system and workload: leave out --only and --workload");
    }
    // Before anything is measured, which takes long.
    if (!options.svg.empty() && !std::filesystem::is_directory(options.svg)) {
        Fail("\"" + options.svg + "\" is no folder that plots can be written into: make it first");
    }
    options.request.workloads = ChooseWorkloads(workloads, unicode);
    options.request.systems = {GetOwn(oneByOne)};
    options.request.systems.insert(options.request.systems.end(), peers.begin(), peers.end());
    return options;
}

}  // namespace Peers
