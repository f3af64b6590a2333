#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <KivStorage/ItemScanner.h>

#include "scan/HeaderDecoder.h"

namespace KivInspect {

/// What an item stands for.
enum class Role {
    TreeOpens,
    TreeWord,    ///< the long at its beginning
    NodeOpens,   ///< a vector, a map or a set begins
    HeaderWord,  ///< a word of a composite's packed header
    Value,       ///< a leaf, as a whole
    FirstHalf,   ///< of a 64-bit integer; the other half is its Value
    SetCount,
    SetElement,
    NodeEnds,   ///< a vector, a map or a set ends
    TreeEnds,
    Unused,     ///< what a reader passes over
    Wrong,      ///< it cannot stand here
    Unplaced,  ///< what comes behind it
};

/// What is known of a node from its place and from its parent's header.
struct NodeFacts {
    int kind = 0;  ///< of KivGenerics::NodeType, or a number that no version knows
    int temporality = 0;
    std::int32_t index = -1;   ///< -1 for the root
    std::uint32_t tag = 0;     ///< a map's, once its header has come
    std::uint32_t count = 0;   ///< a composite's announced children, a set's elements
    std::uint64_t begin = 0;   ///< how many bytes of items stand before its first item
    std::size_t level = 0;     ///< 1 for the root
};

/// The meaning of one item.
struct Meaning {
    Role role = Role::Unused;
    NodeFacts node;                 ///< of NodeOpens, Value, FirstHalf, SetCount, SetElement and NodeEnds
    std::vector<HeaderField> fields;  ///< of HeaderWord: what the word completes
    bool headerEnds = false;        ///< the word is the header's last
    const char* problem = nullptr;  ///< of Wrong; also of NodeEnds, when children are missing
};

/// Tells from the items of a saved tree, one after the other, what tree they are.
///
/// Nothing is believed: what does not fit is Wrong, and everything after it Unplaced. Memory grows with the depth and with the
/// indexes of the maps that are open, where these are not consecutive.
class StructureReader {
public:
    /// A vector, map, set or what else is open around the next item.
    struct Level {
        enum class State { TreeWord, Root, Header, Children, SetCount, SetElements, Rest };

        State state = State::Rest;
        NodeFacts node;
        HeaderDecoder header;
        std::uint32_t next = 0;  // children, or elements, that have come
        std::size_t run = 0;  // the run of the next child
        std::uint32_t nextInRun = 0;  // its place there
        int wordsLeft = 0;  // of a child that takes several items

        bool IsComposite() const noexcept;
        /// How the next child is announced; there must be one.
        TypeCode GetNextType() const noexcept { return header.GetRuns()[run].type; }
        std::int32_t GetNextIndex() const noexcept {
            return static_cast<std::int32_t>(header.GetRuns()[run].first + nextInRun);
        }
        void CountChild() noexcept;
        /// Makes the child of this number, counted from 0, the next one.
        void GoTo(std::uint32_t child) noexcept;
        /// Passes by children of kinds that no version knows and that have no word: nothing of them stands in the data.
        void SkipEmptyChildren() noexcept;
    };

    /// `meaning` is filled anew.
    void Take(const KivStorage::ScannedItem& item, Meaning& meaning);

    /// How many objects are open.
    std::size_t GetDepth() const noexcept { return depth_; }
    /// An open object, 0 being the tree's.
    const Level& GetLevel(std::size_t i) const noexcept { return levels_[i]; }
    Level& GetLevel(std::size_t i) noexcept { return levels_[i]; }
    /// Whether the tree has ended, as a whole.
    bool HasEnded() const noexcept { return ended_; }
    bool IsBroken() const noexcept { return broken_; }
    /// The key of the innermost open node, "" for the root's.
    std::string GetKey() const { return GetKeyOfLevel(depth_); }
    /// The key of the node of the level below `depth` objects.
    std::string GetKeyOfLevel(std::size_t depth) const;

    /// Goes on as if the objects beyond `depth` had ended, and no problem had been.
    void CloseTo(std::size_t depth) noexcept;

private:
    using State = Level::State;

    Level& Push(State state);
    void Wrong(Meaning& meaning, const char* problem) noexcept;
    void TakeOutside(const KivStorage::ScannedItem& item, Meaning& meaning);
    void TakeEnd(Meaning& meaning);
    void TakeObject(const KivStorage::ScannedItem& item, Meaning& meaning, std::int32_t index);
    void TakeHeaderWord(const KivStorage::ScannedItem& item, Meaning& meaning);
    void TakeChild(const KivStorage::ScannedItem& item, Meaning& meaning);
    void TakeLeaf(const KivStorage::ScannedItem& item, Meaning& meaning, TypeCode type);
    void TakeSet(const KivStorage::ScannedItem& item, Meaning& meaning, TypeCode type);
    void TakeUnknownLeaf(const KivStorage::ScannedItem& item, Meaning& meaning, TypeCode type);
    void TakeSetItem(const KivStorage::ScannedItem& item, Meaning& meaning);
    void PassOver(const KivStorage::ScannedItem& item, Meaning& meaning);
    void EndChild();

    std::vector<Level> levels_;  // the first depth_ are open; the others keep their memory
    std::size_t depth_ = 0;
    bool ended_ = false;
    bool broken_ = false;
};

}  // namespace KivInspect
