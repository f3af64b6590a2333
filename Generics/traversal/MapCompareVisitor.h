#pragma once

#include <KivGenerics/VisitorNode.h>

#include "core/MapChildren.h"
#include "traversal/WalkFlags.h"

namespace KivGenerics {

/// Is shown the counted children of another map and compares each with the next counted child of this one.
///
/// Both maps have the same number of them, so the first differing index decides. Where temporalities outside the scale make
/// the two sides run out at different places all the same, this side first is smaller, the other side first leaves what
/// was found so far.
class MapCompareVisitor final : public VisitorNode {
public:
    MapCompareVisitor(const MapChildren& mine, EnumOrvGenericsTemporality t) : mine_(mine), t_(t) {
        if (mine_.overflow != nullptr) {
            entry_ = mine_.overflow->begin();
        }
    }
    VisitCode VisitNode(Node* theirs, bool postOrder, NodeType type) override;
    int GetResult() const noexcept { return result_; }

private:
    Node* TakeNext();

    MapChildren mine_;
    int result_ = 0;
    EnumOrvGenericsTemporality t_;
    int slot_ = 0;
    MapOverflow::Iterator entry_;
};

}  // namespace KivGenerics
