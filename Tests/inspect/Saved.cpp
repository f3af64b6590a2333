#include "inspect/Saved.h"

#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Vector.h>
#include <KivStorage/SaveTree.h>
#include <gtest/gtest.h>

namespace InspectTest {

using namespace KivGenerics;

std::vector<std::uint8_t> Save(Tree* tree) {
    KivStorage::SaveOptions options;
    options.withTransient = true;
    std::vector<std::uint8_t> bytes;
    const KivStorage::Result result = KivStorage::SaveTreeToMemory(tree, bytes, options);
    EXPECT_TRUE(result.Ok()) << result.sentence;
    return bytes;
}

KivBase::ReturnPtrI<Tree> LongTree(int count) {
    auto tree = CreateGenericTree(static_cast<EnumOrvObjectType>(0));
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    auto* const maps = static_cast<Map*>(root->NewNode(0, NodeTypeMap));
    for (int i = 0; i < count; ++i) {
        auto* const map = static_cast<Map*>(maps->NewNode(10 * i, NodeTypeMap, false, static_cast<SemanticTag>(28682)));
        const std::string digits = std::to_string(i);
        static_cast<String*>(map->NewNode(0, NodeTypeString))->Set(KivBase::WString(digits.begin(), digits.end()));
        static_cast<Integer*>(map->NewNode(1, NodeTypeInteger))->Set(i);
        static_cast<Integer64*>(map->NewNode(2, NodeTypeInteger64))->Set(std::int64_t{i} << 33);
    }
    auto* const numbers = static_cast<Vector*>(root->NewNode(1, NodeTypeVector));
    for (int i = 0; i < count; ++i) {
        static_cast<Integer*>(numbers->Add(NodeTypeInteger))->Set(7 * i);
    }
    return tree;
}

}  // namespace InspectTest
