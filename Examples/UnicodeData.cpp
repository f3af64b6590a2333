// Builds a tree from the text files of the Unicode Character Database and does with it all that the library offers:
// saves, loads, compares, clears, looks up, merges. Prints one page; ends with 0 when everything is as it should be, 1
// when anything is not, 2 when the data is missing or the command line is wrong.

#include <exception>
#include <filesystem>
#include <iostream>
#include <random>
#include <string>
#include <utility>

#include <KivBase/Utf.h>
#include <KivGenerics/Children.h>
#include <KivGenerics/Composite.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ToText.h>
#include <KivGenerics/Tree.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>
#include <KivStorage/SizeArchive.h>
#include <KivStorage/UnsavedParts.h>

#include "unicode/BuildTree.h"
#include "unicode/Database.h"
#include "unicode/NamesFile.h"
#include "unicode/Recheck.h"
#include "unicode/Report.h"
#include "unicode/Schema.h"

namespace {

using namespace KivGenerics;
using namespace UnicodeExample;
using TreeHandle = KivBase::ReturnPtrI<Tree>;

constexpr int OlderVersion = 600;
const char* const PartNames[PartCount] = {"code points", "categories", "scripts",  "blocks",
                                          "files",       "totals",     "initials", "notes"};

const char* const Usage =
    "usage: UnicodeData [--output FILE] [DIRECTORY]\n"
    "  DIRECTORY      holds UnicodeData.txt, Blocks.txt, Scripts.txt and DerivedAge.txt (/usr/share/unicode)\n"
    "  --output FILE  where the tree is saved and kept (a temporary file), with the names of its parts in "
    "FILE.names.json\n";

struct Options {
    std::filesystem::path directory = "/usr/share/unicode";
    std::filesystem::path output;
};

/// A directory of its own, gone with the object.
class TemporaryDirectory {
public:
    TemporaryDirectory()
        : path_(std::filesystem::temp_directory_path() / ("UnicodeData-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directory(path_);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& GetPath() const { return path_; }

private:
    std::filesystem::path path_;
};

Node* Find(const TreeHandle& tree, const std::string& key) {
    return tree->FindNodeByKey(KivBase::FromUtf8(key));
}

void ReportSizes(Report& report, const Database& database, const TreeHandle& tree) {
    std::int64_t bytes = 0;
    for (const SourceFile& file : database.files) {
        bytes += file.bytes;
    }
    report.BeginSection("Unicode " + database.version + ": " + std::to_string(database.files.size()) + " files, " +
                        FormatNumber(bytes) + " bytes, from " + database.directory.string());
    const NodeCounts counts = CountNodes(tree->GetRoot());
    report.AddCounts(counts);
    report.Add("nodes in all", FormatNumber(counts[0]));
    for (std::size_t type = 1; type < counts.size(); ++type) {
        report.Require(counts[type] > 0, std::string("no node of the kind ") + ToText(static_cast<NodeType>(type)));
    }
    const auto inUse = static_cast<std::int64_t>(tree->BufferQueryB());
    report.Add("bytes in memory", FormatNumber(inUse) + " in use, " +
                                      FormatNumber(static_cast<std::int64_t>(tree->BufferQueryA())) + " reserved, " +
                                      std::to_string(inUse / counts[0]) + " a node");
}

/// Saves the tree and loads it again as another one; empty after a failure, which the report names.
TreeHandle SaveAndLoad(Report& report, const TreeHandle& tree, const std::filesystem::path& file) {
    const auto unsaved =
        report.Run("find what a save would lose", [&] { return KivStorage::FindUnsavedParts(tree.Get()); });
    report.Require(unsaved.empty(), "a save would lose " + std::to_string(unsaved.size()) + " parts");
    const KivStorage::Result saved = report.Run("save", [&] { return KivStorage::SaveTree(tree.Get(), file); });
    report.Require(saved.Ok(), saved.sentence);
    if (!saved.Ok()) {
        return TreeHandle();
    }
    const KivStorage::PredictedSize predicted = KivStorage::PredictSize(tree.Get());
    const std::uintmax_t size = std::filesystem::file_size(file);
    report.Add("bytes on disk", FormatNumber(static_cast<std::int64_t>(size)) + ", as predicted");
    report.Require(predicted.result.Ok() && predicted.bytes == size, "the file's size was predicted differently");
    KivStorage::LoadResult loaded = report.Run("load", [&] { return KivStorage::LoadTree(file); });
    report.Require(loaded.result.Ok(), loaded.result.sentence);
    return std::move(loaded.tree);
}

/// A save leaves out what is transient or temporary. So the loaded tree equals the built one as far as persistent nodes
/// go, and in everything as soon as the built one has been cleared of the rest.
void CompareLoaded(Report& report, const TreeHandle& built, const TreeHandle& loaded) {
    report.BeginSection("Saved and loaded");
    const auto compare = [&](EnumOrvGenericsTemporality t) {
        return loaded->GetRoot()->Compare(built->GetRoot(), t, true);
    };
    const int persistent = report.Run("compare with the loaded tree", [&] { return compare(TemporalityPersistent); });
    report.Add("compared, persistent nodes", std::to_string(persistent));
    report.Require(persistent == 0, "the loaded tree differs");
    const int all = compare(TemporalityTemporary);
    report.Add("compared, all nodes", std::to_string(all) + "  (caches and notes are not saved)");
    report.Require(all != 0, "caches or notes were saved");

    const std::int64_t before = CountNodes(built->GetRoot())[0];
    report.Run("clear what is not persistent", [&] { built->ClearTemporaryNodes(); });
    report.Add("cleared of caches and notes", FormatNumber(before - CountNodes(built->GetRoot())[0]) + " nodes");
    const int cleared = compare(TemporalityTemporary);
    report.Add("compared again, all nodes", std::to_string(cleared));
    report.Require(cleared == 0, "the cleared tree differs from the loaded one");
}

void LookUp(Report& report, const TreeHandle& tree) {
    const char* const fieldNames[] = {"",          "category ",      "age ",      "combining class ", "decomposition ",
                                      "of kind ",  "numeric value ", "mirrored ", "uppercase ",       "lowercase ",
                                      "titlecase "};
    report.BeginSection("Looked up by key");
    for (const char* const key : {"0:65:", "0:197:", "0:778:", "0:3891:", "0:13317:"}) {
        std::string fields;
        for (Node* field : Children(Find(tree, key))) {
            fields += (fields.empty() ? "" : ", ") + (fieldNames[field->GetIndex()] + ToText(field));
        }
        report.Add(key, fields);
        report.Require(!fields.empty(), std::string("nothing found at ") + key);
    }
    const char* const unassigned = "0:888:";
    report.Add(unassigned, ToText(Find(tree, unassigned)));
    report.Require(Find(tree, unassigned) == nullptr, "U+0378 is not assigned, but the tree has it");
    if (const Node* const letter = Find(tree, "0:65:")) {
        KivBase::WString key;
        letter->GetKey(key);
        report.Require(KivBase::ToUtf8(key) == "0:65:", "the key of U+0041 is " + KivBase::ToUtf8(key));
    }
}

/// Merges a part of the newer version into the older one's. Sets and texts that differ conflict and stay as they are, a
/// vector is merged by position: for such parts a host decides itself. Here it takes the newer ones.
void MergePart(Report& report, Map* olderRoot, Node* newerPart) {
    const int index = newerPart->GetIndex();
    Node* const part = olderRoot->Get(index);
    const int difference = part->Compare(newerPart, TemporalityPersistent, false);
    const bool merged = part->MergeWith(newerPart, false);
    if (!merged) {
        olderRoot->ReplaceWithCopy(index, newerPart);
    }
    const char* const verdict = !merged           ? ", conflicts: replaced by a copy of the newer"
                                : difference != 0 ? ", no conflict: what was missing is copied in"
                                                  : ", no conflict";
    report.Add(PartNames[index], "compared " + FormatNumber(difference) + verdict);
    report.Require(merged || index != PartCodePoints, "the code points conflict");
}

void MergeVersions(Report& report, const Database& database, const TreeHandle& newer) {
    const TreeHandle older = report.Run("build the older tree", [&] { return BuildTree(database, OlderVersion); });
    report.BeginSection("Unicode " + FormatAge(OlderVersion) + ", compared and merged with " + database.version);
    auto* const olderRoot = node_cast<Map>(older->GetRoot());
    auto* const newerRoot = node_cast<Map>(newer->GetRoot());
    const auto countCodePoints = [olderRoot] {
        return FormatNumber(static_cast<Map*>(olderRoot->Get(PartCodePoints))->GetSize(TemporalityTemporary));
    };
    const std::string before = countCodePoints();
    olderRoot->Compare(newerRoot, TemporalityPersistent, true);  // brings the temporalities of both up to date
    report.Run("compare and merge the versions", [&] {
        for (Node* part : Children(newerRoot)) {
            MergePart(report, olderRoot, part);
        }
    });
    const int difference = olderRoot->Compare(newerRoot, TemporalityPersistent, true);
    report.Add("compared afterwards",
               std::to_string(difference) + ", code points: " + before + ", then " + countCodePoints());
    report.Require(difference == 0, "the older tree still differs after merging");
}

void CheckValues(Report& report, const TreeHandle& tree, const std::filesystem::path& directory) {
    const Recheck recheck =
        report.Run("read the files again and check", [&] { return CheckAgainstFiles(*tree, directory); });
    report.BeginSection("Checked against the files, read again by another parser");
    report.Add("values checked",
               FormatNumber(recheck.values) + " of " + FormatNumber(recheck.codePoints) + " code points");
    report.Add("values that differ", std::to_string(recheck.differences.size()));
    for (std::size_t i = 0; i < recheck.differences.size() && i < 10; ++i) {
        report.Require(false, recheck.differences[i]);
    }
    report.Require(recheck.values > 0 && recheck.differences.empty(), "values differ from the files");
}

void DoEverything(Report& report, const Options& options, const std::filesystem::path& file) {
    const Database database = report.Run("read the text files", [&] { return ReadDatabase(options.directory); });
    TreeHandle built = report.Run("build the tree", [&] { return BuildTree(database); });
    report.Run("update the temporalities", [&] { built->UpdateDerivedTemporality(); });
    ReportSizes(report, database, built);
    const TreeHandle loaded = SaveAndLoad(report, built, file);
    if (!loaded) {
        return;
    }
    CompareLoaded(report, built, loaded);
    report.Run("let the built tree go", [&] { built.Reset(); });
    LookUp(report, loaded);
    MergeVersions(report, database, loaded);
    CheckValues(report, loaded, options.directory);
}

int Run(const Options& options) {
    Report report;
    if (!options.output.empty()) {
        DoEverything(report, options, options.output);
        if (!report.HasFailed()) {
            WriteNamesBeside(options.output);
        }
    } else {
        const TemporaryDirectory directory;
        DoEverything(report, options, directory.GetPath() / "unicode.kiv");
    }
    report.BeginSection("Time of each step");
    report.AddSteps();
    std::cout << report.GetText() << std::flush;
    if (!std::cout) {
        std::cerr << "UnicodeData: the page could not be written\n";
        return 1;
    }
    return report.HasFailed() ? 1 : 0;
}

/// False for a wrong command line, which it has named then.
bool ParseArguments(int count, char** arguments, Options& options) {
    bool hasDirectory = false;
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        if (argument == "--output" && i + 1 < count) {
            options.output = arguments[++i];
        } else if (argument == "--output") {
            std::cerr << "UnicodeData: --output needs a file\n" << Usage;
            return false;
        } else if (argument.empty() || argument[0] == '-' || hasDirectory) {
            std::cerr << "UnicodeData: \"" << argument << "\" is not understood\n" << Usage;
            return false;
        } else {
            options.directory = argument;
            hasDirectory = true;
        }
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::string(argv[1]) == "--help") {
        std::cout << Usage;
        return 0;
    }
    try {
        Options options;
        return ParseArguments(argc, argv, options) ? Run(options) : 2;
    } catch (const DataError& error) {
        std::cerr << "UnicodeData: " << error.what() << "\n";
        return 2;
    } catch (const std::filesystem::filesystem_error& error) {
        std::cerr << "UnicodeData: " << error.what() << ": name a place for the saved tree with --output\n";
        return 1;
    } catch (const std::exception& error) {
        std::cerr << "UnicodeData: " << error.what() << "\n";
        return 1;
    }
}
