#pragma once

#include <functional>
#include <memory>
#include <string>

#include <KivInspect/Merge.h>

#include "kivtree/CommandLine.h"
#include "kivtree/Context.h"

namespace KivTree {

/// What the two verbs that merge have in common.
struct MergeWords {
    std::string ours;
    std::string theirs;
    std::string output;
    std::string form;
    bool force = false;
    bool favorOurs = false;
    bool favorTheirs = false;
};

/// Adds the options but the names of the trees.
void AddMergeOptions(CommandLine& words, const std::shared_ptr<MergeWords>& options);

/// Does a merge into `ours`, lists its conflicts on standard output, and writes the result.
using DoMerge = std::function<std::uint64_t(const KivInspect::MergeOptions&, const KivInspect::OnConflict&)>;
int RunMerge(const MergeWords& options, const Input& ours, const DoMerge& merge, Context& context);

}  // namespace KivTree
