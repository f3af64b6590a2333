#include <memory>
#include <string>
#include <vector>

#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

/// Of a description the first line, without what a shell could take for its own.
std::string Plain(const std::string& text) {
    std::string plain;
    for (const char c : text.substr(0, text.find('\n'))) {
        plain += c == '\'' || c == '[' || c == ']' || c == '"' || c == '`' || c == '$' || c == '\\' ? ' ' : c;
    }
    return plain;
}

std::vector<OptionWords> OptionsOf(const Verb& verb) {
    CommonOptions common;
    std::vector<OptionWords> options = MakeWords(verb, common).words->GetOptions();
    for (OptionWords& option : options) {
        option.description = Plain(option.description);
    }
    return options;
}

std::string VerbNames() {
    std::string names;
    for (const Verb& verb : GetVerbs()) {
        names += (names.empty() ? "" : " ") + std::string(verb.name);
    }
    return names;
}

std::string ForBash() {
    std::string text =
        "# Completion of kivtree for bash: source it, or put it where bash-completion looks.\n"
        "_kivtree() {\n"
        "    local word=${COMP_WORDS[COMP_CWORD]} options=\n"
        "    if [ \"$COMP_CWORD\" = 1 ]; then\n"
        "        COMPREPLY=($(compgen -W '" +
        VerbNames() +
        "' -- \"$word\"))\n"
        "        return\n"
        "    fi\n"
        "    case ${COMP_WORDS[1]} in\n";
    for (const Verb& verb : GetVerbs()) {
        text += "        " + std::string(verb.name) + ") options='";
        for (const OptionWords& option : OptionsOf(verb)) {
            text += (text.back() == '\'' ? "" : " ") + option.name;
        }
        text += "' ;;\n";
    }
    return text +
           "    esac\n"
           "    case ${COMP_WORDS[1]} in\n"
           "        help) COMPREPLY=($(compgen -W '" +
           VerbNames() +
           "' -- \"$word\")) ;;\n"
           "        completion) COMPREPLY=($(compgen -W 'bash zsh fish' -- \"$word\")) ;;\n"
           "    esac\n"
           "    case $word in\n"
           "        -*) COMPREPLY=($(compgen -W \"$options\" -- \"$word\")) ;;\n"
           "        *) [ ${#COMPREPLY[@]} = 0 ] && COMPREPLY=($(compgen -f -- \"$word\")) ;;\n"
           "    esac\n"
           "}\n"
           "complete -o filenames -F _kivtree kivtree\n";
}

std::string ForZsh() {
    std::string text =
        "#compdef kivtree\n"
        "# Completion of kivtree for zsh: put it as _kivtree into a folder of $fpath.\n"
        "_kivtree() {\n"
        "    if (( CURRENT == 2 )); then\n"
        "        local -a verbs=(\n";
    for (const Verb& verb : GetVerbs()) {
        text += "            '" + std::string(verb.name) + ":" + Plain(verb.summary) + "'\n";
    }
    text +=
        "        )\n"
        "        _describe verb verbs\n"
        "        return\n"
        "    fi\n"
        "    local verb=$words[2]\n"
        "    shift words\n"
        "    (( CURRENT-- ))\n"
        "    case $verb in\n";
    for (const Verb& verb : GetVerbs()) {
        text += "        " + std::string(verb.name) + ") _arguments";
        for (const OptionWords& option : OptionsOf(verb)) {
            text += " \\\n            '" + option.name + "[" + option.description + "]" +
                    (option.takesValue ? ":value:_files" : "") + "'";
        }
        text += " \\\n            '*:file:_files' ;;\n";
    }
    return text +
           "    esac\n"
           "}\n"
           "_kivtree \"$@\"\n";
}

std::string ForFish() {
    std::string text = "# Completion of kivtree for fish: put it as kivtree.fish into ~/.config/fish/completions.\n";
    for (const Verb& verb : GetVerbs()) {
        text += "complete -c kivtree -n __fish_use_subcommand -f -a " + std::string(verb.name) + " -d '" +
                Plain(verb.summary) + "'\n";
    }
    for (const Verb& verb : GetVerbs()) {
        for (const OptionWords& option : OptionsOf(verb)) {
            const bool isLong = option.name.compare(0, 2, "--") == 0;
            text += "complete -c kivtree -n '__fish_seen_subcommand_from " + std::string(verb.name) + "' " +
                    (isLong ? "-l " + option.name.substr(2) : "-s " + option.name.substr(1)) +
                    (option.takesValue ? " -r" : "") + " -d '" + option.description + "'\n";
        }
    }
    return text + "complete -c kivtree -n '__fish_seen_subcommand_from help' -f -a '" + VerbNames() +
           "'\n"
           "complete -c kivtree -n '__fish_seen_subcommand_from completion' -f -a 'bash zsh fish'\n";
}

}  // namespace

Run DefineCompletion(CommandLine& words) {
    const auto shell = std::make_shared<std::string>();
    words.Add("SHELL", *shell, "bash, zsh or fish").Required().OneOf({"bash", "zsh", "fish"});
    words.SetFooter(
        "Prints a script that completes verbs, options and files. For bash, for example:\n"
        "  source <(kivtree completion bash)\n\n"
        "Exit code 0: printed; 2: trouble.");
    return [shell](Context& context) {
        context.Out().Write(*shell == "bash" ? ForBash() : *shell == "zsh" ? ForZsh() : ForFish());
        return ExitSuccess;
    };
}

}  // namespace KivTree
