#pragma once

#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "kivtree/Context.h"

namespace KivTree {

/// What a verb does once its words are understood; returns the exit code.
using Run = std::function<int(Context& context)>;

/// One row of the table of verbs.
struct Verb {
    const char* name;
    const char* summary;  ///< what it does, for the list of verbs
    /// Adds the verb's options to `words` and returns what runs when they are parsed. Options live in what is returned.
    Run (*define)(CLI::App& words);
};

/// All verbs, in the order in which help lists them.
const std::vector<Verb>& GetVerbs();
/// Null where there is none of that name.
const Verb* FindVerb(const std::string& name);

/// A verb's words: its own options, and those that every verb has, which are kept in `common`.
struct VerbWords {
    std::unique_ptr<CLI::App> words;
    Run run;
};
VerbWords MakeWords(const Verb& verb, CommonOptions& common);

// Each is defined in verbs/NAME.cpp.
Run DefineAnnotate(CLI::App& words);
Run DefineCheck(CLI::App& words);
Run DefineCompletion(CLI::App& words);
Run DefineConvert(CLI::App& words);
Run DefineDiff(CLI::App& words);
Run DefineDump(CLI::App& words);
Run DefineFind(CLI::App& words);
Run DefineGet(CLI::App& words);
Run DefineHelp(CLI::App& words);
Run DefineImport(CLI::App& words);
Run DefineInfo(CLI::App& words);
Run DefineLs(CLI::App& words);
Run DefineMerge(CLI::App& words);
Run DefineMerge3(CLI::App& words);
Run DefineSalvage(CLI::App& words);
Run DefineStats(CLI::App& words);
Run DefineVersion(CLI::App& words);
Run DefineView(CLI::App& words);

}  // namespace KivTree
