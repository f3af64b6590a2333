#pragma once

#include <KivGenerics/Composite.h>
#include <KivGenerics/SemanticTag.h>

/// Where everything stands in the tree of the Unicode Character Database.
///
/// A save keeps of the root only composites in its fixed slots, so every part is a composite of its own and the code
/// points stand one level below. Tags are chosen by the number of fixed slots that a map made with them gets: as many
/// as the map has fields, so that a field costs no overflow store.
namespace UnicodeExample {

constexpr KivGenerics::SemanticTag Tag(int number) {
    return static_cast<KivGenerics::SemanticTag>(number);
}

constexpr KivGenerics::SemanticTag TagRoot = Tag(4098);  // 8 slots: the parts
constexpr KivGenerics::SemanticTag TagCodePoints = Tag(4162);  // 1 slot, and expected to have an overflow store
constexpr KivGenerics::SemanticTag TagCharacter = Tag(28675);  // 11 slots: a code point with a line of its own
constexpr KivGenerics::SemanticTag TagInRange = Tag(28682);  // 3 slots: one of a range, with the first three fields
constexpr KivGenerics::SemanticTag TagGroups = Tag(4107);  // 16 slots: categories, scripts, initials
constexpr KivGenerics::SemanticTag TagGroup = Tag(4108);  // 3 slots
constexpr KivGenerics::SemanticTag TagBlock = Tag(4153);  // 4 slots
constexpr KivGenerics::SemanticTag TagFiles = Tag(4342);  // 5 slots
constexpr KivGenerics::SemanticTag TagFile = Tag(4154);  // 4 slots
constexpr KivGenerics::SemanticTag TagTotals = Tag(4262);  // 5 slots
constexpr KivGenerics::SemanticTag TagNotes = Tag(4157);  // 2 slots

/// The root's children.
enum Part : int {
    PartCodePoints,  ///< Map: code point -> Map of fields
    PartCategories,  ///< Map: number of the general category -> group
    PartScripts,  ///< Map: number of the script in alphabetical order -> group
    PartBlocks,  ///< Vector of blocks, in the order of the file
    PartFiles,  ///< Map: the files that were read
    PartTotals,  ///< Map: figures of the whole
    PartInitials,  ///< Map, transient: first letter of a name - 'A' -> IntegerSet of code points
    PartNotes,  ///< Map, temporary: notes for whoever looks at the tree now
    PartCount,
};

/// The fields of a code point; what has its default value is absent. A range's member has the first three.
enum CodePointField : int {
    FieldName,  ///< String
    FieldCategory,  ///< Integer, an index of PartCategories
    FieldAge,  ///< Integer, the version it was assigned in: 100 * major + minor
    FieldCombiningClass,  ///< Integer
    FieldDecomposition,  ///< Vector of Integer
    FieldDecompositionKind,  ///< String, such as "font"; absent for a canonical decomposition
    FieldNumericValue,  ///< Double
    FieldMirrored,  ///< Boolean
    FieldUppercase,  ///< Integer, as the next two
    FieldLowercase,
    FieldTitlecase,
    FieldNote,  ///< String, temporary: beyond the fixed slots
};

enum GroupField : int {
    GroupName,  ///< String
    GroupMembers,  ///< IntegerSet of code points
    GroupCount,  ///< Integer64
};

enum BlockField : int {
    BlockName,  ///< String
    BlockFirst,  ///< Integer
    BlockLast,  ///< Integer
    BlockAssigned,  ///< Integer, transient: how many of its code points are assigned
};

enum FileField : int {
    FileName,  ///< String
    FileId,  ///< GlobalID, made from the file's bytes
    FileBytes,  ///< Integer64
    FileLines,  ///< Integer
};
constexpr int FilesIds = 4;  ///< in PartFiles, after the files: IdSet of their ids

enum TotalsField : int {
    TotalsVersion,  ///< String
    TotalsCodePoints,  ///< Integer64
    TotalsTextBytes,  ///< Integer64
    TotalsScriptNames,  ///< StringSet
    TotalsNumericValues,  ///< DoubleSet
};

enum NotesField : int {
    NotesDirectory,  ///< String
    NotesPurpose,  ///< String
};

/// A new child of `parent`, as the class of its kind.
template <class T>
T* New(KivGenerics::Composite* parent, int index, KivGenerics::SemanticTag tag = KivGenerics::SemanticTagNone) {
    return static_cast<T*>(parent->NewNode(index, T::StaticType, false, tag));
}

}  // namespace UnicodeExample
