#include <KivInspect/Merge.h>

#include "kivtree/MergeVerbs.h"
#include "kivtree/Verbs.h"

namespace KivTree {

Run DefineMerge(CommandLine& words) {
    const auto options = std::make_shared<MergeWords>();
    words.Add("A", options->ours, "the tree that is merged into").Required();
    words.Add("B", options->theirs, "the tree whose nodes A lacks are taken").Required();
    AddMergeOptions(words, options);
    return [options](Context& context) {
        const Input ours = context.Load(options->ours);
        const Input theirs = context.Load(options->theirs);
        return RunMerge(
            *options, ours,
            [&](const KivInspect::MergeOptions& merge, const KivInspect::OnConflict& onConflict) {
                return KivInspect::Merge(ours.tree.Get(), theirs.tree.Get(), merge, onConflict);
            },
            context);
    };
}

}  // namespace KivTree
