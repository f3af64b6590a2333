#include <memory>
#include <optional>
#include <string>

#include <KivInspect/View.h>

#include "kivtree/OutputFile.h"
#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

struct Options {
    std::string file;
    std::string other;
    std::string output = "-";
    std::string format = "html";
    bool force = false;
    std::optional<int> depth;
    std::optional<std::size_t> limit;
};

void Draw(const Options& options, const Input& input, KivInspect::Sink& sink) {
    KivInspect::DrawOptions how;
    how.depth = options.depth.value_or(how.depth);
    how.limit = options.limit.value_or(how.limit);
    how.names = &input.names;
    if (options.format == "dot") {
        KivInspect::WriteDot(input.tree.Get(), how, sink);
    } else {
        KivInspect::WriteSvg(input.tree.Get(), how, sink);
    }
}

void WriteHtml(const Options& options, const Input& input, const Context& context, OutputFile& out) {
    const auto write = [&](const KivInspect::ViewTree& left, const KivInspect::ViewTree* right) {
        ProgressBar bar = out.NewBar("writing");
        KivInspect::WritePage(left, right, &input.names, out, bar.OfNodes([&out] { return out.GetWritten(); }));
    };
    const KivInspect::ViewTree left{input.tree.Get(), input.name};
    if (options.other.empty()) {
        write(left, nullptr);
        return;
    }
    const Input other = context.Load(options.other);
    const KivInspect::ViewTree right{other.tree.Get(), other.name};
    write(left, &right);
}

int RunView(const Options& options, Context& context) {
    const bool isPage = options.format == "html";
    if (isPage && (options.depth || options.limit)) {
        throw Trouble("--depth and --limit belong to --format dot and svg: a page holds the whole tree.");
    }
    if (!isPage && !options.other.empty()) {
        throw Trouble("only a page shows two trees. Leave out --format, or the second tree.");
    }
    const Input input = context.Load(options.file);
    OutputFile out(context, options.output, options.force);
    if (isPage) {
        WriteHtml(options, input, context, out);
    } else {
        Draw(options, input, out);
    }
    out.Commit();
    return ExitSuccess;
}

}  // namespace

Run DefineView(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("A", options->file, "the tree; - is standard input").Required();
    words.Add("B", options->other, "a second tree, shown beside the first");
    words.Add("-o,--output", options->output, "the file to write; without it, standard output").Named("FILE");
    words.AddFlag("-f,--force", options->force, "replace the output file if there is one");
    words.Add("--format", options->format, "html (a page to open in a browser), dot (for Graphviz) or svg")
        .OneOf({"html", "dot", "svg"})
        .Named("FORMAT");
    words.Add("--depth", options->depth, "dot and svg: draw so many levels below the root").Named("N");
    words.Add("--limit", options->limit, "dot and svg: draw so many nodes at most (1000)").Named("N");
    words.SetFooter(
        "The page needs nothing but a browser: it folds, searches, and filters by kind, tag and temporality, however "
        "many\n"
        "nodes there are. With B it shows both trees side by side and what differs.\n\n"
        "Exit code 0: written; 2: trouble.");
    return [options](Context& context) { return RunView(*options, context); };
}

}  // namespace KivTree
