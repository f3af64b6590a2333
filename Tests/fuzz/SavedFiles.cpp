#include "fuzz/SavedFiles.h"

#include <KivGenerics/Integer.h>
#include <KivGenerics/String.h>
#include <KivStorage/SaveTree.h>

#include "persistence/RandomTrees.h"

using namespace KivGenerics;
using StorageTest::Bytes;

namespace {

Bytes Save(Tree& tree) {
    Bytes bytes;
    KivStorage::SaveOptions options;
    options.withTransient = true;
    options.saveDespiteLosses = true;
    KivStorage::SaveTreeToMemory(&tree, bytes, options);
    return bytes;
}

Bytes FileWithText(std::size_t units) {
    const auto tree = StorageTest::NewTree();
    auto* const map = static_cast<Map*>(StorageTest::NewRootMap(tree.Get())->NewNode(0, NodeTypeMap));
    static_cast<String*>(map->NewNode(0, NodeTypeString))->Set(KivBase::WString(units, u'x').c_str());
    // An odd number of bytes, which texts alone cannot make even.
    map->NewNode(1, NodeTypeInteger);
    return Save(*tree);
}

}  // namespace

std::vector<Bytes> MakeSavedFiles(std::size_t bytes) {
    std::vector<Bytes> files;
    std::size_t all = 0;
    for (std::uint32_t seed = 1; all < bytes; ++seed) {
        files.push_back(Save(*Testing::NewRandomTree(seed, 3)));
        all += files.back().size();
    }
    return files;
}

Bytes MakeFileOf300Bytes() {
    const std::size_t withoutText = FileWithText(0).size();
    return FileWithText((300 - withoutText) / 2);
}

Bytes MakeFileOfThreeBlocks() {
    return FileWithText(75000);
}
