#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <KivInspect/Check.h>

#include "kivtree/ScanInput.h"
#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

struct Options {
    std::string file;
    bool checksums = false;
    bool withTransient = false;
    bool strict = false;
    bool json = false;
};

void Print(const Options& options, const KivInspect::FileCheck* file, const KivInspect::TreeCheck* tree,
           Context& context) {
    if (options.json) {
        KivInspect::WriteCheckJson(file, tree, context.Out());
    } else {
        KivInspect::WriteCheck(file, tree, context.Out());
    }
}

/// The tree, in whatever form; of standard input, which is read already, from the bytes that came.
Input LoadInput(const Options& options, const ScanInput& scan, const Context& context) {
    if (options.file != "-") {
        return context.Load(options.file);
    }
    KivInspect::LoadedFile loaded = KivInspect::LoadBytes(scan.GetBytes(), "standard input");
    if (!loaded.result.Ok()) {
        ThrowLoadFailure(options.file, loaded.result);
    }
    return {options.file, loaded.form, std::move(loaded.tree), {}};
}

int RunCheck(const Options& options, Context& context) {
    const ScanInput scan = OpenBinaryScan(context, options.file);
    std::optional<KivInspect::FileCheck> file;
    if (scan.form == KivInspect::Form::Binary) {
        ProgressBar bar = context.NewBar("checking " + options.file);
        file = KivInspect::CheckFile(*scan.scanner, bar.OfBytes());
    }
    if (file) {
        if (!file->result.Ok()) {
            Print(options, &*file, nullptr, context);
            context.Out().Flush();  // the list stands before the sentence
            ThrowLoadFailure(options.file, file->result);
        }
    }
    if (options.checksums && !file) {
        throw Trouble(options.file + " is not in the binary form, which alone has checksums. Leave out --checksums.");
    }
    if (options.checksums) {
        Print(options, &*file, nullptr, context);
        return ExitSuccess;
    }
    const Input input = LoadInput(options, scan, context);
    KivInspect::CheckOptions what;
    what.withTransient = options.withTransient;
    what.strict = options.strict;
    what.names = &input.names;
    const KivInspect::TreeCheck tree = KivInspect::CheckTree(input.tree.Get(), what);
    Print(options, file ? &*file : nullptr, &tree, context);
    return tree.findings.empty() ? ExitSuccess : ExitNo;
}

}  // namespace

Run DefineCheck(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("FILE", options->file, "the tree; - is standard input").Required();
    words.AddFlag("--checksums", options->checksums, "check the file alone, in little memory, whatever its size");
    words.AddFlag("--transient", options->withTransient, "check for a save with transient nodes");
    words.AddFlag("--strict", options->strict,
                  "find fault with limits that are nearly reached, ill-formed texts and temporary nodes, too");
    words.AddFlag("--json", options->json, "print a JSON object");
    words.SetFooter(
        "Is the file whole? Would the tree survive a save, and if not, which nodes, why, and what is to be done? How "
        "far\n"
        "is it from every limit?\n\n"
        "Exit code 0: nothing found; 1: findings; 2: trouble, a damaged file too.");
    return [options](Context& context) { return RunCheck(*options, context); };
}

}  // namespace KivTree
