#include <memory>
#include <string>

#include <KivInspect/Annotate.h>

#include "kivtree/ScanInput.h"
#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

struct Options {
    std::string file;
    KivInspect::AnnotateOptions annotate;
};

int RunAnnotate(const Options& options, Context& context) {
    const ScanInput input = OpenBinaryScan(context, options.file);
    if (input.form != KivInspect::Form::Binary) {
        throw Trouble(options.file + " is not in the binary form. Convert it first: kivtree convert.");
    }
    ProgressBar bar = context.NewBarBesideResults("reading " + options.file);
    KivInspect::AnnotateOptions how = options.annotate;
    how.progress = bar.OfBytes();
    const KivStorage::Result result = KivInspect::Annotate(*input.scanner, context.Out(), how);
    if (!result.Ok()) {
        context.Out().Flush();  // what was read stands before the sentence
        ThrowLoadFailure(options.file, result);
    }
    return ExitSuccess;
}

}  // namespace

Run DefineAnnotate(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("FILE", options->file, "the file, in the binary form; - is standard input").Required();
    words.Add("--from", options->annotate.from, "leave out what stands before this byte").Named("BYTE");
    words.Add("--to", options->annotate.to, "leave out what stands at this byte and behind it").Named("BYTE");
    words.SetFooter(
        "Each line is an offset in hexadecimal, the bytes there, and what they mean. Reads the file once, in little\n"
        "memory, whatever its size. Damage is marked WRONG where it is.\n\n"
        "Exit code 0: the file is whole; 2: trouble, damage too.");
    return [options](Context& context) { return RunAnnotate(*options, context); };
}

}  // namespace KivTree
