// The only file that knows every concrete class.

#include <iterator>

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
void TreeImpl::Adopt(Node& node, NodeOwner& owner, int index) noexcept {
    NodeAccess::Adopt(node, *this, owner, index);
    node.state_ = GetNewState(node.GetType());
    if (IsCompositeType(node.GetType())) {
        CountEmpty();
    }
}

Node* NodeSource::Reuse(NodeType type, NodeOwner& owner, int index) noexcept {
    auto& tree = static_cast<TreeImpl&>(*this);
    Node* const node = tree.forest_->TakeWaiting(type);
    tree.Adopt(*node, owner, index);
    return node;
}

[[gnu::always_inline]] inline Map* TreeImpl::ConstructMap(NodeOwner& owner, int index, SemanticTag tag) {
    switch (GetSlotCountForSemanticTag(tag)) {
        case 1: return Construct<MapImpl<1>>(owner, index);
        case 2: return Construct<MapImpl<2>>(owner, index);
        case 3: return Construct<MapImpl<3>>(owner, index);
        case 4: return Construct<MapImpl<4>>(owner, index);
        case 5: return Construct<MapImpl<5>>(owner, index);
        case 6: return Construct<MapImpl<6>>(owner, index);
        case 7: return Construct<MapImpl<7>>(owner, index);
        case 9: return Construct<MapImpl<9>>(owner, index);
        case 10: return Construct<MapImpl<10>>(owner, index);
        case 11: return Construct<MapImpl<11>>(owner, index);
        case 12: return Construct<MapImpl<12>>(owner, index);
        case 13: return Construct<MapImpl<13>>(owner, index);
        case 14: return Construct<MapImpl<14>>(owner, index);
        case 15: return Construct<MapImpl<15>>(owner, index);
        case 16: return Construct<MapImpl<16>>(owner, index);
        default: return Construct<MapImpl<DefaultMapSlotCount>>(owner, index);
    }
}

// Nearly all maps are made without any further call.
Map* TreeImpl::CreateMap(NodeOwner& owner, int index, SemanticTag tag) {
    using Default = MapImpl<DefaultMapSlotCount>;
    if (tag == SemanticTagNone && !forest_->MayHaveWaitingMaps() && GetBuffer()->CanTake<Default>()) {
        return ::new (GetBuffer()->TakeNext<Default>()) Default(this, owner, index);
    }
    return CreateAnyMap(owner, index, tag);
}

[[gnu::noinline]] Map* TreeImpl::CreateAnyMap(NodeOwner& owner, int index, SemanticTag tag) {
    auto* map = static_cast<Map*>(forest_->TakeReusableMap(tag));
    if (map != nullptr) {
        Adopt(*map, owner, index);
    } else {
        map = ConstructMap(owner, index, tag);
    }
    if (map != nullptr && tag != SemanticTagNone) {
        CheckReadOnly();
        NodeAccess::SetTag(*map, tag);
    }
    return map;
}

namespace {

using Maker = Node* (*)(TreeImpl& tree, NodeOwner& owner, int index);

/// By kind, from 1 on; a map is made by its tag.
constexpr Maker kMakers[] = {
    TreeImpl::Make<Integer>,
    TreeImpl::Make<GlobalID>,
    TreeImpl::Make<String>,
    TreeImpl::Make<Double>,
    TreeImpl::Make<Boolean>,
    TreeImpl::Make<Vector>,
    nullptr,
    TreeImpl::Make<IntegerSet>,
    TreeImpl::Make<IdSet>,
    TreeImpl::Make<StringSet>,
    TreeImpl::Make<DoubleSet>,
    TreeImpl::Make<Integer64>,
};
static_assert(std::size(kMakers) == NodeTypeInteger64);

}  // namespace

// Every way on is the last call, so that what nearly all nodes need keeps nothing on the stack.
Node* TreeImpl::CreateNode(NodeType type, NodeOwner& owner, int index, SemanticTag tag) {
    CheckReadOnly();
    if (type == NodeTypeMap) {
        return CreateMap(owner, index, tag);
    }
    if (type < NodeTypeInteger || type > NodeTypeInteger64) {
        Raise(Texts::InvalidType);
    }
    return waiting_[type - 1] != nullptr ? Reuse(type, owner, index) : kMakers[type - 1](*this, owner, index);
}

}  // namespace KivGenerics
