#include <cstdint>
#include <memory>
#include <string>

#include <KivGenerics/ToText.h>
#include <KivInspect/Find.h>
#include <KivInspect/ValueText.h>

#include "kivtree/Colors.h"
#include "kivtree/Verbs.h"
#include "kivtree/Words.h"

namespace KivTree {
namespace {

struct Options {
    std::string file;
    std::string key;
    std::string kind;
    std::string tag;
    std::string temporality;
    std::string value;
    std::string regex;
    bool hasValue = false;
    bool ignoreCase = false;
    bool paths = false;
    bool count = false;
    std::uint64_t most = 0;
};

constexpr std::size_t Width = 100;

KivInspect::FindQuery ToQuery(const Options& options, const KivInspect::Names& names) {
    KivInspect::FindQuery query;
    if (!options.key.empty()) {
        query.key = KivInspect::KeyPattern(options.key);
    }
    if (!options.kind.empty()) {
        query.kind = ParseKind(options.kind);
    }
    if (!options.tag.empty()) {
        query.tag = ParseTag(options.tag, names);
    }
    if (!options.temporality.empty()) {
        query.temporality = ParseTemporality(options.temporality);
    }
    if (options.hasValue) {
        query.value = options.value;
    }
    if (!options.regex.empty()) {
        KivInspect::Regex::Compiled compiled = KivInspect::Regex::Compile(options.regex, options.ignoreCase);
        if (!compiled.problem.empty()) {
            throw Trouble("'" + options.regex + "' is no regular expression: " + compiled.problem + ".");
        }
        query.regex = std::move(compiled.regex);
    }
    return query;
}

std::string Line(KivGenerics::Node* node, const std::string& key, const KivInspect::Names* names, bool colors) {
    std::string line = key.empty() ? ":" : key;
    line += "  " + std::string(ToText(node->GetType()));
    if (const std::string tag = KivInspect::TagText(node, names); !tag.empty()) {
        line += " #" + tag;
    }
    line += " " + Colored(KivInspect::TemporalityText(node), node, colors);
    return line + "  " + KivInspect::ShortText(node, Width) + "\n";
}

int RunFind(const Options& options, Context& context) {
    const Input input = context.Load(options.file);
    std::uint64_t found = 0;
    KivInspect::Find(input.tree.Get(), ToQuery(options, input.names), &input.names,
                     [&](KivGenerics::Node* node, const KivInspect::Walk& walk) {
                         ++found;
                         if (!options.count) {
                             const std::string key = walk.GetKey(&input.names);
                             context.Out().Write(options.paths ? (key.empty() ? ":" : key) + "\n"
                                                               : Line(node, key, &input.names, context.HasColors()));
                         }
                         return found != options.most;
                     });
    if (options.count) {
        context.Out().Write(std::to_string(found) + "\n");
    }
    return found > 0 ? ExitSuccess : ExitNo;
}

}  // namespace

Run DefineFind(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("FILE", options->file, "the tree; - is standard input").Required();
    words.Add("-k,--key", options->key, "the key, with * for one step of any kind and ** for any number of steps")
        .Named("PATTERN");
    words.Add("--kind", options->kind, "the kind, Integer to Integer64").Named("KIND");
    words.Add("--tag", options->tag, "the tag of a map, a number or a name").Named("TAG");
    words.Add("--temporality", options->temporality, "the own temporality: default, persistent, transient, temporary")
        .Named("TEMPORALITY");
    const Option value =
        words.Add("--value", options->value, "the value, as get prints it, with or without quotes; an element of a set")
            .Named("TEXT");
    words.Add("-e,--regex", options->regex, "a regular expression that a text matches somewhere").Named("REGEX");
    words.AddFlag("-i,--ignore-case", options->ignoreCase, "a to z match A to Z in the regular expression");
    words.AddFlag("--paths", options->paths, "print keys alone");
    words.AddFlag("--count", options->count, "print how many there are");
    words.Add("-m,--max-count", options->most, "stop after so many; 0 finds all").Named("N");
    words.SetFooter("What is found is all that is asked for.\nExit code 0: found; 1: nothing found; 2: trouble.");
    return [options, value](Context& context) {
        options->hasValue = value.IsGiven();
        return RunFind(*options, context);
    };
}

}  // namespace KivTree
