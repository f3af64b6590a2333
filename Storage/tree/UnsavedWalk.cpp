#include "tree/UnsavedWalk.h"

#include <algorithm>
#include <new>
#include <utility>

#include <KivGenerics/Integer64.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ResultCode.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>

#include <KivStorage/SaveTree.h>

#include "tree/TreeChecks.h"

namespace KivStorage {
namespace {

using KivGenerics::Composite;
using KivGenerics::Map;
using KivGenerics::Node;
using KivGenerics::node_cast;

// A value's temporality has two bits in saved data, a composite's three.
constexpr int kMaxValueTemporality = 3;
constexpr int kMaxCompositeTemporality = 7;

const char* SentenceFor(UnsavedReason reason) {
    switch (reason) {
        case UnsavedReason::RootNotAMap: return "The root is not a map; only a map can be saved as root.";
        case UnsavedReason::RootNotSaved:
            return "The root is more transient than what is saved, or empty and of default temporality: nothing is "
                   "saved.";
        case UnsavedReason::RootLeaf: return "A value stands directly in the root: the saved tree would not load.";
        case UnsavedReason::RootChildOutsideSlots:
            return "A child of the root stands outside its fixed slots: the saved tree would not load.";
        case UnsavedReason::RootSlotCountChanges:
            return "The root has another number of fixed slots than its tag will give it when it is loaded.";
        case UnsavedReason::EmptyComposite:
            return "An empty vector or map of default temporality counts as temporary and is not saved.";
        case UnsavedReason::MixedKinds: return "The element is not of the kind of the vector's first one.";
        case UnsavedReason::MixedTemporality:
            return "The element would come back with the temporality of the vector's first one.";
        case UnsavedReason::TransientElement:
            return "The element is more transient than what is saved, but is saved with its vector.";
        case UnsavedReason::TemporalityNotHeld: return "The temporality does not fit into saved data.";
        case UnsavedReason::SemanticTagNotHeld: return "A semantic tag of 0 or below does not come back.";
        case UnsavedReason::Integer64Bit31: return "A 64-bit number with bit 31 set would come back 2^32 less.";
        case UnsavedReason::TextHasNul: return "The text would be cut before its NUL.";
        case UnsavedReason::TextTooLong: return "The text has more than 256,000 units: the saved tree would not load.";
        case UnsavedReason::NestingTooDeep:
            return "Vectors and maps are nested more than 1,000 levels deep: the saved tree would not load.";
    }
    return "";
}

/// What a root of this tag has after it was loaded: the library alone knows, so a scratch tree is asked.
int SlotCountWhenLoaded(KivGenerics::SemanticTag tag) {
    const auto scratch = KivGenerics::CreateGenericTree(static_cast<KivGenerics::EnumOrvObjectType>(8));
    if (!scratch) {
        throw std::bad_alloc();
    }
    return static_cast<Map*>(scratch->NewRoot(KivGenerics::NodeTypeMap, false, tag))->GetSlotCount();
}

}  // namespace

UnsavedWalk::UnsavedWalk(KivGenerics::Tree* tree, bool withTransient) : tree_(tree), limit_(SaveLimit(withTransient)) {}

void UnsavedWalk::Report(Node* node, UnsavedReason reason) {
    UnsavedPart part{{}, reason, SentenceFor(reason)};
    node->GetKey(part.key);
    parts_.push_back(std::move(part));
}

void UnsavedWalk::Enter(Composite* composite, bool saved) {
    if (open_.size() >= static_cast<std::size_t>(KivGenerics::MaxLoadNesting)) {
        Report(composite, UnsavedReason::NestingTooDeep);
        return;
    }
    const bool isVector = composite->GetType() == KivGenerics::NodeTypeVector;
    open_.push_back({composite, -1, saved, isVector ? composite->Get(0) : nullptr});
}

template <class Look>
void UnsavedWalk::WalkChildren(Look look) {
    while (!open_.empty()) {
        Node* const child = open_.back().composite->GetNext(open_.back().index);
        if (child == nullptr) {
            open_.pop_back();
            continue;
        }
        open_.back().index = child->GetIndex();
        const Level level = open_.back();
        look(level, child);
    }
}

std::vector<UnsavedPart> UnsavedWalk::Run() {
    if (LookAtRoot()) {
        Enter(static_cast<Composite*>(tree_->GetRoot()), true);
        WalkChildren([this](const Level& level, Node* child) { LookAtChild(level, child); });
    }
    return std::move(parts_);
}

std::vector<UnsavedPart> UnsavedWalk::RunForDepth() {
    if (auto* const root = node_cast<Composite>(tree_->GetRoot())) {
        Enter(root, true);
        WalkChildren([this](const Level&, Node* child) {
            if (auto* const composite = node_cast<Composite>(child)) {
                Enter(composite, true);
            }
        });
    }
    return std::move(parts_);
}

/// Whether there is more to look at below the root.
bool UnsavedWalk::LookAtRoot() {
    Node* const root = tree_->GetRoot();
    if (root == nullptr) {
        return false;
    }
    auto* const map = node_cast<Map>(root);
    if (map == nullptr) {
        Report(root, UnsavedReason::RootNotAMap);
    }
    if (!IsSaved(root)) {
        Report(root, UnsavedReason::RootNotSaved);
        return false;
    }
    if (map == nullptr) {
        return false;
    }
    LookAtSaved(root, false);
    if (map->GetSlotCount() != SlotCountWhenLoaded(map->GetSemanticTagNV())) {
        Report(root, UnsavedReason::RootSlotCountChanges);
    }
    return true;
}

void UnsavedWalk::LookAtChild(const Level& level, Node* child) {
    const bool isElement = level.composite->GetType() == KivGenerics::NodeTypeVector;
    // With transient nodes a vector writes every element.
    const bool saved = level.saved && (IsSaved(child) || (isElement && limit_ == KivGenerics::TemporalityTransient));
    if (!saved) {
        LookAtUnsaved(child);
        return;
    }
    if (open_.size() == 1 && !LookAtRootChild(child)) {
        return;
    }
    if (isElement && !LookAtElement(level, child)) {
        return;
    }
    auto* const composite = node_cast<Composite>(child);
    LookAtSaved(child, isElement && composite == nullptr && child != level.first);
    if (composite != nullptr) {
        Enter(composite, true);
    }
}

/// Whether the child is written at all.
bool UnsavedWalk::LookAtRootChild(Node* child) {
    if (!KivGenerics::IsCompositeType(child->GetType())) {
        Report(child, UnsavedReason::RootLeaf);
        return false;
    }
    if (child->GetIndex() >= static_cast<Map*>(open_.front().composite)->GetSlotCount()) {
        Report(child, UnsavedReason::RootChildOutsideSlots);
        return false;
    }
    return true;
}

/// Whether the element is written as what it is.
bool UnsavedWalk::LookAtElement(const Level& level, Node* element) {
    if (element->GetType() != level.first->GetType()) {
        Report(element, UnsavedReason::MixedKinds);
        return false;
    }
    const bool isValue = !KivGenerics::IsCompositeType(element->GetType());
    if (isValue && element->GetTemporality() != level.first->GetTemporality()) {
        Report(element, UnsavedReason::MixedTemporality);
    }
    if (element->GetTemporality() > limit_) {
        Report(element, UnsavedReason::TransientElement);
    }
    return true;
}

/// What is left out because somebody said so is left out on purpose, with all below it. A composite of default temporality is
/// left out because of its children: either all of these were meant to be, or it is, or holds, an empty one.
void UnsavedWalk::LookAtUnsaved(Node* node) {
    auto* const composite = node_cast<Composite>(node);
    if (composite == nullptr || composite->GetTemporality() != KivGenerics::TemporalityDefault) {
        return;
    }
    if (composite->IsEmpty()) {
        Report(composite, UnsavedReason::EmptyComposite);
    } else {
        Enter(composite, false);
    }
}

void UnsavedWalk::LookAtSaved(Node* node, bool firstSpeaksForIt) {
    const bool isComposite = KivGenerics::IsCompositeType(node->GetType());
    const int temporality = node->GetTemporality();
    const int greatest = isComposite ? kMaxCompositeTemporality : kMaxValueTemporality;
    if (!firstSpeaksForIt && (temporality < 0 || temporality > greatest)) {
        Report(node, UnsavedReason::TemporalityNotHeld);
    }
    if (const auto* const map = node_cast<Map>(node)) {
        if (map->GetSemanticTagNV() <= 0) {
            Report(node, UnsavedReason::SemanticTagNotHeld);
        }
    } else if (const auto* const number = node_cast<KivGenerics::Integer64>(node)) {
        if ((number->Get() & 0x80000000LL) != 0) {
            Report(node, UnsavedReason::Integer64Bit31);
        }
    } else {
        LookAtText(node);
    }
}

void UnsavedWalk::LookAtText(Node* node) {
    bool hasNul = false;
    std::size_t longest = 0;
    const auto look = [&](const char16_t* units, std::size_t length) {
        hasNul = hasNul || std::find(units, units + length, u'\0') != units + length;
        longest = std::max(longest, length);
    };
    if (const auto* const text = node_cast<KivGenerics::String>(node)) {
        look(text->Get(), text->GetLength());
    } else if (const auto* const texts = node_cast<KivGenerics::StringSet>(node)) {
        for (const KivBase::WString& element : texts->Get()) {
            look(element.data(), element.size());
        }
    }
    if (hasNul) {
        Report(node, UnsavedReason::TextHasNul);
    }
    if (longest > KivGenerics::MaxStringUnits) {
        Report(node, UnsavedReason::TextTooLong);
    }
}

std::vector<UnsavedPart> FindUnsavedParts(KivGenerics::Tree* tree, bool withTransient) {
    if (tree == nullptr) {
        return {};
    }
    UnsavedWalk walk(tree, withTransient);
    if (IsDeeperThan(tree, MaxSaveNesting)) {
        return walk.RunForDepth();
    }
    tree->UpdateDerivedTemporality();
    return walk.Run();
}

}  // namespace KivStorage
