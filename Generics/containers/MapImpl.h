#pragma once

#include <cstdint>

#include "core/CompareComposites.h"
#include "core/DerivedTemporality.h"
#include "core/MapChildren.h"
#include "core/Raise.h"
#include "core/ReleaseChildren.h"
#include "core/Texts.h"
#include "core/TreeImpl.h"

namespace KivGenerics {

/// A map with N fixed slots. The sixteen classes differ in nothing else, so what need not know N is done by the
/// operations of MapChildren.h.
template <int N>
class MapImpl final : public Map {
public:
    using Composite::Detach;
    using Composite::Remove;

    int Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) override {
        return CompareComposites(*this, other, t, recalc);
    }
    void Clear() override {
        CheckReadOnly();
        ReleaseChildren(*this);
    }
    bool MergeWith(Node* other, bool flag) override;
    std::int32_t WriteToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient, int slotFlags) override {
        return WriteRootMap(Access(), archive, withTransient, slotFlags);
    }
    std::int32_t WriteToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient) override {
        return WriteMap(Access(), archive, withTransient);
    }
    std::int32_t ReadFromArchive(ArchiveDecoder& decoder, bool longCount) override {
        return ReadMap(*this, decoder, longCount);
    }
    std::int32_t SizeDefnArchive(KivCOMShared::COrvSizeArchive* sizer, bool withTransient) override {
        return SizeMap(Access(), sizer, withTransient);
    }

protected:
    VisitCode IterateInner(Visitor* visitor, SemanticTag tag, int flags) override {
        return IterateMap(Access(), visitor, tag, flags);
    }

public:
    EnumOrvGenericsTemporality CalculateDerivedTemporality() override {
        NodeAccess::GetTree(*this)->NoteOwnDerived();
        return CalculateTemporality(*this).derived;
    }
    int GetSize(EnumOrvGenericsTemporality t) override { return GetMapSize(Access(), t); }
    bool IsEmpty() const override;
    Node* Get(int index) const override { return GetNV(index); }
    Node* GetNext(int index) const override;
    Node* GetNth(int n) const override { return GetNthInMap(Access(), n); }
    Node* NewNode(int index, NodeType type, bool keepOld, SemanticTag tag) override {
        CheckIndex(index);
        return NewNodeInMap(Access(), index, type, keepOld, tag);
    }
    void Move(int index, Node* node) override;
    void Remove(int index) override;

private:
    Node* hDetach(int index) override { return DetachFromMap(Access(), index); }

protected:
    void hInsertNode(int index, Node* node) override {
        CheckIndex(index);
        Composite::Move(index, node);
        InsertIntoMap(Access(), index, node);
    }
    void hPopulateChildren(Node* other, bool keepExisting) override;

public:
    int GetSlotCount() const override { return N; }
    bool HasOverflow() const override { return overflow_ != nullptr; }

private:
    friend class TreeImpl;
    friend struct NodeAccess;

    explicit MapImpl(ChangeGuard* tree) noexcept : Map(tree, N) {}
    MapImpl(ChangeGuard* tree, NodeOwner& owner, int index) noexcept : Map(tree, owner, index, N) {}
    ~MapImpl() = default;

    // The operations behind MapChildren promise to leave a map alone when they are reached through a const one.
    MapChildren Access() const noexcept { return MapChildren(*const_cast<MapImpl*>(this)); }

    // Invariants, tested by CheckInvariants:
    //   1. the child in slot i, or under key i of the overflow store, has index i;
    //   2. its parent is this map;
    //   3. a composite belongs to this map's tree;
    //   4. no key of the overflow store is below N, and none holds null.
    Node* slots_[N] = {};
    MapOverflow* overflow_ = nullptr;  // made on first need, kept as long as the map
};

extern template class MapImpl<1>;
extern template class MapImpl<2>;
extern template class MapImpl<3>;
extern template class MapImpl<4>;
extern template class MapImpl<5>;
extern template class MapImpl<6>;
extern template class MapImpl<7>;
extern template class MapImpl<8>;
extern template class MapImpl<9>;
extern template class MapImpl<10>;
extern template class MapImpl<11>;
extern template class MapImpl<12>;
extern template class MapImpl<13>;
extern template class MapImpl<14>;
extern template class MapImpl<15>;
extern template class MapImpl<16>;

}  // namespace KivGenerics
