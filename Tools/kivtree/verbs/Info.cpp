#include <memory>
#include <string>

#include <KivInspect/Info.h>

#include "kivtree/ScanInput.h"
#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

struct Options {
    std::string file;
    bool json = false;
};

KivInspect::InfoResult Read(const std::string& file, const Context& context) {
    const ScanInput input = OpenScan(context, file);
    ProgressBar bar = context.NewBar("reading " + file);
    return KivInspect::ReadInfo(*input.scanner, bar.OfBytes());
}

int RunInfo(const Options& options, Context& context) {
    const KivInspect::InfoResult read = Read(options.file, context);
    if (!read.result.Ok()) {
        ThrowLoadFailure(options.file, read.result);
    }
    if (options.json) {
        KivInspect::WriteInfoJson(read.info, context.Out());
    } else {
        KivInspect::WriteInfo(read.info, context.Out());
    }
    return ExitSuccess;
}

}  // namespace

Run DefineInfo(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("FILE", options->file, "the tree; - is standard input").Required();
    words.AddFlag("--json", options->json, "print a JSON object");
    words.SetFooter(
        "Reads the file once, in little memory, whatever its size, and checks every byte of it.\n"
        "Of a tree in another form it tells what its binary form would be.\n\n"
        "Exit code 0: printed; 2: trouble.");
    return [options](Context& context) { return RunInfo(*options, context); };
}

}  // namespace KivTree
