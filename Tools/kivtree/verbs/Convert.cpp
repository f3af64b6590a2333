#include <memory>
#include <string>

#include "kivtree/Forms.h"
#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

struct Options {
    std::string from;
    std::string to = "-";
    std::string form;
    bool force = false;
};

int RunConvert(const Options& options, Context& context) {
    const KivInspect::Form form = ChooseForm(options.form, options.to);
    const Input input = context.Load(options.from);
    OutputFile out(context, options.to, options.force);
    WriteProved(input.tree.Get(), form, out);
    out.Commit();
    return ExitSuccess;
}

}  // namespace

Run DefineConvert(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("FROM", options->from, "the tree, in any form; - is standard input").Required();
    words.Add("TO", options->to, "where it goes; - or nothing is standard output");
    words.Add("--to", options->form, "the form: binary, text or json; without it, by the ending of TO")
        .OneOf({"binary", "text", "json"})
        .Named("FORM");
    words.AddFlag("-f,--force", options->force, "overwrite TO");
    words.SetFooter(
        "Endings: .kiv binary, .kivtext text, .json JSON. What is written is read back and compared before it stands.\n"
        "Exit code 0: converted; 2: trouble, and TO is as it was.");
    return [options](Context& context) { return RunConvert(*options, context); };
}

}  // namespace KivTree
