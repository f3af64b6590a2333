#include <KivInspect/Merge.h>

#include "kivtree/MergeVerbs.h"
#include "kivtree/Verbs.h"

namespace KivTree {

Run DefineMerge3(CommandLine& words) {
    const auto options = std::make_shared<MergeWords>();
    const auto base = std::make_shared<std::string>();
    words.Add("BASE", *base, "the tree that both come from").Required();
    words.Add("A", options->ours, "our tree").Required();
    words.Add("B", options->theirs, "their tree").Required();
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
