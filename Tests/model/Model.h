#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include <KivGenerics/Node.h>
#include <KivGenerics/NodeType.h>

/// What a tree is and does, written a second time in the plainest way, to hold the library against. It shares no line with
/// it but the numbers of kinds and the type of a twin. What is not in it: which removed node is handed out again.
namespace Model {

using Text = std::u16string;
/// A GUID as the four words that it is ordered by.
using Id = std::array<std::uint32_t, 4>;
using Value = std::variant<std::monostate, std::int32_t, std::int64_t, bool, double, Id, Text, std::set<std::int32_t>,
                           std::set<double>, std::set<Id>, std::set<Text>>;

/// Thrown where the library throws: its text, and whether the tree is read-only.
struct Refusal {
    const char16_t* text;
    bool readOnly = false;
};

struct Item;
using Owned = std::unique_ptr<Item>;

struct Tree {
    Owned root;
    /// Taken out, or never placed: without a parent, but still usable.
    std::vector<Owned> free;
    /// Removed in this step. They are emptied but not yet gone, since an operation may still look at them.
    std::vector<Owned> removed;
    int changes = 0;
    bool readOnly = false;
    bool stale = true;
};

struct Item {
    Tree* tree = nullptr;
    KivGenerics::NodeType type = KivGenerics::NodeTypeInteger;
    int temporality = 1;
    int derived = 1;
    int tag = 1;
    Item* parent = nullptr;
    int index = -1;
    Value value;
    std::vector<Owned> elements;  // of a vector
    std::map<int, Owned> entries;  // of a map
    /// The node that this stands for, and how many fixed slots it has if it is a map; known once it has been found.
    KivGenerics::Node* twin = nullptr;
    int slots = 0;

    bool IsMap() const { return type == KivGenerics::NodeTypeMap; }
    bool IsVector() const { return type == KivGenerics::NodeTypeVector; }
    bool IsComposite() const { return IsMap() || IsVector(); }
};

Value NewValue(KivGenerics::NodeType type);
bool IsSameValue(const Value& a, const Value& b);
/// Whether `node` is `above` or stands somewhere below it.
bool IsInside(const Item& node, const Item& above);
int CountNodes(const Item& item);

// Children.
int CountChildren(const Item& item);
Item* Get(const Item& item, int index);
/// The child with the smallest index above `index`.
Item* FindAfter(const Item& item, int index);
Item* GetNext(const Item& item, int index);
Item* GetNth(const Item& item, int n);
int GetSize(Item& item, int t);

// Changes.
void Guard(Tree& tree);
Owned Create(Tree& tree, KivGenerics::NodeType type, int tag);
Owned TakeOut(Item& item);
void Place(Item& composite, int index, Owned item);
void Clear(Item& item);
void RemoveChild(Item& composite, int index);
Owned DetachChild(Item& composite, int index);
void Remove(Item& item);
Item& Detach(Item& item);
void SetTemporality(Item& item, int t);
void SetTag(Item& map, int tag);
Item& NewNode(Item& composite, int index, KivGenerics::NodeType type, bool keepOld, int tag);
void Move(Item& composite, int index, Item* item);
Item& Add(Item& vector, KivGenerics::NodeType type, int tag);
Item& Insert(Item& vector, int index, KivGenerics::NodeType type, int tag);
void InsertNode(Item& vector, int index, Item* item);

// Whole trees.
void RemoveRoot(Tree& tree);
void SetRoot(Tree& tree, Item* item);
Item& NewRoot(Tree& tree, KivGenerics::NodeType type, bool keepOld, int tag);
Item* CopyFromTree(Tree& tree, Tree* other);
Item& CopyFromNode(Tree& tree, Item* source);
void ClearTemporaryNodes(Tree& tree);
Item* FindByKey(const Tree& tree, const Text& key);

// Copying, merging, comparing.
void CheckAncestor(const Item& composite, const Item* item);
void Populate(Item& target, Item* source);
void PopulateVector(Item& target, Item* source);
Item& ReplaceWithCopy(Item& composite, int index, Item* source);
Item& AddCopy(Item& vector, Item* source);
Item& InsertCopy(Item& vector, int index, Item* source);
bool Merge(Item& target, Item* other);
int Compare(Item& mine, Item* theirs, int t, bool recalculate);
/// -1, 0 or 1; the other's text ends at its first NUL, and a NaN equals everything.
int CompareValues(const Item& mine, const Item& theirs);

// Temporalities.
int Calculate(Item& item);
int GetDerived(Item& item);
int GetEffective(Item& item);
void Update(Tree& tree);

// Walks.
using See = std::function<int(Item& item, bool postOrder)>;
void Iterate(Item& start, const See& see, int tag, unsigned flags);
/// Every node from `start` on, level by level; a node for which `see` answers true is removed.
void WalkByLevels(Item& start, const std::function<bool(Item&)>& see);
Text GetKey(const Item& item);
Text GetTagKey(const Item& item);

}  // namespace Model
