#include "containers/MapImpl.h"

#include "core/CopyChildren.h"
#include "core/NodeAccess.h"

namespace KivGenerics {

template <int N>
bool MapImpl<N>::IsEmpty() const {
    for (const Node* const child : slots_) {
        if (child != nullptr) {
            return false;
        }
    }
    return overflow_ == nullptr || overflow_->empty();
}

// Only -1 and the slots lead through the slots: any other index, also one below -1, looks at the overflow store alone.
// kept-on-purpose: get-next-below-minus-one
template <int N>
Node* MapImpl<N>::GetNext(int index) const {
    if (-1 <= index && index < N) {
        for (int i = index + 1; i < N; ++i) {
            if (slots_[i] != nullptr) {
                return slots_[i];
            }
        }
        return overflow_ != nullptr && !overflow_->empty() ? overflow_->begin().Value() : nullptr;
    }
    if (overflow_ == nullptr) {
        return nullptr;
    }
    const auto entry = overflow_->After(index);
    return entry != overflow_->end() ? entry.Value() : nullptr;
}

template <int N>
void MapImpl<N>::Move(int index, Node* node) {
    if (Get(index) != nullptr) {
        Raise(Texts::IndexInUse);
    }
    hInsertNode(index, node);
}

template <int N>
void MapImpl<N>::Remove(int index) {
    Node* const node = DetachFromMap(Access(), index);
    NodeAccess::GetTree(*this)->ReleaseNode(node);
}

template <int N>
bool MapImpl<N>::MergeWith(Node* other, bool flag) {
    const bool agreed = MergeWithChecks(other, flag);
    auto* const map = static_cast<Map*>(other);
    if (map->GetSemanticTagNV() != GetSemanticTagNV()) {
        return false;
    }
    CheckNotInside(map);
    const bool merged = MergeWithComposite(map, flag);
    return agreed && merged;
}

template <int N>
void MapImpl<N>::hPopulateChildren(Node* other, bool keepExisting) {
    if (!keepExisting) {
        Clear();
    }
    CopyChildren(*this, static_cast<Map&>(*other));
}

template class MapImpl<1>;
template class MapImpl<2>;
template class MapImpl<3>;
template class MapImpl<4>;
template class MapImpl<5>;
template class MapImpl<6>;
template class MapImpl<7>;
template class MapImpl<8>;
template class MapImpl<9>;
template class MapImpl<10>;
template class MapImpl<11>;
template class MapImpl<12>;
template class MapImpl<13>;
template class MapImpl<14>;
template class MapImpl<15>;
template class MapImpl<16>;

}  // namespace KivGenerics
