#include "kivtree/MergeVerbs.h"

#include <KivInspect/ValueText.h>

#include "kivtree/Forms.h"
#include "kivtree/OutputFile.h"

namespace KivTree {
namespace {

constexpr std::size_t Width = 60;

std::string SideText(KivGenerics::Node* node) {
    return node != nullptr ? KivInspect::ShortText(node, Width) : "removed";
}

}  // namespace

void AddMergeOptions(CommandLine& words, const std::shared_ptr<MergeWords>& options) {
    words.Add("-o,--output", options->output, "where the result goes; - is standard output").Required().Named("FILE");
    words.Add("--to", options->form, "the form of the result: binary, text or json; without it, that of A")
        .OneOf({"binary", "text", "json"})
        .Named("FORM");
    words.AddFlag("-f,--force", options->force, "overwrite the output, which may be one of the trees");
    const Option ours = words.AddFlag("--ours", options->favorOurs, "settle conflicts for A");
    words.AddFlag("--theirs", options->favorTheirs, "settle conflicts for B").Excludes(ours);
    words.SetFooter(
        "A conflict is a line with its key, what is not agreed about, and both sides. Without --ours and --theirs the "
        "result "
        "keeps A's side.\nExit code 0: no conflict, or all settled; 1: conflicts; 2: trouble.");
}

int RunMerge(const MergeWords& words, const Input& ours, const DoMerge& merge, Context& context) {
    const KivInspect::Form form = words.form.empty() ? ours.form : ChooseForm(words.form, words.output);
    KivInspect::MergeOptions options;
    options.favor = words.favorOurs     ? KivInspect::Favor::Ours
                    : words.favorTheirs ? KivInspect::Favor::Theirs
                                        : KivInspect::Favor::None;
    options.names = &ours.names;
    OutputFile out(context, words.output, words.force);
    // The conflicts are told apart from a result that goes to standard output.
    const std::uint64_t conflicts = merge(options, [&](const KivInspect::Conflict& conflict) {
        const std::string line = "! " + (conflict.key.empty() ? "(root)" : conflict.key) + " " + conflict.what + ": " +
                                 SideText(conflict.ours) + " <> " + SideText(conflict.theirs);
        if (words.output == "-") {
            Context::Note(line);
        } else {
            context.Out().Write(line + "\n");
        }
    });
    WriteProved(ours.tree.Get(), form, out);
    out.Commit();
    return conflicts > 0 && options.favor == KivInspect::Favor::None ? ExitNo : ExitSuccess;
}

}  // namespace KivTree
