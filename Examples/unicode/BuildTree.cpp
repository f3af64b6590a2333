#include "BuildTree.h"

#include <KivBase/Utf.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Vector.h>

#include "Schema.h"

namespace UnicodeExample {

using namespace KivGenerics;

namespace {

/// Fills one tree; each operation makes one part of it.
class Builder {
public:
    Builder(const Database& database, int upToAge, Map* root) : database_(database), upToAge_(upToAge), root_(root) {}

    void BuildCodePoints();
    void BuildBlocks();
    void BuildFiles();
    void BuildTotals();
    void BuildNotes();

private:
    bool IsIncluded(std::uint32_t codePoint) const {
        const int age = database_.ageOf[codePoint];
        return age != 0 && age <= upToAge_;
    }
    void AddCodePoint(Map* parent, const Entry& entry, std::uint32_t codePoint, const KivBase::WString& name);
    void AddFields(Map* fields, const Entry& entry);
    void AddToGroups(const Entry& entry, std::uint32_t codePoint);
    void AddToGroup(IntegerSet*& members, Part part, int number, const std::string& name, std::uint32_t codePoint);
    void AddToInitials(const Entry& entry);
    void CountGroups(Part part);

    const Database& database_;
    int upToAge_;
    Map* root_;
    std::int64_t count_ = 0;
    DoubleSet::Elements numericValues_;
    std::vector<IntegerSet*> categories_ = std::vector<IntegerSet*>(30);
    std::vector<IntegerSet*> scripts_ = std::vector<IntegerSet*>(database_.scripts.size());
    std::vector<IntegerSet*> initials_ = std::vector<IntegerSet*>(26);
};

void SetText(Composite* parent, int index, const std::string& text) {
    New<String>(parent, index)->Set(KivBase::FromUtf8(text));
}

void SetNumber(Composite* parent, int index, std::int32_t value) {
    New<Integer>(parent, index)->Set(value);
}

void SetMapping(Composite* parent, int index, const std::optional<std::int32_t>& codePoint) {
    if (codePoint) {
        SetNumber(parent, index, *codePoint);
    }
}

void Builder::AddFields(Map* fields, const Entry& entry) {
    if (entry.combiningClass != 0) {
        SetNumber(fields, FieldCombiningClass, entry.combiningClass);
    }
    if (!entry.decomposition.empty()) {
        auto* const vector = New<Vector>(fields, FieldDecomposition);
        vector->Reserve(static_cast<int>(entry.decomposition.size()));
        for (const std::int32_t codePoint : entry.decomposition) {
            static_cast<Integer*>(vector->Add(NodeTypeInteger))->Set(codePoint);
        }
    }
    if (!entry.decompositionKind.empty()) {
        SetText(fields, FieldDecompositionKind, entry.decompositionKind);
    }
    if (entry.numericValue) {
        New<Double>(fields, FieldNumericValue)->Set(*entry.numericValue);
        numericValues_.insert(*entry.numericValue);
    }
    if (entry.mirrored) {
        New<Boolean>(fields, FieldMirrored)->Set(true);
    }
    SetMapping(fields, FieldUppercase, entry.uppercase);
    SetMapping(fields, FieldLowercase, entry.lowercase);
    SetMapping(fields, FieldTitlecase, entry.titlecase);
}

void Builder::AddToGroup(IntegerSet*& members, Part part, int number, const std::string& name,
                         std::uint32_t codePoint) {
    if (members == nullptr) {
        auto* const group = New<Map>(static_cast<Composite*>(root_->Get(part)), number, TagGroup);
        SetText(group, GroupName, name);
        members = New<IntegerSet>(group, GroupMembers);
    }
    members->Add(static_cast<std::int32_t>(codePoint));
}

void Builder::AddToGroups(const Entry& entry, std::uint32_t codePoint) {
    const auto category = static_cast<std::size_t>(entry.category);
    AddToGroup(categories_[category], PartCategories, entry.category, CategoryNames[category], codePoint);
    const std::int16_t script = database_.scriptOf[codePoint];
    if (script >= 0) {
        const auto at = static_cast<std::size_t>(script);
        AddToGroup(scripts_[at], PartScripts, script, database_.scripts[at], codePoint);
    }
}

/// A cache that saves a walk over all names: made again after a load, so it need not be saved.
void Builder::AddToInitials(const Entry& entry) {
    const char letter = entry.name.empty() ? '<' : entry.name.front();
    if (letter < 'A' || letter > 'Z') {
        return;
    }
    IntegerSet*& members = initials_[static_cast<std::size_t>(letter - 'A')];
    if (members == nullptr) {
        members = New<IntegerSet>(static_cast<Composite*>(root_->Get(PartInitials)), letter - 'A');
    }
    members->Add(static_cast<std::int32_t>(entry.first));
}

void Builder::AddCodePoint(Map* parent, const Entry& entry, std::uint32_t codePoint, const KivBase::WString& name) {
    auto* const fields = New<Map>(parent, static_cast<int>(codePoint), entry.isRange ? TagInRange : TagCharacter);
    New<String>(fields, FieldName)->Set(name);
    SetNumber(fields, FieldCategory, entry.category);
    SetNumber(fields, FieldAge, database_.ageOf[codePoint]);
    AddFields(fields, entry);
    AddToGroups(entry, codePoint);
    ++count_;
}

void Builder::CountGroups(Part part) {
    auto* const groups = static_cast<Map*>(root_->Get(part));
    for (Node* group = groups->GetNext(-1); group != nullptr; group = groups->GetNext(group->GetIndex())) {
        auto* const fields = static_cast<Map*>(group);
        New<Integer64>(fields, GroupCount)->Set(static_cast<IntegerSet*>(fields->Get(GroupMembers))->Count());
    }
}

void Builder::BuildCodePoints() {
    auto* const codePoints = New<Map>(root_, PartCodePoints, TagCodePoints);
    New<Map>(root_, PartCategories, TagGroups);
    New<Map>(root_, PartScripts, TagGroups);
    New<Map>(root_, PartInitials, TagGroups)->SetTemporality(TemporalityTransient);
    for (const Entry& entry : database_.entries) {
        const KivBase::WString name = KivBase::FromUtf8(entry.name);
        for (std::uint32_t codePoint = entry.first; codePoint <= entry.last; ++codePoint) {
            if (IsIncluded(codePoint)) {
                AddCodePoint(codePoints, entry, codePoint, name);
            }
        }
        if (IsIncluded(entry.first)) {
            AddToInitials(entry);
        }
    }
    CountGroups(PartCategories);
    CountGroups(PartScripts);
}

void Builder::BuildBlocks() {
    auto* const blocks = New<Vector>(root_, PartBlocks);
    const auto* const codePoints = static_cast<Map*>(root_->Get(PartCodePoints));
    for (const Block& block : database_.blocks) {
        std::int32_t assigned = 0;
        for (std::uint32_t codePoint = block.first; codePoint <= block.last; ++codePoint) {
            assigned += codePoints->Get(static_cast<int>(codePoint)) != nullptr ? 1 : 0;
        }
        if (assigned == 0) {
            continue;  // of a later version
        }
        auto* const fields = static_cast<Map*>(blocks->Add(NodeTypeMap, TagBlock));
        SetText(fields, BlockName, block.name);
        SetNumber(fields, BlockFirst, static_cast<std::int32_t>(block.first));
        SetNumber(fields, BlockLast, static_cast<std::int32_t>(block.last));
        auto* const count = New<Integer>(fields, BlockAssigned);
        count->Set(assigned);
        count->SetTemporality(TemporalityTransient);
    }
}

void Builder::BuildFiles() {
    auto* const files = New<Map>(root_, PartFiles, TagFiles);
    auto* const ids = New<IdSet>(files, FilesIds);
    int index = 0;
    for (const SourceFile& file : database_.files) {
        auto* const fields = New<Map>(files, index++, TagFile);
        SetText(fields, FileName, file.name);
        New<GlobalID>(fields, FileId)->Set(file.id);
        New<Integer64>(fields, FileBytes)->Set(file.bytes);
        SetNumber(fields, FileLines, file.lines);
        ids->Add(file.id);
    }
}

void Builder::BuildTotals() {
    auto* const totals = New<Map>(root_, PartTotals, TagTotals);
    SetText(totals, TotalsVersion, upToAge_ == AnyAge ? database_.version : FormatAge(upToAge_));
    New<Integer64>(totals, TotalsCodePoints)->Set(count_);
    std::int64_t bytes = 0;
    for (const SourceFile& file : database_.files) {
        bytes += file.bytes;
    }
    New<Integer64>(totals, TotalsTextBytes)->Set(bytes);
    auto* const names = New<StringSet>(totals, TotalsScriptNames);
    for (std::size_t i = 0; i < scripts_.size(); ++i) {
        if (scripts_[i] != nullptr) {
            names->Add(KivBase::FromUtf8(database_.scripts[i]));
        }
    }
    New<DoubleSet>(totals, TotalsNumericValues)->Set(numericValues_);
}

/// What only this run of the program cares for.
void Builder::BuildNotes() {
    auto* const notes = New<Map>(root_, PartNotes, TagNotes);
    notes->SetTemporality(TemporalityTemporary);
    SetText(notes, NotesDirectory, database_.directory.string());
    SetText(notes, NotesPurpose, "built to be looked at; nothing here is saved");
    auto* const codePoints = static_cast<Map*>(root_->Get(PartCodePoints));
    for (const int codePoint : {0x41, 0xDF, 0x20AC}) {
        if (auto* const fields = static_cast<Map*>(codePoints->Get(codePoint))) {
            SetText(fields, FieldNote, "a good one to look up");
            fields->Get(FieldNote)->SetTemporality(TemporalityTemporary);
        }
    }
}

}  // namespace

std::string FormatAge(int age) {
    return std::to_string(age / 100) + "." + std::to_string(age % 100);
}

KivBase::ReturnPtrI<Tree> BuildTree(const Database& database, int upToAge) {
    // 55 is the object type with the largest blocks.
    KivBase::ReturnPtrI<Tree> tree = CreateGenericTree(EnumOrvObjectType(55));
    if (!tree) {
        throw std::bad_alloc();
    }
    Builder builder(database, upToAge, static_cast<Map*>(tree->NewRoot(NodeTypeMap, false, TagRoot)));
    builder.BuildCodePoints();
    builder.BuildBlocks();
    builder.BuildFiles();
    builder.BuildTotals();
    builder.BuildNotes();
    return tree;
}

}  // namespace UnicodeExample
