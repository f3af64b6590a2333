#include <memory>
#include <string>
#include <vector>

#include <KivInspect/Salvage.h>
#include <KivStorage/SaveTree.h>

#include "kivtree/OutputFile.h"
#include "kivtree/ScanInput.h"
#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

struct Options {
    std::string file;
    std::string output;
    bool force = false;
    bool noRepair = false;
};

void Save(const Options& options, KivGenerics::Tree* tree, Context& context) {
    KivStorage::SaveOptions how;
    how.withTransient = true;
    how.saveDespiteLosses = true;
    std::vector<std::uint8_t> bytes;
    const KivStorage::Result saved = KivStorage::SaveTreeToMemory(tree, bytes, how);
    if (!saved.Ok()) {
        throw Trouble(saved.sentence);
    }
    OutputFile out(context, options.output, options.force);
    out.Write({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    out.Commit();
}

KivInspect::SalvageResult Read(const Options& options, const Context& context) {
    const ScanInput input = OpenBinaryScan(context, options.file);
    if (input.form != KivInspect::Form::Binary) {
        throw Trouble(options.file + " is not in the binary form: its text can be mended by hand.");
    }
    KivInspect::SalvageOptions how;
    how.repair = !options.noRepair;
    ProgressBar bar = context.NewBar("reading " + options.file);
    how.progress = bar.OfBytes();
    return KivInspect::Salvage(*input.scanner, how);
}

int RunSalvage(const Options& options, Context& context) {
    const KivInspect::SalvageResult salvaged = Read(options, context);
    if (!salvaged.tree) {
        throw Trouble(salvaged.result.sentence + " Nothing of it can be read.");
    }
    if (!options.output.empty()) {
        Save(options, salvaged.tree.Get(), context);
    }
    // A tree on standard output leaves no room for the list.
    if (options.output != "-") {
        KivInspect::WriteSalvage(salvaged, context.Out());
    }
    if (!salvaged.result.Ok()) {
        Context::Note(salvaged.result.sentence);
    }
    return salvaged.result.Ok() ? ExitSuccess : ExitNo;
}

}  // namespace

Run DefineSalvage(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("FILE", options->file, "the damaged file, in the binary form; - is standard input").Required();
    words.Add("-o,--output", options->output, "the file for the tree that could be read; without it, only the list")
        .Named("FILE");
    words.AddFlag("-f,--force", options->force, "replace the output file if there is one");
    words.AddFlag("--no-repair", options->noRepair,
                  "do not try to put damaged blocks right, which takes seconds for each");
    words.SetFooter(
        "Reads what can still be read, and lists by key what was lost. Of a block that does not match its checksum "
        "nothing\n"
        "is believed; but where the change of one byte makes it match, it is put right. Behind the last damage the "
        "place in\n"
        "the tree is found again, as far as the number and the kinds of what follows prove it.\n\n"
        "Exit code 0: the file is whole, or all of it was put right; 1: something was lost; 2: trouble.");
    return [options](Context& context) { return RunSalvage(*options, context); };
}

}  // namespace KivTree
