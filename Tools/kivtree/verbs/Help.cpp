#include <memory>
#include <string>

#include "kivtree/Suggest.h"
#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

struct Options {
    std::string verb;
    bool all = false;
};

std::string Overview() {
    std::string text =
        "Looks into saved trees: shows, finds, compares, merges, checks, converts and draws them.\n"
        "\n"
        "Usage: kivtree VERB [OPTIONS] FILE...\n"
        "\n"
        "Verbs:\n";
    for (const Verb& verb : GetVerbs()) {
        text +=
            "  " + std::string(verb.name) + std::string(14 - std::string(verb.name).size(), ' ') + verb.summary + "\n";
    }
    return text +
           "\n"
           "FILE may be in any form that kivtree knows; - is standard input. No input is ever changed.\n"
           "Exit code 0 is success, 2 trouble, 1 what the verb says.\n"
           "\n"
           "kivtree help VERB tells what a verb takes.\n";
}

std::string HelpOf(const Verb& verb) {
    CommonOptions common;
    return MakeWords(verb, common).words->GetHelp();
}

std::string HelpOfAll() {
    std::string text = Overview();
    for (const Verb& verb : GetVerbs()) {
        text += "\nkivtree " + std::string(verb.name) + "\n" + HelpOf(verb);
    }
    return text;
}

std::string HelpFor(const Options& options) {
    if (options.all) {
        return HelpOfAll();
    }
    if (options.verb.empty()) {
        return Overview();
    }
    const Verb* const verb = FindVerb(options.verb);
    if (verb == nullptr) {
        std::vector<std::string> names;
        for (const Verb& each : GetVerbs()) {
            names.emplace_back(each.name);
        }
        throw Trouble("there is no verb '" + options.verb + "'." + Suggestion(options.verb, names) +
                      " kivtree help lists the verbs.");
    }
    return HelpOf(*verb);
}

}  // namespace

Run DefineHelp(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("VERB", options->verb, "the verb to explain");
    words.AddFlag("--all", options->all, "explain all of them");
    return [options](Context& context) {
        context.Out().Write(HelpFor(*options));
        return ExitSuccess;
    };
}

}  // namespace KivTree
