#pragma once

#include <cstdint>

#include <KivGenerics/Map.h>

#include "core/NodeAccess.h"

namespace KivGenerics {

/// Children at indexes beyond the fixed slots, in ascending order, in the forest's memory.
using MapOverflow = NodeAccess::MapOverflow;

/// The children of a map whatever its number of slots: what the sixteen classes hand to the operations that they share.
struct MapChildren {
    Map& map;
    Node** slots;
    int slotCount;
    MapOverflow*& overflow;  // right behind the slots

    explicit MapChildren(Map& owner) noexcept
        : map(owner),
          slots(NodeAccess::GetSlots(owner)),
          slotCount(NodeAccess::GetSlotCount(owner)),
          overflow(*reinterpret_cast<MapOverflow**>(slots + slotCount)) {}

    bool IsSlot(int index) const noexcept { return 0 <= index && index < slotCount; }

    /// True when NewInRoom will do for a child at `index`: nothing stands there, and its place needs no memory.
    bool HasRoom(int index) const noexcept { return NodeAccess::HasRoom(map, index); }

    /// A new child at `index`, where HasRoom, as NewNode makes it; null where a host's buffer answers null.
    Node* NewInRoom(int index, NodeType type, SemanticTag tag) const {
        return NodeAccess::NewInRoom(map, index, type, tag);
    }

    /// Calls `use(child)` for every child in index order until it answers false; false then.
    template <class Use>
    bool ForEach(Use use) const {
        for (int i = 0; i < slotCount; ++i) {
            if (slots[i] != nullptr && !use(slots[i])) {
                return false;
            }
        }
        return ForEachInOverflow(use);
    }

    /// The same for the children beyond the fixed slots.
    template <class Use>
    bool ForEachInOverflow(Use use) const {
        return overflow == nullptr || overflow->ForEach([&](const auto& entry) { return use(entry.Value()); });
    }
};

// Held by the containers themselves.
int GetMapSize(const MapChildren& children, EnumOrvGenericsTemporality t);
Node* GetNthInMap(const MapChildren& children, int n);
/// `expected` is the number of children that are about to come to the overflow store, this one included, if known.
Node* NewNodeInMap(const MapChildren& children, int index, NodeType type, bool keepOld, SemanticTag tag,
                   std::size_t expected = 0);
void InsertIntoMap(const MapChildren& children, int index, Node* node);
Node* DetachFromMap(const MapChildren& children, int index);

// Defined with the walks.
VisitCode IterateMap(const MapChildren& children, Visitor* visitor, SemanticTag tag, int flags);

// Defined with the archive encoding.
std::int32_t WriteRootMap(const MapChildren& children, KivCOMShared::COrvWriteArchive* archive, bool withTransient,
                          int slotFlags);
std::int32_t WriteMap(const MapChildren& children, KivCOMShared::COrvWriteArchive* archive, bool withTransient);
std::int32_t ReadMap(Map& map, ArchiveDecoder& decoder, bool longCount);
std::int32_t SizeMap(const MapChildren& children, KivCOMShared::COrvSizeArchive* sizer, bool withTransient);

}  // namespace KivGenerics
