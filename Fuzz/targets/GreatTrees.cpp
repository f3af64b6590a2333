#include "targets/GreatTrees.h"

#include <KivGenerics/Composite.h>
#include <KivGenerics/ResultCode.h>
#include <KivGenerics/String.h>
#include <KivStorage/SaveTree.h>

#include "targets/Growing.h"

namespace KivFuzz {
namespace {

using namespace KivGenerics;

void PutText(Composite& parent, std::size_t units) {
    static_cast<String*>(parent.NewNode(0, NodeTypeString))->Set(KivBase::WString(units, u'x'));
}

void PutChildren(Composite& parent, int count) {
    for (int index = 0; index < count; ++index) {
        parent.NewNode(index, NodeTypeBoolean);
    }
}

void Nest(Composite* composite, int levels) {
    for (int level = 0; level < levels; ++level) {
        composite->NewNode(1, NodeTypeInteger);
        composite = static_cast<Composite*>(composite->NewNode(0, NodeTypeMap));
    }
}

/// Builds what a few bytes cannot say.
void GrowGreatTree(Tree& tree, std::uint8_t choice) {
    constexpr int kMoreThanTwoBytesCount = 33'000;
    auto* const root = static_cast<Composite*>(tree.NewRoot(NodeTypeMap));
    const NodeType type = choice % 4 == 0 ? NodeTypeVector : NodeTypeMap;
    auto* const composite = static_cast<Composite*>(root->NewNode(0, type));
    switch (choice % 4) {
        case 0:
        case 1: PutChildren(*composite, kMoreThanTwoBytesCount); break;
        case 2: PutText(*composite, MaxStringUnits + 1); break;
        default: Nest(composite, KivStorage::MaxSaveNesting); break;
    }
}

void GrowTextOfTwoBlocks(Tree& tree) {
    auto* const root = static_cast<Composite*>(tree.NewRoot(NodeTypeMap));
    PutText(*static_cast<Composite*>(root->NewNode(0, NodeTypeMap)), 33'000);
}

}  // namespace

void GrowTreeOfAnySize(Tree& tree, Input& input) {
    const bool isShort = input.IsShort();
    const std::uint8_t choice = input.TakeByte();
    if (choice >= 0xF8 && !isShort) {
        GrowGreatTree(tree, choice);
    } else if (choice >= 0xF0) {
        GrowTextOfTwoBlocks(tree);
    } else {
        GrowTree(tree, input);
    }
}

}  // namespace KivFuzz
