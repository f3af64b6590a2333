#include <KivInspect/Merge.h>

#include "kivtree/MergeVerbs.h"
#include "kivtree/Verbs.h"

namespace KivTree {

Run DefineMerge3(CLI::App& words) {
    const auto options = std::make_shared<MergeWords>();
    const auto base = std::make_shared<std::string>();
    words.add_option("BASE", *base, "the tree that both come from")->required();
    words.add_option("A", options->ours, "our tree")->required();
    words.add_option("B", options->theirs, "their tree")->required();
    AddMergeOptions(words, options);
    return [options, base](Context& context) {
        const Input origin = context.Load(*base);
        const Input ours = context.Load(options->ours);
        const Input theirs = context.Load(options->theirs);
        return RunMerge(
            *options, ours,
            [&](const KivInspect::MergeOptions& merge, const KivInspect::OnConflict& onConflict) {
                return KivInspect::Merge3(origin.tree.Get(), ours.tree.Get(), theirs.tree.Get(), merge, onConflict);
            },
            context);
    };
}

}  // namespace KivTree
