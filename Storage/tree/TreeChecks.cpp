#include "tree/TreeChecks.h"

#include <vector>

#include <KivGenerics/Composite.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ResultCode.h>
#include <KivStorage/SaveTree.h>

#include "format/Failure.h"

namespace KivStorage {

using KivGenerics::Composite;
using KivGenerics::Node;
using KivGenerics::node_cast;

bool IsDeeperThan(const KivGenerics::Tree* tree, std::size_t levels) {
    struct Level {
        const Composite* composite;
        int index;
    };
    std::vector<Level> open;
    if (const auto* const root = node_cast<Composite>(tree->GetRoot())) {
        open.push_back({root, -1});
    }
    while (!open.empty()) {
        if (open.size() > levels) {
            return true;
        }
        Level& level = open.back();
        const Node* const child = level.composite->GetNext(level.index);
        if (child == nullptr) {
            open.pop_back();
            continue;
        }
        level.index = child->GetIndex();
        if (const auto* const composite = node_cast<Composite>(child)) {
            open.push_back({composite, -1});
        }
    }
    return false;
}

Result CheckSavable(KivGenerics::Tree* tree, bool withTransient, const std::string& place) {
    if (tree == nullptr) {
        return Fail(StorageNoTree, place);
    }
    if (IsDeeperThan(tree, MaxSaveNesting)) {
        return Fail(StorageTreeTooDeep, place);
    }
    Node* const root = tree->GetRoot();
    if (root != nullptr && root->GetType() != KivGenerics::NodeTypeMap) {
        tree->UpdateDerivedTemporality();
        if (root->ShouldVisit(SaveLimit(withTransient))) {
            return Fail(KivGenerics::ResultNotImplemented, place);
        }
    }
    return {};
}

}  // namespace KivStorage
