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
    made.words = std::make_unique<CLI::App>(verb.summary, "kivtree " + std::string(verb.name));
    made.run = verb.define(*made.words);
    CLI::App& words = *made.words;
    words.set_help_flag("-h,--help", "print this help")->group("In every verb");
    words.add_option("--color", common.color, "colours: auto (on a terminal, unless NO_COLOR is set), always or never")
        ->check(CLI::IsMember({"auto", "always", "never"}))
        ->type_name("WHEN")
        ->group("In every verb");
    words.add_option("--names", common.names, "the dictionary of names; without this, FILE.names.json if there is one")
        ->type_name("FILE")
        ->group("In every verb");
    words.add_flag("--no-names", common.noNames, "show numbers, even if there is a dictionary")->group("In every verb");
    words.add_flag("--no-progress", common.noProgress, "show no progress bar")->group("In every verb");
    return made;
}

}  // namespace KivTree
