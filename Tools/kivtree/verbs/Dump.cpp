#include <memory>
#include <string>

#include <KivInspect/Dump.h>
#include <KivInspect/Key.h>

#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

struct Options {
    std::string file;
    std::string key;
    bool all = false;
    KivInspect::DumpOptions dump;
};

int RunDump(const Options& options, Context& context) {
    const Input input = context.Load(options.file);
    const KivInspect::FoundNode found = KivInspect::FindNode(input.tree.Get(), options.key, &input.names);
    if (found.node == nullptr && !(options.key.empty() && input.tree->IsEmpty())) {
        throw Trouble(options.file + ": " + found.problem + " kivtree ls shows what is there.");
    }
    KivInspect::DumpOptions dump = options.dump;
    dump.names = &input.names;
    if (options.all) {
        dump.children = KivInspect::DumpOptions::Everything;
        dump.width = 0;
    }
    if (KivInspect::WriteDump(found.node, context.Out(), dump)) {
        context.Out().Write("(abbreviated: --all shows everything)\n");
    }
    return ExitSuccess;
}

}  // namespace

Run DefineDump(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("FILE", options->file, "the tree; - is standard input").Required();
    words.Add("KEY", options->key, "the node to begin with; without it, the root");
    words.AddFlag("--all", options->all, "show every child and whole values");
    words.Add("--children", options->dump.children, "how many children of each node are shown (10)")
        .Positive()
        .Named("N");
    words.Add("--depth", options->dump.depth, "how many levels below the first node are shown")
        .NotNegative()
        .Named("N");
    words.SetFooter("Exit code 0: shown; 2: trouble.");
    return [options](Context& context) { return RunDump(*options, context); };
}

}  // namespace KivTree
