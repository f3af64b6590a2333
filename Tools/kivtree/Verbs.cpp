#include "kivtree/Verbs.h"

#include <algorithm>

namespace KivTree {

const std::vector<Verb>& GetVerbs() {
    static const std::vector<Verb> verbs = {
        {"info", "tell what a file is and what is in it", DefineInfo},
        {"ls", "list the children of a node", DefineLs},
        {"dump", "show a tree to read", DefineDump},
        {"get", "print one value", DefineGet},
        {"find", "find nodes by key, kind, tag, temporality or value", DefineFind},
        {"diff", "show what differs between two trees", DefineDiff},
        {"merge", "bring into a tree what another one has and it lacks", DefineMerge},
        {"merge3", "merge what two trees have changed since a third one", DefineMerge3},
        {"check", "find damage, what a save would lose, and limits", DefineCheck},
        {"convert", "write a tree in another form", DefineConvert},
        {"import", "make a tree of any JSON document", DefineImport},
        {"stats", "tell where the bytes are", DefineStats},
        {"view", "make a page or a drawing of a tree, or of two", DefineView},
        {"annotate", "show a file byte by byte", DefineAnnotate},
        {"salvage", "read what is left of a damaged file", DefineSalvage},
        {"help", "print help on a verb, or on all", DefineHelp},
        {"version", "print the version", DefineVersion},
        {"completion", "print a completion script for a shell", DefineCompletion},
    };
    return verbs;
}

const Verb* FindVerb(const std::string& name) {
    const auto& verbs = GetVerbs();
    const auto found = std::find_if(verbs.begin(), verbs.end(), [&](const Verb& verb) { return verb.name == name; });
    return found != verbs.end() ? &*found : nullptr;
}

VerbWords MakeWords(const Verb& verb, CommonOptions& common) {
    VerbWords made;
    made.words = std::make_unique<CommandLine>("kivtree " + std::string(verb.name), verb.summary);
    made.run = verb.define(*made.words);
    CommandLine& words = *made.words;
    words.AddHelp("-h,--help", "print this help").Group("In every verb");
    words.Add("--color", common.color, "colours: auto (on a terminal, unless NO_COLOR is set), always or never")
        .OneOf({"auto", "always", "never"})
        .Named("WHEN")
        .Group("In every verb");
    words.Add("--names", common.names, "the dictionary of names; without this, FILE.names.json if there is one")
        .Named("FILE")
        .Group("In every verb");
    words.AddFlag("--no-names", common.noNames, "show numbers, even if there is a dictionary").Group("In every verb");
    words.AddFlag("--no-progress", common.noProgress, "show no progress bar").Group("In every verb");
    return made;
}

}  // namespace KivTree
