#include <memory>
#include <string>

#include <KivBase/Utf.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivInspect/Key.h>
#include <KivInspect/ValueText.h>

#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

struct Options {
    std::string file;
    std::string key;
    std::string fallback;
    bool raw = false;
};

/// A node's value as it is printed: with --raw, a text without quotes and escapes.
std::string ValueOf(KivGenerics::Node* node, bool raw) {
    std::string text;
    if (const auto* const string = KivGenerics::node_cast<KivGenerics::String>(node); string != nullptr && raw) {
        return KivBase::ToUtf8(string->Get(), string->GetLength());
    }
    if (KivGenerics::IsCompositeType(node->GetType())) {
        return KivInspect::ShortText(node);
    }
    KivInspect::AppendValue(text, node);
    return text;
}

int RunGet(const Options& options, bool hasFallback, Context& context) {
    const Input input = context.Load(options.file);
    const KivInspect::FoundNode found = KivInspect::FindNode(input.tree.Get(), options.key, &input.names);
    if (found.node != nullptr) {
        context.Out().Write(ValueOf(found.node, options.raw) + (options.raw ? "" : "\n"));
    } else if (hasFallback) {
        context.Out().Write(options.fallback + (options.raw ? "" : "\n"));
    } else {
        Context::Note(options.file + ": " + found.problem + " kivtree ls shows what is there.");
        return ExitNo;
    }
    return ExitSuccess;
}

}  // namespace

Run DefineGet(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("FILE", options->file, "the tree; - is standard input").Required();
    words.Add("KEY", options->key, "the key of the node, such as 1:65:0:").Required();
    words.AddFlag("--raw", options->raw, "print a text as it is, and no line's end behind the value");
    const Option fallback =
        words.Add("--default", options->fallback, "what to print where there is no such node").Named("TEXT");
    words.SetFooter("Exit code 0: printed; 1: no such key; 2: trouble.");
    return [options, fallback](Context& context) { return RunGet(*options, fallback.IsGiven(), context); };
}

}  // namespace KivTree
