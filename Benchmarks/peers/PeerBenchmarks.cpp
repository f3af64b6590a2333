// This library beside others that hold a document in memory, on the same data in one run.

#include <cstdio>
#include <fstream>

#include "Failure.h"
#include "Options.h"
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

void ShowProgress(const Workload& workload, int round) {
    std::fprintf(stderr, "\r%s, round %d  ", workload.name, round);
}

}  // namespace

int main(int argc, char** argv) {
    const Options options = ReadOptions(argc, argv);
    const Cells cells = Measure(options.request, ShowProgress);
    std::fprintf(stderr, "\r                \r");
    const std::string markdown = MakeMarkdown(options.request, cells);
    std::printf("%s", markdown.c_str());
    WriteFile(options.markdown, markdown);
    WriteFile(options.csv, MakeCsv(options.request, cells));
    return 0;
}
