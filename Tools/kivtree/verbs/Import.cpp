#include <memory>
#include <string>

#include <KivInspect/FileSource.h>
#include <KivInspect/ImportJson.h>

#include "kivtree/Forms.h"
#include "kivtree/OutputFile.h"
#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

struct Options {
    std::string from;
    std::string to;
    std::string form;
    bool force = false;
};

KivInspect::ImportResult ReadDocument(const std::string& file, const Context& context) {
    KivInspect::ImportResult imported;
    if (file == "-") {
        const std::string bytes = context.ReadStandardInput();
        KivInspect::MemorySource source(bytes);
        return KivInspect::ImportJson(source, "standard input");
    }
    ProgressBar bar = context.NewBar("reading " + file);
    const auto read = [&imported](KivInspect::Source& source, const std::string& place) {
        imported = KivInspect::ImportJson(source, place);
        return imported.result;
    };
    imported.result = KivInspect::ReadFile(std::filesystem::u8path(file), read, bar.OfBytes());
    return imported;
}

int RunImport(const Options& options, Context& context) {
    const KivInspect::Form form = ChooseForm(options.form, options.to);
    KivInspect::ImportResult imported = ReadDocument(options.from, context);
    if (!imported.result.Ok()) {
        throw Trouble(imported.result.sentence);
    }
    if (imported.replaced > 0) {
        Context::Note(std::to_string(imported.replaced) +
                      (imported.replaced == 1 ? " member has been" : " members have been") +
                      " replaced by a later one of the same name in their object.");
    }
    OutputFile out(context, options.to, options.force);
    WriteProved(imported.tree.Get(), form, out);
    out.Commit();
    if (options.to != "-") {
        OutputFile names(context, options.to + ".names.json", options.force);
        KivInspect::WriteNames(imported.names, names);
        names.Commit();
    }
    return ExitSuccess;
}

}  // namespace

Run DefineImport(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("JSON", options->from, "any JSON document; - is standard input").Required();
    words.Add("TO", options->to, "the tree that it becomes; - is standard output").Required();
    words.Add("--to", options->form, "the form: binary, text or json; without it, by the ending of TO")
        .OneOf({"binary", "text", "json"})
        .Named("FORM");
    words.AddFlag("-f,--force", options->force, "overwrite TO and its dictionary");
    words.SetFooter(
        "The names of members go into the dictionary TO.names.json, by which every verb shows and takes them.\n"
        "Exit code 0: imported; 2: trouble.");
    return [options](Context& context) { return RunImport(*options, context); };
}

}  // namespace KivTree
