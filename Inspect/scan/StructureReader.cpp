#include "scan/StructureReader.h"

#include <KivGenerics/NodeType.h>
#include <KivGenerics/ResultCode.h>

namespace KivInspect {
namespace {

using namespace KivGenerics;
using KivStorage::ScannedItem;
using KivStorage::ScannedItemType;

// The tree's own object, and a set below the deepest composite.
constexpr std::size_t MaxObjects = static_cast<std::size_t>(MaxLoadNesting) + 2;
constexpr int LongVector = 510;
constexpr int LongMap = 511;

bool IsUnknownKind(int kind) noexcept {
    return kind < NodeTypeInteger || NodeTypeInteger64 < kind;
}

bool IsSetKind(int kind) noexcept {
    return NodeTypeIntegerSet <= kind && kind <= NodeTypeDoubleSet;
}

/// The tag of the object that holds a set's elements.
int SetObjectTag(int kind) noexcept {
    switch (kind) {
        case NodeTypeIntegerSet: return 1035;
        case NodeTypeDoubleSet: return 1036;
        case NodeTypeIdSet: return 1037;
        default: return 1038;
    }
}

/// The item that a leaf of this kind, or an element of a set of it, is.
ScannedItemType ItemOf(int kind) noexcept {
    switch (kind) {
        case NodeTypeGlobalID:
        case NodeTypeIdSet: return ScannedItemType::Guid;
        case NodeTypeString:
        case NodeTypeStringSet: return ScannedItemType::Text;
        case NodeTypeDouble:
        case NodeTypeDoubleSet: return ScannedItemType::Double;
        default: return ScannedItemType::Long;
    }
}

}  // namespace

bool StructureReader::Level::IsComposite() const noexcept {
    return node.kind == NodeTypeVector || node.kind == NodeTypeMap;
}

void StructureReader::Level::CountChild() noexcept {
    next += 1;
    nextInRun += 1;
    if (run < header.GetRuns().size() && nextInRun >= header.GetRuns()[run].count) {
        run += 1;
        nextInRun = 0;
    }
}

void StructureReader::Level::GoTo(std::uint32_t child) noexcept {
    next = child;
    run = 0;
    nextInRun = child;
    wordsLeft = 0;
    const std::vector<KeyRun>& runs = header.GetRuns();
    while (run < runs.size() && nextInRun >= runs[run].count) {
        nextInRun -= runs[run].count;
        run += 1;
    }
}

void StructureReader::Level::SkipEmptyChildren() noexcept {
    while (next < node.count && !GetNextType().IsObject() && IsUnknownKind(GetNextType().GetKind()) &&
           GetNextType().GetExtraWords() == 0) {
        // All children of a run are alike.
        const std::uint32_t left = header.GetRuns()[run].count - nextInRun;
        next += left;
        nextInRun = 0;
        run += 1;
    }
}

StructureReader::Level& StructureReader::Push(State state) {
    if (depth_ == levels_.size()) {
        levels_.emplace_back();
    }
    Level& level = levels_[depth_];
    level.state = state;
    level.node = {};
    level.next = 0;
    level.run = 0;
    level.nextInRun = 0;
    level.wordsLeft = 0;
    depth_ += 1;
    return level;
}

void StructureReader::CloseTo(std::size_t depth) noexcept {
    depth_ = depth;
    broken_ = false;
}

void StructureReader::Wrong(Meaning& meaning, const char* problem) noexcept {
    meaning.role = Role::Wrong;
    meaning.problem = problem;
    broken_ = true;
}

std::string StructureReader::GetKeyOfLevel(std::size_t depth) const {
    std::string key;
    for (std::size_t i = 2; i < depth; ++i) {
        key += std::to_string(levels_[i].node.index) + ':';
    }
    return key;
}

void StructureReader::Take(const ScannedItem& item, Meaning& meaning) {
    meaning.role = Role::Unused;
    meaning.fields.clear();
    meaning.headerEnds = false;
    meaning.problem = nullptr;
    if (broken_) {
        meaning.role = Role::Unplaced;
        return;
    }
    if (depth_ == 0) {
        return TakeOutside(item, meaning);
    }
    if (item.type == ScannedItemType::ObjectEnds) {
        return TakeEnd(meaning);
    }
    if (item.type == ScannedItemType::ObjectOpens && depth_ >= MaxObjects) {
        return Wrong(meaning, "composites are nested more than 1,000 levels deep");
    }
    switch (levels_[depth_ - 1].state) {
        case State::TreeWord:
            meaning.role = Role::TreeWord;
            levels_[depth_ - 1].state = State::Root;
            if (item.type != ScannedItemType::Long) {
                Wrong(meaning, "the tree does not begin with a long");
            }
            break;
        case State::Root: TakeObject(item, meaning, -1); break;
        case State::Header: TakeHeaderWord(item, meaning); break;
        case State::Children: TakeChild(item, meaning); break;
        case State::SetCount:
        case State::SetElements: TakeSetItem(item, meaning); break;
        case State::Rest: PassOver(item, meaning); break;
    }
    if (meaning.role == Role::Value || meaning.role == Role::FirstHalf) {
        meaning.node.begin = item.position;
    } else if (meaning.role == Role::NodeOpens) {
        meaning.node.begin = item.position;
        levels_[depth_ - 1].node.begin = item.position;
    }
}

void StructureReader::TakeOutside(const ScannedItem& item, Meaning& meaning) {
    if (ended_) {
        return Wrong(meaning, "the tree has ended before");
    }
    if (item.type != ScannedItemType::ObjectOpens) {
        return Wrong(meaning, "a tree begins with an object");
    }
    Push(State::TreeWord);
    meaning.role = Role::TreeOpens;
}

/// An object that was announced in its parent's header, or the root.
void StructureReader::TakeObject(const ScannedItem& item, Meaning& meaning, std::int32_t index) {
    if (item.type != ScannedItemType::ObjectOpens) {
        return Wrong(meaning, "a vector or a map was expected");
    }
    const int number = item.GetTag() & 0x1FF;
    const bool isVector = number == NodeTypeVector || number == LongVector;
    const bool isMap = number == NodeTypeMap || number == LongMap;
    if (!isVector && !isMap) {
        if (index < 0) {
            return Wrong(meaning, "the root is neither a vector nor a map");
        }
        Push(State::Rest);
        return;
    }
    Level& level = Push(State::Header);
    level.node.kind = isVector ? NodeTypeVector : NodeTypeMap;
    level.node.temporality = item.GetTag() >> 9 & 7;
    level.node.index = index;
    level.node.level = depth_ - 1;
    if (isVector) {
        level.header.BeginVector(number == LongVector);
    } else {
        level.header.BeginMap(number == LongMap);
    }
    meaning.role = Role::NodeOpens;
    meaning.node = level.node;
}

/// A word's bytes come from its top, so they stand in the item in reverse order.
void StructureReader::TakeHeaderWord(const ScannedItem& item, Meaning& meaning) {
    if (item.type != ScannedItemType::Long) {
        return Wrong(meaning, "a word of the packed header was expected");
    }
    Level& level = levels_[depth_ - 1];
    meaning.role = Role::HeaderWord;
    for (int i = 4; i >= 1; --i) {
        if (!level.header.IsComplete() && level.header.Take(item.bytes[i])) {
            meaning.fields.push_back(level.header.GetField());
        }
    }
    meaning.headerEnds = level.header.IsComplete();
    if (meaning.headerEnds) {
        level.node.tag = level.header.GetTag();
        level.node.count = level.header.GetCount();
        level.state = State::Children;
    }
    meaning.node = level.node;
}

void StructureReader::TakeChild(const ScannedItem& item, Meaning& meaning) {
    Level& level = levels_[depth_ - 1];
    level.SkipEmptyChildren();
    if (level.next == level.node.count) {
        level.state = State::Rest;
        return PassOver(item, meaning);
    }
    const TypeCode type = level.GetNextType();
    if (type.IsObject()) {
        return TakeObject(item, meaning, level.GetNextIndex());
    }
    meaning.node = {};
    meaning.node.kind = type.GetKind();
    meaning.node.temporality = type.GetTemporality();
    meaning.node.index = level.GetNextIndex();
    meaning.node.level = depth_;
    if (IsSetKind(type.GetKind())) {
        TakeSet(item, meaning, type);
    } else if (IsUnknownKind(type.GetKind())) {
        TakeUnknownLeaf(item, meaning, type);
    } else {
        TakeLeaf(item, meaning, type);
    }
}

void StructureReader::TakeLeaf(const ScannedItem& item, Meaning& meaning, TypeCode type) {
    if (type.GetKind() == NodeTypeVector || type.GetKind() == NodeTypeMap) {
        return Wrong(meaning, "a vector or a map without an object of its own");
    }
    if (item.type != ItemOf(type.GetKind())) {
        return Wrong(meaning, "a value of another type was expected");
    }
    Level& level = levels_[depth_ - 1];
    if (type.GetKind() == NodeTypeInteger64 && level.wordsLeft == 0) {
        level.wordsLeft = 1;
        meaning.role = Role::FirstHalf;
        return;
    }
    level.wordsLeft = 0;
    level.CountChild();
    meaning.role = Role::Value;
}

void StructureReader::TakeSet(const ScannedItem& item, Meaning& meaning, TypeCode type) {
    if (item.type != ScannedItemType::ObjectOpens || item.GetTag() != SetObjectTag(type.GetKind())) {
        return Wrong(meaning, "a set was expected");
    }
    Level& level = Push(State::SetCount);
    level.node = meaning.node;
    meaning.role = Role::NodeOpens;
}

void StructureReader::TakeUnknownLeaf(const ScannedItem& item, Meaning& meaning, TypeCode type) {
    if (item.type != ScannedItemType::Long) {
        return Wrong(meaning, "a word of a kind that no version knows was expected");
    }
    Level& level = levels_[depth_ - 1];
    level.wordsLeft += 1;
    if (level.wordsLeft >= type.GetExtraWords()) {
        level.wordsLeft = 0;
        level.CountChild();
    }
}

void StructureReader::TakeSetItem(const ScannedItem& item, Meaning& meaning) {
    Level& level = levels_[depth_ - 1];
    if (level.state == State::SetCount) {
        if (item.type != ScannedItemType::Long) {
            return Wrong(meaning, "the number of a set's elements was expected");
        }
        level.node.count = item.GetLong() > 0 ? static_cast<std::uint32_t>(item.GetLong()) : 0;
        level.state = State::SetElements;
        meaning.role = Role::SetCount;
    } else if (level.next == level.node.count) {
        level.state = State::Rest;
        return PassOver(item, meaning);
    } else if (item.type != ItemOf(level.node.kind)) {
        return Wrong(meaning, "an element of a set was expected");
    } else {
        level.next += 1;
        meaning.role = Role::SetElement;
    }
    meaning.node = level.node;
}

/// Behind what it knows of an object, a reader passes over everything.
void StructureReader::PassOver(const ScannedItem& item, Meaning& meaning) {
    meaning.role = Role::Unused;
    if (item.type == ScannedItemType::ObjectOpens) {
        Push(State::Rest);
    }
}

void StructureReader::TakeEnd(Meaning& meaning) {
    Level& level = levels_[depth_ - 1];
    meaning.node = level.node;
    if (level.state == State::Children) {
        level.SkipEmptyChildren();
    }
    const bool incomplete =
        level.state == State::Header || level.state == State::SetCount || level.state == State::TreeWord ||
        level.wordsLeft > 0 ||
        ((level.state == State::Children || level.state == State::SetElements) && level.next < level.node.count);
    if (incomplete) {
        meaning.problem = "the object ends before all of it has come";
    }
    meaning.role = depth_ == 1 ? Role::TreeEnds : level.node.kind == 0 ? Role::Unused : Role::NodeEnds;
    EndChild();
}

void StructureReader::EndChild() {
    depth_ -= 1;
    if (depth_ == 0) {
        ended_ = true;
        return;
    }
    Level& parent = levels_[depth_ - 1];
    if (parent.state == State::Root) {
        parent.state = State::Rest;
    } else if (parent.state == State::Children) {
        parent.CountChild();
    }
}

}  // namespace KivInspect
