#include <algorithm>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "kivtree/Context.h"
#include "kivtree/Suggest.h"
#include "kivtree/Verbs.h"
#include "kivtree/system/System.h"

namespace {

using namespace KivTree;

/// The verbs and options in place of words that people try first.
std::vector<std::string> Translate(std::vector<std::string> words) {
    if (words.empty() || words[0] == "--help" || words[0] == "-h") {
        const bool all = words.size() > 1 && words[1] == "--all";
        return all ? std::vector<std::string>{"help", "--all"} : std::vector<std::string>{"help"};
    }
    if (words[0] == "--version") {
        words[0] = "version";
    }
    return words;
}

int RefuseVerb(const std::string& word) {
    std::vector<std::string> names;
    for (const Verb& verb : GetVerbs()) {
        names.emplace_back(verb.name);
    }
    Context::Note("there is no verb '" + word + "'." + Suggestion(word, names) + " kivtree help lists the verbs.");
    return ExitTrouble;
}

int RefuseWords(const CommandLine& words, const std::vector<std::string>& given, const std::string& problem) {
    std::vector<std::string> known;
    for (const OptionWords& option : words.GetOptions()) {
        if (option.name.rfind("--", 0) == 0) {
            known.push_back(option.name);
        }
    }
    std::string suggestion;
    for (const std::string& word : given) {
        const std::string name = word.substr(0, word.find('='));
        if (name.rfind("--", 0) == 0 && std::find(known.begin(), known.end(), name) == known.end()) {
            suggestion = Suggestion(name, known);
        }
    }
    Context::Note(problem + suggestion + " " + words.GetProgram() + " --help lists what it takes.");
    return ExitTrouble;
}

int RunVerb(const Verb& verb, const std::vector<std::string>& given) {
    CommonOptions common;
    const VerbWords made = MakeWords(verb, common);
    const CommandLine::Parsed parsed = made.words->Parse(given);
    if (!parsed.problem.empty()) {
        return RefuseWords(*made.words, given, parsed.problem);
    }
    Context context(common);
    int code = ExitSuccess;
    if (parsed.wantsHelp) {
        context.Out().Write(made.words->GetHelp());
    } else {
        code = made.run(context);
    }
    context.Out().Flush();
    return code;
}

int RunWords(const std::vector<std::string>& words) {
    const Verb* const verb = FindVerb(words[0]);
    if (verb == nullptr) {
        return RefuseVerb(words[0]);
    }
    return RunVerb(*verb, {words.begin() + 1, words.end()});
}

}  // namespace

int main(int argc, char** argv) {
    try {
        PrepareStandardStreams();
        return RunWords(Translate(GetArguments(argc, argv)));
    } catch (const std::bad_alloc&) {
        Context::Note("there is not enough memory. Free memory and try again.");
    } catch (const std::exception& exception) {
        Context::Note(exception.what());
    }
    return ExitTrouble;
}
