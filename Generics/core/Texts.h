#pragma once

namespace KivGenerics::Texts {

// What the library's exceptions say, to the letter: hosts tell them apart by these texts.
inline constexpr char16_t ReadOnly[] = u"Operation not allowed on a read-only tree!";
inline constexpr char16_t NullMove[] = u"Move::Node can't be NULL!";
inline constexpr char16_t Ancestor[] = u"Can't perform this operation on an ancestor";
inline constexpr char16_t OtherTree[] = u"Move::Can't move a node from a different tree!";
inline constexpr char16_t InvalidType[] = u"Invalid node type!";
inline constexpr char16_t ParentNotComposite[] = u"Unexpected error! Parent is not composite";
inline constexpr char16_t InvalidRoot[] = u"New root is either NULL or from a different tree!";
inline constexpr char16_t CannotKeepOldRoot[] = u"NewRoot:Invalid node type for keeping old root";
inline constexpr char16_t InvalidSourceTree[] = u"Original tree is either NULL or the same tree!";
inline constexpr char16_t InvalidSourceNode[] = u"Original node is either NULL or from the same tree!";
inline constexpr char16_t CannotKeepOldNode[] = u"NewNode:Invalid node type for keeping old node";
inline constexpr char16_t IndexInUse[] = u"Move::Index already in use!";
inline constexpr char16_t NothingToRemove[] = u"Remove::Index out of range";
inline constexpr char16_t IndexOutOfRange[] = u"Index out of range";
inline constexpr char16_t MoveOutOfRange[] = u"Move::Index out of range!";
inline constexpr char16_t DifferentChildren[] = u"Vector::Add::Different children type";
inline constexpr char16_t NoSuchItem[] = u"Item::Index out of range";
inline constexpr char16_t NullCompare[] = u"Can't compare NULL node!";
inline constexpr char16_t NullCopy[] = u"Can't copy NULL node!";
inline constexpr char16_t CopyOtherType[] = u"Can't copy nodes of different type!";
inline constexpr char16_t NullMerge[] = u"Cannot merge with NULL node!";
inline constexpr char16_t MergeOtherType[] = u"Cannot merge with node of different type!";
inline constexpr char16_t NullStream[] = u"Stream is NULL!";
inline constexpr char16_t NullArchive[] = u"Archive is NULL!";

}  // namespace KivGenerics::Texts
