// The only file that knows every concrete class.

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Vector.h>

#include "containers/MapImpl.h"
#include "containers/SemanticTags.h"
#include "core/NodeAccess.h"
#include "core/Texts.h"
#include "core/TreeImpl.h"

namespace KivGenerics {

// The node may come from another tree of the forest.
void TreeImpl::Adopt(Node& node, Composite* parent, int index) noexcept {
    node.tree_ = this;
    node.temporality_ = TemporalityDefault;
    node.derivedTemporality_ = TemporalityDefault;
    NodeAccess::Place(node, parent, index);
}

Node* TreeImpl::ConstructMap(Composite* parent, int index, SemanticTag tag) {
    switch (GetSlotCountForSemanticTag(tag)) {
        case 1: return Construct<MapImpl<1>>(parent, index);
        case 2: return Construct<MapImpl<2>>(parent, index);
        case 3: return Construct<MapImpl<3>>(parent, index);
        case 4: return Construct<MapImpl<4>>(parent, index);
        case 5: return Construct<MapImpl<5>>(parent, index);
        case 6: return Construct<MapImpl<6>>(parent, index);
        case 7: return Construct<MapImpl<7>>(parent, index);
        case 9: return Construct<MapImpl<9>>(parent, index);
        case 10: return Construct<MapImpl<10>>(parent, index);
        case 11: return Construct<MapImpl<11>>(parent, index);
        case 12: return Construct<MapImpl<12>>(parent, index);
        case 13: return Construct<MapImpl<13>>(parent, index);
        case 14: return Construct<MapImpl<14>>(parent, index);
        case 15: return Construct<MapImpl<15>>(parent, index);
        case 16: return Construct<MapImpl<16>>(parent, index);
        default: return Construct<MapImpl<DefaultMapSlotCount>>(parent, index);
    }
}

Node* TreeImpl::CreateNode(NodeType type, Composite* parent, int index, SemanticTag tag) {
    CheckReadOnly();
    Node* node = forest_->TakeReusableNode(type, tag);
    if (node != nullptr) {
        Adopt(*node, parent, index);
    } else if (type < NodeTypeInteger || type > NodeTypeInteger64) {
        Raise(Texts::InvalidType);
    } else {
        switch (type) {
            case NodeTypeInteger: node = Construct<Integer>(parent, index); break;
            case NodeTypeGlobalID: node = Construct<GlobalID>(parent, index); break;
            case NodeTypeString: node = Construct<String>(parent, index); break;
            case NodeTypeDouble: node = Construct<Double>(parent, index); break;
            case NodeTypeBoolean: node = Construct<Boolean>(parent, index); break;
            case NodeTypeVector: node = Construct<Vector>(parent, index); break;
            case NodeTypeMap: node = ConstructMap(parent, index, tag); break;
            case NodeTypeIntegerSet: node = Construct<IntegerSet>(parent, index); break;
            case NodeTypeIdSet: node = Construct<IdSet>(parent, index); break;
            case NodeTypeStringSet: node = Construct<StringSet>(parent, index); break;
            case NodeTypeDoubleSet: node = Construct<DoubleSet>(parent, index); break;
            case NodeTypeInteger64: node = Construct<Integer64>(parent, index); break;
        }
    }
    if (node != nullptr && type == NodeTypeMap && tag != SemanticTagNone) {
        static_cast<Map*>(node)->SetSemanticTag(tag);
    }
    return node;
}

}  // namespace KivGenerics
