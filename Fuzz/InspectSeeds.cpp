// Makes the first inputs of the targets that read for the tools: `inspect_seeds FOLDER` writes FOLDER/<target>/seed-<n>.

#include <cstdio>
#include <string>

#include <KivStorage/SaveTree.h>

#include "persistence/RandomTrees.h"
#include "storage/Support.h"
#include "targets/inspect/FormUse.h"

namespace {

namespace fs = std::filesystem;

void Write(const fs::path& folder, const char* target, std::uint32_t seed, const std::string& text) {
    fs::create_directories(folder / target);
    StorageTest::WriteFile(folder / target / ("seed-" + std::to_string(seed)),
                           StorageTest::Bytes(text.begin(), text.end()));
}

std::string Save(KivGenerics::Tree& tree) {
    StorageTest::Bytes file;
    KivStorage::SaveOptions options;
    options.withTransient = true;
    options.saveDespiteLosses = true;
    KivStorage::SaveTreeToMemory(&tree, file, options);
    return {file.begin(), file.end()};
}

void WriteSeeds(const fs::path& folder, std::uint32_t seed, KivGenerics::Tree& tree) {
    Write(folder, "text", seed, KivFuzz::TextOf(tree));
    Write(folder, "json", seed, KivFuzz::JsonOf(tree));
    Write(folder, "scan", seed, Save(tree));
}

const char* const kDocuments[] = {
    R"({"name": "Ada", "year": 1815, "list": ["a", 1, null, true], "numbers": [1, 4294967296, -0.0, 1e400]})",
    R"([123456789012345678901, "a\u0000b\ud834\udd1e", {"a": 1, "a": 2}, [], {}, [[[1]]]])",
    R"("alone")",
    R"({"names": 1, "tags": {"4108": {"name": "group", "indexes": {"0": "name", "1": "a:b\\"}}, "-1": {}}})",
    R"({"names": 1, "tags": {}})",
};

const char* const kQueries[] = {
    "^K.se$\n**\n0:3:\nKäse",
    "(a|b)*c{2,3}[^x-z\\d]\n0:*\n0:a\\:b\\\\:\naabcc!",
    "\\u0041+?\\w\\W\\s\n*:**:6:*\n0:6:1\nA b",
    "(((((a*)*)*)*)*)*$\n**:**:1\n:\naaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab",
    ".{0,200}\n0:\\17:\n0:\\17\n",
};

template <std::size_t Count>
void WriteTexts(const fs::path& folder, const char* target, const char* const (&texts)[Count]) {
    for (std::uint32_t i = 0; i < Count; ++i) {
        Write(folder, target, i, texts[i]);
    }
}

}  // namespace

int main(int count, char** names) {
    if (count != 2) {
        std::fprintf(stderr, "usage: inspect_seeds FOLDER\n");
        return 2;
    }
    WriteSeeds(names[1], 0, *StorageTest::TreeOfEveryKind());
    for (std::uint32_t seed = 1; seed < 16; ++seed) {
        WriteSeeds(names[1], seed, *KivGenerics::Testing::NewRandomTree(seed, 3));
    }
    WriteTexts(names[1], "import", kDocuments);
    WriteTexts(names[1], "query", kQueries);
    return 0;
}
