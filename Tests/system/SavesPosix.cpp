#include "system/Saves.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivStorage/SaveTree.h>
#include <gtest/gtest.h>
#include <stdlib.h>

using namespace KivGenerics;

Folder::Folder() {
    std::string name = std::filesystem::temp_directory_path() / "kiv-system-XXXXXX";
    EXPECT_NE(nullptr, ::mkdtemp(name.data()));
    path_ = name;
}

Folder::~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> Folder::GetNames() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}

KivBase::ReturnPtrI<Tree> TreeOf(int texts, const char16_t* word) {
    auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    auto* const map = static_cast<Map*>(root->NewNode(0, NodeTypeMap));
    for (int i = 0; i < texts; ++i) {
        static_cast<String*>(map->NewNode(i, NodeTypeString))->Set(word);
    }
    return tree;
}

Bytes SavedBytes(Tree& tree) {
    Bytes bytes;
    EXPECT_EQ("", KivStorage::SaveTreeToMemory(&tree, bytes).sentence);
    return bytes;
}

Bytes ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

void WriteFile(const std::filesystem::path& path, const Bytes& bytes) {
    std::ofstream file(path, std::ios::binary);
    std::copy(bytes.begin(), bytes.end(), std::ostreambuf_iterator<char>(file));
}
