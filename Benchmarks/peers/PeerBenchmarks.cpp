// This library beside others that hold a document in memory, on the same data in one run.

#include <cstdio>
#include <fstream>

#include "Check.h"
#include "Failure.h"
#include "Growth.h"
#include "Options.h"
#include "Plots.h"
#include "Tables.h"

using namespace Peers;

namespace {

void WriteFile(const std::string& name, const std::string& text) {
    if (name.empty()) {
        return;
    }
    std::ofstream file(name, std::ios::binary);
    file << text;
    if (!file.flush()) {
        Fail(name + ": cannot be written; name a file in a folder that exists");
    }
}

/// Written anew after each workload, so that a run that is ended leaves what it has measured.
std::string WriteTables(const Options& options, const Cells& cells, const std::vector<Series>& growth) {
    const std::string markdown = MakeMarkdown(options.request, cells) + MakeGrowthMarkdown(options.request, growth);
    WriteFile(options.markdown, markdown);
    WriteFile(options.csv, MakeCsv(options.request, cells));
    return markdown;
}

void ShowProgress(const Workload& workload, int round) {
    std::fprintf(stderr, "\r%s, round %d  ", workload.name, round);
}

void WritePlots(const Options& options, const Cells& cells, const std::vector<Series>& growth) {
    if (options.svg.empty()) {
        return;
    }
    WriteFile(options.svg + "/systems.svg", PlotSystems(options.request, cells));
    WriteFile(options.svg + "/operations.svg", PlotOperations(options.request, cells));
    for (const Series& series : growth) {
        WriteFile(options.svg + "/growth-" + series.name + ".svg", PlotGrowth(series));
    }
}

}  // namespace

int main(int argc, char** argv) {
    const Options options = ReadOptions(argc, argv);
    const Cells cells = Measure(options.request, ShowProgress,
                                [&](const Cells& soFar) { WriteTables(options, soFar, std::vector<Series>()); });
    std::vector<Series> growth;
    if (options.growth) {
        growth = MeasureGrowth(options.request, ShowProgress,
                               [&](const std::vector<Series>& soFar) { WriteTables(options, cells, soFar); });
    }
    std::fprintf(stderr, "\r                \r");
    std::printf("%s\n", WriteTables(options, cells, growth).c_str());
    WritePlots(options, cells, growth);
    return !options.check || Check(options.request, cells, growth) ? 0 : 1;
}
