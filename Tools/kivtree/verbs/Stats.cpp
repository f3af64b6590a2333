#include <memory>
#include <string>

#include <KivInspect/Statistics.h>

#include "kivtree/OutputFile.h"
#include "kivtree/ScanInput.h"
#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

struct Options {
    std::string file;
    std::size_t top = 10;
    std::string svg;
    bool force = false;
    bool json = false;
};

KivInspect::StatisticsResult Read(const Options& options, const Context& context) {
    const ScanInput input = OpenScan(context, options.file);
    ProgressBar bar = context.NewBar("reading " + options.file);
    return KivInspect::ReadStatistics(*input.scanner, options.top, bar.OfBytes());
}

int RunStats(const Options& options, Context& context) {
    const KivInspect::StatisticsResult read = Read(options, context);
    if (!read.result.Ok()) {
        ThrowLoadFailure(options.file, read.result);
    }
    const KivInspect::Names names = context.LoadNames(options.file);
    if (!options.svg.empty()) {
        OutputFile out(context, options.svg, options.force);
        KivInspect::WriteTreemap(read.statistics, &names, out);
        out.Commit();
    } else if (options.json) {
        KivInspect::WriteStatisticsJson(read.statistics, &names, context.Out());
    } else {
        KivInspect::WriteStatistics(read.statistics, options.top, &names, context.Out());
    }
    return ExitSuccess;
}

}  // namespace

Run DefineStats(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("FILE", options->file, "the tree; - is standard input").Required();
    words.Add("--top", options->top, "list so many sub-trees, and so many tags (10)").Named("N");
    words.Add("--svg", options->svg, "write a drawing instead, in which areas are bytes").Named("FILE");
    words.AddFlag("-f,--force", options->force, "replace the drawing's file if there is one");
    words.AddFlag("--json", options->json, "print a JSON object");
    words.SetFooter(
        "Bytes are those of the items in the binary form. Of a tree in another form it tells what its binary form "
        "would be.\n\n"
        "Exit code 0: printed; 2: trouble.");
    return [options](Context& context) { return RunStats(*options, context); };
}

}  // namespace KivTree
