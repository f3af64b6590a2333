#include <algorithm>
#include <memory>
#include <string>

#include <KivGenerics/ToText.h>
#include <KivInspect/Diff.h>
#include <KivInspect/JsonLine.h>
#include <KivInspect/ValueText.h>
#include <KivInspect/Walk.h>

#include "kivtree/Colors.h"
#include "kivtree/Verbs.h"
#include "kivtree/Words.h"

namespace KivTree {
namespace {

using KivGenerics::Node;
using KivInspect::Change;
using KivInspect::ChangeKind;

struct Options {
    std::string left;
    std::string right;
    bool quiet = false;
    bool stat = false;
    bool json = false;
    std::string limit;
    KivInspect::DiffOptions diff;
};

constexpr std::size_t Width = 100;

std::string NodesBelow(Node* node) {
    std::uint64_t count = 0;
    KivInspect::Walk walk(node);
    for (walk.Next(); walk.Next() != nullptr;) {
        ++count;
    }
    return std::to_string(count) + (count == 1 ? " node below" : " nodes below");
}

/// A node as one side of a change shows it.
std::string Side(Node* node, const KivInspect::Names* names) {
    std::string text = ToText(node->GetType());
    if (const std::string tag = KivInspect::TagText(node, names); !tag.empty()) {
        text += " #" + tag;
    }
    text += " " + KivInspect::TemporalityText(node) + " ";
    return text + (IsCompositeType(node->GetType()) ? NodesBelow(node) : KivInspect::ShortText(node, Width));
}

/// Only what differs, old and new.
std::string Changed(const Change& change, const KivInspect::Names* names) {
    if (change.differences.kind) {
        return Side(change.left, names) + " -> " + Side(change.right, names);
    }
    std::string text;
    const auto add = [&text](const char* what, const std::string& left, const std::string& right) {
        text += std::string(text.empty() ? "" : ", ") + what + left + " -> " + right;
    };
    if (change.differences.tag) {
        add("tag ", KivInspect::TagText(change.left, names), KivInspect::TagText(change.right, names));
    }
    if (change.differences.temporality) {
        add("", KivInspect::TemporalityText(change.left), KivInspect::TemporalityText(change.right));
    }
    if (change.differences.value) {
        add("", KivInspect::ShortText(change.left, Width), KivInspect::ShortText(change.right, Width));
    }
    return text;
}

void PrintText(const Change& change, const KivInspect::Names* names, Context& context) {
    const std::string key = change.key.empty() ? "(root)" : change.key;
    std::string line;
    switch (change.kind) {
        case ChangeKind::Added:
            line = Colored("+ " + key + " " + Side(change.right, names), "32", context.HasColors());
            break;
        case ChangeKind::Removed:
            line = Colored("- " + key + " " + Side(change.left, names), "31", context.HasColors());
            break;
        case ChangeKind::Changed:
            line = Colored("~ " + key + " " + Changed(change, names), "33", context.HasColors());
            break;
    }
    context.Out().Write(line + "\n");
}

std::string JsonOf(Node* node, const std::string& key, const KivInspect::Names* names) {
    KivInspect::JsonLine line;
    KivInspect::DescribeNode(line, node, key, names);
    std::string text = line.Take();
    text.pop_back();
    return text;
}

void PrintJson(const Change& change, const KivInspect::Names* names, Context& context) {
    KivInspect::JsonLine line;
    line.Add("change", change.kind == ChangeKind::Added     ? "added"
                       : change.kind == ChangeKind::Removed ? "removed"
                                                            : "changed");
    line.Add("key", change.key);
    if (change.left != nullptr) {
        line.AddRaw("old", JsonOf(change.left, change.key, names));
    }
    if (change.right != nullptr) {
        line.AddRaw("new", JsonOf(change.right, change.key, names));
    }
    context.Out().Write(line.Take());
}

void PrintTotals(const KivInspect::DiffTotals& totals, bool json, Context& context) {
    if (json) {
        KivInspect::JsonLine line;
        line.Add("added", static_cast<std::int64_t>(totals.added));
        line.Add("removed", static_cast<std::int64_t>(totals.removed));
        line.Add("changed", static_cast<std::int64_t>(totals.changed));
        line.Add("compared", static_cast<std::int64_t>(totals.compared));
        context.Out().Write(line.Take());
        return;
    }
    context.Out().Write(std::to_string(totals.added) + " added, " + std::to_string(totals.removed) + " removed, " +
                        std::to_string(totals.changed) + " changed, " + std::to_string(totals.compared) +
                        " compared\n");
}

int RunDiff(const Options& options, Context& context) {
    const Input left = context.Load(options.left);
    const Input right = context.Load(options.right);
    const KivInspect::Names& names = left.names.IsEmpty() ? right.names : left.names;
    KivInspect::DiffOptions diff = options.diff;
    diff.names = &names;
    if (!options.limit.empty()) {
        diff.limit = ParseTemporality(options.limit);
    }
    const auto totals = KivInspect::Diff(left.tree.Get(), right.tree.Get(), diff, [&](const Change& change) {
        if (options.json && !options.quiet && !options.stat) {
            PrintJson(change, &names, context);
        } else if (!options.quiet && !options.stat) {
            PrintText(change, &names, context);
        }
        return !options.quiet;
    });
    if (options.stat && !options.quiet) {
        PrintTotals(totals, options.json, context);
    }
    return totals.Any() ? ExitNo : ExitSuccess;
}

}  // namespace

Run DefineDiff(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("A", options->left, "the old tree; - is standard input").Required();
    words.Add("B", options->right, "the new tree; - is standard input").Required();
    words.AddFlag("-q,--quiet", options->quiet, "print nothing, and stop at the first change");
    words.AddFlag("--stat", options->stat, "print how many changes there are, not which");
    words.AddFlag("--json", options->json, "one JSON object a line");
    words.Add("--abs", options->diff.absolute, "doubles are the same up to this distance").NotNegative().Named("X");
    words.Add("--rel", options->diff.relative, "doubles are the same up to this part of the greater one")
        .NotNegative()
        .Named("X");
    words.AddFlag("--ignore-temporality", options->diff.ignoreTemporality, "own temporalities do not count");
    words.AddFlag("--ignore-tag", options->diff.ignoreTag, "tags do not count");
    words.Add("--limit", options->limit, "what is more transient does not count: persistent, transient or temporary")
        .OneOf({"persistent", "transient", "temporary"})
        .Named("TEMPORALITY");
    words.SetFooter(
        "A line begins with + for what only B has, with - for what only A has, with ~ for what differs; elements of "
        "vectors are "
        "compared by position.\nExit code 0: the same; 1: different; 2: trouble.");
    return [options](Context& context) { return RunDiff(*options, context); };
}

}  // namespace KivTree
