#include "traversal/CopyLeaves.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <KivGenerics/Prefetch.h>

#include "core/LeafKinds.h"
#include "core/LeafRun.h"
#include "core/Likeness.h"
#include "core/Raise.h"
#include "core/TextUnits.h"
#include "core/Texts.h"
#include "traversal/WalkFlags.h"

namespace KivGenerics {
namespace {

/// The changes that NewNode, or Add, and Populate of a leaf count.
constexpr std::uint32_t kChangesInMap = 3;
constexpr std::uint32_t kChangesInVector = 2;

template <class T>
void FillLeaf(T& copy, T& source) noexcept {
    NodeAccess::SetTemporalityOfNew(copy, source.GetTemporality());
    NodeAccess::GetValue(copy) = NodeAccess::GetValue(source);
}

/// The text ends at its first NUL unit, as Populate has it.
void FillLeaf(String& copy, String& source) {
    NodeAccess::SetTemporalityOfNew(copy, source.GetTemporality());
    const KivBase::WString& text = NodeAccess::GetValue(source);
    NodeAccess::GetValue(copy).assign(text.data(), CountBeforeNul(text.data(), text.size()));
}

/// False, with nothing done, where a node waits to be reused or memory has to be asked for.
template <class T>
bool CopyIntoSlot(TreeImpl& tree, Map& target, Node*& slot, Node& source) {
    if (!tree.CanCreateNext<T>()) {
        return false;
    }
    T* const copy = tree.CreateNext<T>(target, source.GetIndex(), kChangesInMap);
    NodeAccess::NoteChild(target);
    slot = copy;
    FillLeaf(*copy, static_cast<T&>(source));
    return true;
}

/// The same for a leaf of any kind.
[[gnu::always_inline]] inline bool CopyAnyIntoSlot(TreeImpl& tree, Map& target, Node*& slot, Node& source) {
    return ForScalarKind(
        source.GetType(),
        [&](auto kind) { return CopyIntoSlot<typename decltype(kind)::Leaf>(tree, target, slot, source); },
        [] { return false; });
}

/// Copies the leaf that has been taken last and those that come next, as long as each finds its slot free: at least that one, or
/// false.
[[gnu::always_inline]] inline bool CopyRunIntoSlots(TreeImpl& tree, const MapChildren& target, ChildCursor& children) {
    Map& map = target.map;
    Node** const slots = target.slots;
    const int slotCount = target.slotCount;
    Node* const* const first = children.GetTaken();
    Node* const* const end = children.GetRunEnd();
    Node* const* place = first;
    for (; place != end; ++place) {
        Node* const source = *place;
        if (source == nullptr) {
            continue;
        }
        const int index = source->GetIndex();
        const bool isFree = 0 <= index && index < slotCount && slots[index] == nullptr;
        if (!isFree || !IsCopied(*source) || !CopyAnyIntoSlot(tree, map, slots[index], *source)) {
            break;
        }
    }
    if (place == first) {
        return false;
    }
    children.GoOnAt(place);
    return true;
}

std::size_t CountOverflow(const MapChildren& children) noexcept {
    return children.overflow != nullptr ? children.overflow->size() : 0;
}

/// How many children the copy of a map still lacks in its overflow store.
std::size_t CountMissing(const MapChildren& target, Composite& source) noexcept {
    const std::size_t all = CountOverflow(MapChildren(static_cast<Map&>(source)));
    const std::size_t present = CountOverflow(target);
    return all > present ? all - present : 0;
}

Node* Populated(Node* copy, Node& source) {
    if (copy != nullptr) {
        copy->Populate(&source);
    }
    return copy;
}

/// Makes the next leaf of a run, a copy.
template <class T>
T* CopyNext(LeafRun<T>& run, const Node& source, int index) noexcept {
    PrefetchBehind(&source);
    const auto value = NodeAccess::GetValue(static_cast<const T&>(source));
    T* const copy = run.Make(index);
    NodeAccess::GetValue(*copy) = value;
    return copy;
}

/// Few enough leaves that all are still in the processor's cache when they have been looked at once.
constexpr std::ptrdiff_t kFewLeaves = 64;

/// Fewer leaves than this are made one by one: to begin a run costs as much as some of them do.
constexpr std::size_t kShortestRun = 8;

/// CopyRun where few elements are left; `room` is not 0.
template <class T>
std::size_t CopyFew(TreeImpl& tree, Vector& target, Node* const* first, std::size_t room) noexcept {
    auto index = static_cast<int>(NodeAccess::GetChildren(target).size());
    Node* const* place = first;
    Node* const* const end = first + room;
    do {
        PrefetchBehind(*place);
        T* const copy = tree.CreateNext<T>(target, index++, kChangesInVector);
        NodeAccess::AppendInRoom(target, copy);
        FillLeaf(*copy, static_cast<T&>(**place));
        ++place;
    } while (place != end && (*place)->GetType() == T::StaticType);
    return static_cast<std::size_t>(place - first);
}

/// Copies the elements of the first one's kind, T, that come next into the room that the target and the present block have; it
/// answers how many.
template <class T>
std::size_t CopyRun(TreeImpl& tree, Vector& target, Node* const* first, Node* const* end) {
    auto& elements = NodeAccess::GetChildren(target);
    const auto most = static_cast<std::size_t>((std::min)(kFewLeaves, end - first));
    const std::size_t room = LeafRun<T>::Count(tree, (std::min)(elements.capacity() - elements.size(), most));
    if (room == 0) {
        return 0;
    }
    if (most < kShortestRun) {
        return CopyFew<T>(tree, target, first, room);
    }
    end = FindEndOfLike(first, first + room);
    const auto count = static_cast<std::size_t>(end - first);
    const EnumOrvGenericsTemporality t = (*first)->GetTemporality();
    NodeAccess::NoteTemporalityOfNew(target, t);
    LeafRun<T> run(tree, target, count, t, kChangesInVector);
    auto index = static_cast<int>(elements.size());
    elements.resize(elements.size() + count);
    for (Node** place = elements.data() + index; first != end; ++first) {
        *place++ = CopyNext(run, **first, index++);
    }
    return count;
}

/// Copies elements of one kind as long as they come; answers false where there is no node to be had.
template <class T>
bool CopyElements(TreeImpl& tree, Vector& target, Copied& copied, Node*& next) {
    Node* const* place = copied.children.GetTaken();
    Node* const* const end = copied.children.GetRunEnd();
    while (place != end && (*place)->GetType() == T::StaticType) {
        if (const std::size_t count = CopyRun<T>(tree, target, place, end)) {
            NodeAccess::NoteChild(target);
            place += count;
            continue;
        }
        T* const copy = NodeAccess::Append<T>(target, kChangesInVector);
        if (copy == nullptr) {
            return false;
        }
        FillLeaf(*copy, static_cast<T&>(**place++));
    }
    copied.children.GoOnAt(place);
    next = copied.children.Next();
    return true;
}

/// The same for one element of any other kind.
bool CopyElement(Vector& target, Copied& copied, Node*& next) {
    Node& source = *next;
    if (Populated(target.Add(source.GetType(), source.GetSemanticTag()), source) == nullptr) {
        return false;
    }
    next = copied.children.Next();
    return true;
}

/// Copies the leaves like the one that has been taken last, of the kind T, which come next into the overflow store, as long as
/// neither that nor the tree needs memory for them: at least that one, or false.
template <class T>
[[gnu::noinline]] bool CopyRunBeyond(TreeImpl& tree, const MapChildren& target, ChildCursor& children) {
    Node* const* place = children.GetTaken();
    const auto rest = static_cast<std::size_t>(children.GetRunEnd() - place);
    const std::size_t room = LeafRun<T>::Count(tree, (std::min)(target.overflow->CountAppendable(), rest));
    if (room == 0) {
        return false;
    }
    Node* const* const end = FindEndOfLike(place, place + room);
    const auto count = static_cast<std::size_t>(end - place);
    const EnumOrvGenericsTemporality t = (*place)->GetTemporality();
    NodeAccess::NoteTemporalityOfNew(target.map, t);
    LeafRun<T> run(tree, target.map, count, t, kChangesInMap);
    MapOverflow::AppendRun store(*target.overflow);
    for (; place != end; ++place) {
        const int index = (*place)->GetIndex();
        store.Append(index, CopyNext(run, **place, index));
    }
    children.GoOnAt(end);
    return true;
}

/// The same for whatever leaf has been taken last; false, with nothing done, where that is none to be copied so.
bool CopyRunBeyond(TreeImpl& tree, const MapChildren& target, ChildCursor& children, const Node& source) {
    if (!target.HasRoom(source.GetIndex())) {
        return false;
    }
    return ForPlainKind(
        source.GetType(),
        [&](auto kind) { return CopyRunBeyond<typename decltype(kind)::Leaf>(tree, target, children); },
        [] { return false; });
}

/// Copies the leaf that has been taken last, and those behind it that can be copied with it; false where even that one cannot.
[[gnu::always_inline]] inline bool CopyRun(TreeImpl& tree, const MapChildren& target, ChildCursor& children,
                                           const Node& source) {
    return target.IsSlot(source.GetIndex()) ? CopyRunIntoSlots(tree, target, children)
                                            : CopyRunBeyond(tree, target, children, source);
}

}  // namespace

Node* MakeInMap(const MapChildren& target, Node& source, Composite& parent) {
    const int index = source.GetIndex();
    if (index < 0) {
        // Only where a node was inserted into a vector, too, and taken out there: NewNode says what is wrong.
        return target.map.NewNode(index, source.GetType(), false, source.GetSemanticTag());
    }
    return target.HasRoom(index) ? target.NewInRoom(index, source.GetType(), source.GetSemanticTag())
                                 : NewNodeInMap(target, index, source.GetType(), false, source.GetSemanticTag(),
                                                CountMissing(target, parent));
}

Node* CopyLeavesIntoVector(TreeImpl& tree, Vector& target, Copied& copied, Node* child) {
    bool goesOn = true;
    while (goesOn && child != nullptr && !IsCompositeType(child->GetType())) {
        const auto& elements = NodeAccess::GetChildren(target);
        if (!elements.empty() && elements.front()->GetType() != child->GetType()) {
            Raise(Texts::DifferentChildren);
        }
        goesOn = ForPlainKind(
            child->GetType(),
            [&](auto kind) { return CopyElements<typename decltype(kind)::Leaf>(tree, target, copied, child); },
            [&] { return CopyElement(target, copied, child); });
    }
    return goesOn ? child : nullptr;
}

Node* CopyLeavesIntoMap(TreeImpl& tree, Map& target, Copied& copied, Node* child) {
    const MapChildren places(target);
    ChildCursor& children = copied.children;
    for (; child != nullptr; child = children.Next()) {
        const bool isComposite = IsCompositeType(child->GetType());
        if (!IsCopied(*child)) {
            // kept-on-purpose: copy-lifts-hidden-children
            if (isComposite && !NodeAccess::CopyHidden(target, static_cast<Composite&>(*child), kFlagsOfAllBelow)) {
                return nullptr;
            }
        } else if (isComposite) {
            break;
        } else if (!CopyRun(tree, places, children, *child) &&
                   Populated(MakeInMap(places, *child, copied.source), *child) == nullptr) {
            return nullptr;
        }
    }
    return child;
}

}  // namespace KivGenerics
