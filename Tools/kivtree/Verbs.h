#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kivtree/CommandLine.h"
#include "kivtree/Context.h"

namespace KivTree {

/// What a verb does once its words are understood; returns the exit code.
using Run = std::function<int(Context& context)>;

/// One row of the table of verbs.
struct Verb {
    const char* name;
    const char* summary;  ///< what it does, for the list of verbs
    /// Adds the verb's options to `words` and returns what runs when they are parsed. Options live in what is returned.
    Run (*define)(CommandLine& words);
};

/// All verbs, in the order in which help lists them.
const std::vector<Verb>& GetVerbs();
/// Null where there is none of that name.
const Verb* FindVerb(const std::string& name);

/// A verb's words: its own options, and those that every verb has, which are kept in `common`.
struct VerbWords {
    std::unique_ptr<CommandLine> words;
    Run run;
};
VerbWords MakeWords(const Verb& verb, CommonOptions& common);

// Each is defined in verbs/NAME.cpp.
Run DefineAnnotate(CommandLine& words);
Run DefineCheck(CommandLine& words);
Run DefineCompletion(CommandLine& words);
Run DefineConvert(CommandLine& words);
Run DefineDiff(CommandLine& words);
Run DefineDump(CommandLine& words);
Run DefineFind(CommandLine& words);
Run DefineGet(CommandLine& words);
Run DefineHelp(CommandLine& words);
Run DefineImport(CommandLine& words);
Run DefineInfo(CommandLine& words);
Run DefineLs(CommandLine& words);
Run DefineMerge(CommandLine& words);
Run DefineMerge3(CommandLine& words);
Run DefineSalvage(CommandLine& words);
Run DefineStats(CommandLine& words);
Run DefineVersion(CommandLine& words);
Run DefineView(CommandLine& words);

}  // namespace KivTree
