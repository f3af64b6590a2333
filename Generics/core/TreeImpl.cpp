#include "core/TreeImpl.h"

#include <new>

#include <KivGenerics/VisitorNode.h>

#include "core/DerivedTemporality.h"
#include "core/NodeAccess.h"
#include "core/Raise.h"
#include "core/Texts.h"

namespace KivGenerics {

Tree::Tree(const Tree& other) : KivBase::ReferenceCounted(other) {}
Tree& Tree::operator=(const Tree&) {
    return *this;
}
Tree::~Tree() = default;

/// Removes every visited node whose effective temporality is not persistent.
class TreeImpl::ClearTemporary final : public VisitorNode {
public:
    // The walk comes to a node only after it has found every visible ancestor persistent, so nothing above the nearest one
    // need be asked again: asking each node for its effective temporality would walk to the root once per node.
    VisitCode VisitNode(Node* node, bool, NodeType) override {
        EnumOrvGenericsTemporality effective = NodeAccess::GetDerived(*node);
        const Node* above = NodeAccess::GetParent(*node);
        for (; above != nullptr && NodeAccess::GetSeeBits(above->GetTemporality()) == 0;
             above = NodeAccess::GetParent(*above)) {
            effective = Greater(effective, NodeAccess::GetStoredDerived(*above));
        }
        if (above != nullptr) {
            effective = Greater(effective, TemporalityPersistent);
        }
        return effective == TemporalityPersistent ? VisitContinue : VisitRemove;
    }

private:
    static EnumOrvGenericsTemporality Greater(EnumOrvGenericsTemporality a, EnumOrvGenericsTemporality b) noexcept {
        return a < b ? b : a;
    }
};

namespace {

/// Composite::Get without the virtual call, of a node that is likely a map.
/// Null also where `node` is a leaf.
Node* GetChildOfMap(const Node& node, std::uint32_t index) noexcept {
    const NodeType type = node.GetType();
    if (type == NodeTypeMap) {
        return static_cast<const Map&>(node).GetNV(static_cast<std::int32_t>(index));
    }
    return type == NodeTypeVector ? static_cast<const Vector&>(node).GetNV(static_cast<std::int32_t>(index)) : nullptr;
}

/// The same of one that is likely a vector.
Node* GetChildOfVector(const Node& node, std::uint32_t index) noexcept {
    return node.GetType() == NodeTypeVector ? static_cast<const Vector&>(node).GetNV(static_cast<std::int32_t>(index))
                                            : GetChildOfMap(node, index);
}

constexpr std::uint32_t kBase = 10;
constexpr std::uint32_t kColon = u':' - u'0';
constexpr std::uint32_t kZeroAndColon = u'0' | static_cast<std::uint32_t>(u':') << 16;

/// Four units as one word, the first in its lowest bits, whatever the machine's order of bytes.
std::uint64_t JoinFour(const char16_t* unit) noexcept {
    return unit[0] | std::uint64_t{unit[1]} << 16 | std::uint64_t{unit[2]} << 32 | std::uint64_t{unit[3]} << 48;
}

/// Reads four digits at once: true, with their number, when `unit` begins with as many.
bool ReadFourDigits(const char16_t* unit, std::uint32_t& number) noexcept {
    constexpr std::uint64_t kZeros = 0x0030003000300030U;
    constexpr std::uint64_t kToSign = 0x7FF67FF67FF67FF6U;  // lifts what is above 9 into the sign of its quarter
    constexpr std::uint64_t kSigns = 0x8000800080008000U;
    constexpr std::uint64_t kWeights = 1000ULL << 48 | 100ULL << 32 | 10ULL << 16 | 1;
    // Of four digits nothing is borrowed between the quarters, and the highest quarter of the product is their number.
    const std::uint64_t digits = JoinFour(unit) - kZeros;
    if ((((digits + kToSign) | digits) & kSigns) != 0) {
        return false;
    }
    number = static_cast<std::uint32_t>(digits * kWeights >> 48);
    return true;
}

}  // namespace

TreeImpl::TreeImpl() : TreeImpl(EnumOrvObjectType(0)) {}

TreeImpl::TreeImpl(EnumOrvObjectType type) {
    try {
        forest_ = new ForestImpl(type);
        UseForest();
    } catch (const std::bad_alloc&) {
        forest_ = nullptr;
    }
}

TreeImpl::TreeImpl(ForestImpl* forest) : forest_(forest) {
    UseForest();
}

void TreeImpl::UseForest() noexcept {
    forest_->AddRef();
    buffer_ = &forest_->GetBuffer();
    waiting_ = forest_->GetWaiting();
}

TreeImpl::~TreeImpl() {
    if (forest_ != nullptr) {
        forest_->Release();
    }
}

std::int32_t TreeImpl::AddRef() {
    return refCount_.Increment();
}

std::int32_t TreeImpl::Release() {
    const std::int32_t count = refCount_.Decrement();
    if (count == 0) {
        delete this;
    }
    return count;
}

Node* TreeImpl::GetRoot() const {
    return root_;
}

bool TreeImpl::IsEmpty() const {
    return root_ == nullptr;
}

bool TreeImpl::IsReadOnly() const {
    return readOnly_;
}

int TreeImpl::GetChangeCount() const {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(CountChanges() - countedFrom_));
}

// kept-on-purpose: root-not-recycled
void TreeImpl::RemoveRoot() {
    CheckReadOnly();
    if (root_ != nullptr) {
        root_->Clear();
        NodeAccess::Freeze(*root_);
        root_ = nullptr;
        if (!hasStrays_) {
            isVaried_ = false;
            emptyComposites_ = 0;
        }
    }
}

void TreeImpl::ClearTemporaryNodes() {
    CheckReadOnly();
    if (root_ == nullptr) {
        return;
    }
    UpdateDerivedTemporality();
    ClearTemporary visitor;
    root_->Iterate(&visitor, SemanticTagNone, 0x700000);
}

void TreeImpl::SetRoot(Node* node) {
    CheckReadOnly();
    if (node == nullptr || NodeAccess::GetTree(*node) != this) {
        Raise(Texts::InvalidRoot);
    }
    // Detached first, so that a new root from inside the old one survives the clearing of what it came from.
    Node* const root = DetachFromParent(node);
    RemoveRoot();
    NodeAccess::Thaw(*root);
    NoteVaried();  // what came with it is not known
    root_ = root;
}

Node* TreeImpl::NewRoot(NodeType type, bool keepOld, SemanticTag tag) {
    Node* const root = CreateNode(type, *this, -1, tag);
    if (root == nullptr) {
        return nullptr;
    }
    if (root_ != nullptr && keepOld) {
        // kept-on-purpose: abandoned-new-node
        if (!IsCompositeType(type)) {
            Raise(Texts::CannotKeepOldRoot);
        }
        static_cast<Composite*>(root)->Move(0, root_);
    } else if (root_ != nullptr) {
        root_->Clear();
        NodeAccess::Freeze(*root_);
    }
    root_ = root;
    return root;
}

Node* TreeImpl::CopyFromNode(Node* source) {
    CheckReadOnly();
    if (source == nullptr || NodeAccess::GetTree(*source) == this) {
        Raise(Texts::InvalidSourceNode);
    }
    RemoveRoot();
    Node* const root = NewRoot(source->GetType(), false, source->GetSemanticTag());
    if (root != nullptr) {
        root->Populate(source);
    }
    return root;
}

Node* TreeImpl::CopyFromTree(Tree* other) {
    CheckReadOnly();
    if (other == nullptr || other == this) {
        Raise(Texts::InvalidSourceTree);
    }
    if (Node* const source = other->GetRoot()) {
        CopyFromNode(source);
    } else {
        RemoveRoot();
    }
    return root_;
}

void TreeImpl::SetReadOnly() {
    readOnly_ = true;
}

void TreeImpl::ResetChangeCount() {
    CheckReadOnly();
    countedFrom_ = CountChanges();
}

// Numbers wrap at 32 bits, so that no key can overflow them; ":" alone reads as "0:".
// kept-on-purpose: find-key-needs-colon
Node* TreeImpl::FindNodeByKey(const KivBase::WString& key) const {
    Node* node = root_;
    const char16_t* unit = key.c_str();
    const char16_t* const end = unit + key.size();
    while (unit != end && node != nullptr) {
        // Most numbers have one digit, which is read with what follows it. The NUL behind a text may be read, too. Two places
        // ask for the child, so that the processor foresees the kind of each step from the number that led there.
        std::uint32_t number = (unit[0] | static_cast<std::uint32_t>(unit[1]) << 16) - kZeroAndColon;
        if (number < kBase) {
            unit += 2;
            node = GetChildOfMap(*node, number);
            continue;
        }
        number = 0;
        if (end - unit >= 4 && ReadFourDigits(unit, number)) {
            unit += 4;
        }
        std::uint32_t digit = 0;
        for (; (digit = static_cast<std::uint32_t>(*unit) - u'0') < kBase; ++unit) {
            number = number * kBase + digit;
        }
        if (digit != kColon) {
            return unit == end ? node : nullptr;
        }
        ++unit;
        node = GetChildOfVector(*node, number);
    }
    return node;
}

void TreeImpl::UpdateDerivedTemporality() {
    if (root_ == nullptr || !IsTemporalityStale()) {
        return;
    }
    if (!isVaried_ && !hasStrays_ && emptyComposites_ == 0 && GetRound() < kLastRound) {
        SetRound(static_cast<std::uint8_t>(GetRound() + 1));
        isAllPersistent_ = true;
        isAllOnScale_ = true;
    } else {
        CalculateAll();
    }
    updatedAt_ = CountChanges();
    temporalityUpdated_ = true;
}

void TreeImpl::CalculateAll() {
    if (!IsCompositeType(root_->GetType())) {
        isAllPersistent_ = root_->CalculateDerivedTemporality() == TemporalityPersistent;
        isAllOnScale_ = isAllPersistent_;
        isVaried_ = !isAllPersistent_;
        return;
    }
    const TemporalitySummary summary = CalculateTemporality(*static_cast<Composite*>(root_));
    isAllPersistent_ = summary.isAllPersistent;
    isAllOnScale_ = summary.isAllOnScale;
    isVaried_ = !summary.isAllPersistent;
    emptyComposites_ = summary.emptyComposites;
    if (GetRound() == kLastRound && !hasStrays_) {
        SetRound(1);
        RestampTemporality(*root_);
    }
}

std::size_t TreeImpl::BufferQueryA() const {
    return forest_->BufferQueryA();
}

std::size_t TreeImpl::BufferQueryB() const {
    return forest_->BufferQueryB();
}

KivBase::ReturnPtrI<Tree> TreeImpl::CreateTreeInForest() {
    auto* const tree = new (std::nothrow) TreeImpl(forest_);
    if (tree != nullptr) {
        tree->AddRef();
    }
    return KivBase::ReturnPtrI<Tree>(tree);
}

void TreeImpl::ReleaseNode(Node* node) {
    Recycle(node);
    node->Reset();
}

Node* TreeImpl::DetachFromParent(Node* node) {
    Composite* const parent = NodeAccess::GetParent(*node);
    if (parent == nullptr) {
        return node;
    }
    if (!IsCompositeType(parent->GetType())) {
        Raise(Texts::ParentNotComposite);
    }
    return parent->hDetach(node->GetIndex());
}

KivBase::ReturnPtrI<Tree> CreateGenericTree(EnumOrvObjectType type) {
    auto* tree = new (std::nothrow) TreeImpl(type);
    if (tree != nullptr && tree->GetForest() == nullptr) {
        delete tree;
        tree = nullptr;
    }
    if (tree != nullptr) {
        tree->AddRef();
    }
    return KivBase::ReturnPtrI<Tree>(tree);
}

}  // namespace KivGenerics
