// The code that Docs/guide.md shows: each marked region stands there word for word. Run, it shows that all of them do
// what the guide says of them; it ends with 1 where one does not.

#include <filesystem>
#include <iostream>
#include <string>
#include <utility>

#include <KivBase/Utf.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Children.h>
#include <KivGenerics/Exception.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/ToText.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>
#include <KivLogRouter/ResourceBundle.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>
#include <KivStorage/UnsavedParts.h>

#include "checks/Checks.h"
#include "guide/Person.h"
#include "guide/Walks.h"

namespace {

using namespace KivGenerics;
using Guide::GetPerson;
using Guide::MakePerson;
using GuideChecks::Checks;
using GuideChecks::TemporaryFile;

// [reading]
std::string DescribeNotes(Map* person) {
    std::string text;
    for (Node* note : Children(person->Get(2))) {
        text += ToText(note) + " at " + std::to_string(note->GetIndex()) + "; ";
    }
    if (const auto* const year = node_cast<Integer>(person->Get(1))) {
        text += "born " + std::to_string(year->Get());
    }
    return text;
}
// [/reading]

// [maps]
int CountSlotsOfTag4108(Tree* tree) {
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap, false, SemanticTag(4108)));
    map->NewNode(2, NodeTypeInteger);  // in the last of its three fixed slots
    map->NewNode(1000000, NodeTypeInteger);  // in the overflow store, which is made now
    return map->GetSlotCount();
}
// [/maps]

// [wrapping]
Vector* WrapInVector(Map* map, int index) {
    // What stood at `index` becomes child 0 of the new vector.
    return static_cast<Vector*>(map->NewNode(index, NodeTypeVector, true));
}
// [/wrapping]

// [temporality]
void AddCaches(Map* person) {
    auto* const shout = static_cast<String*>(person->NewNode(3, NodeTypeString));
    shout->Set(u"ADA LOVELACE");
    shout->SetTemporality(TemporalityTransient);  // saved only on request
    auto* const selected = static_cast<Boolean*>(person->NewNode(4, NodeTypeBoolean));
    selected->Set(true);
    selected->SetTemporality(TemporalityTemporary);  // never saved
}
// [/temporality]

// [copying]
void CopyPerson(Tree* target, Tree* source) {
    target->CopyFromTree(source);  // the whole tree; the old content of `target` goes
    auto* const root = static_cast<Map*>(target->GetRoot());
    root->ReplaceWithCopy(1, root->Get(0));  // a second one beside the first
    root->Get(1)->Populate(static_cast<Map*>(source->GetRoot())->Get(0));  // and its content once more
}
// [/copying]

// [moving]
void MoveToFront(Vector* vector, Node* node) {
    vector->Move(0, node);  // from wherever in the same tree it is
}
// [/moving]

// [merging]
std::string MergePersons(Tree* mine, Tree* theirs) {
    const bool agreed = mine->GetRoot()->MergeWith(theirs->GetRoot(), false);
    return agreed ? "nothing conflicted" : "something differs: mine was kept";
}
// [/merging]

// [comparing]
bool AreSameWhenSaved(Tree* left, Tree* right) {
    return left->GetRoot()->Compare(right->GetRoot(), TemporalityPersistent, true) == 0;
}
// [/comparing]

// [keys]
bool FindsItself(Tree* tree, Node* node) {
    KivBase::WString key;
    node->GetKey(key);  // "0:2:1:" for the second note
    return tree->FindNodeByKey(key) == node;
}
// [/keys]

// [readable-keys]
std::string GetReadableKey(Node* node) {
    constexpr int english = 9;
    // Tag 4108 has the message number 0x6030 + (4108 - 4096).
    KivLogRouter::GetDefaultResourceBundle().SetText(0x603C, english, u"person");
    KivBase::WString key;
    node->GetHumanReadableKey(english, key);
    return KivBase::ToUtf8(key);
}
// [/readable-keys]

// [forests]
KivBase::ReturnPtrI<Tree> MakeNeighbour(Tree* tree) {
    KivBase::ReturnPtrI<Tree> neighbour = tree->CreateTreeInForest();
    neighbour->CopyFromTree(tree);
    return neighbour;  // both live in one buffer, which goes with the last of them
}
// [/forests]

// [change-counts]
class UnsavedChanges {
public:
    explicit UnsavedChanges(Tree* tree) : tree_(tree), saved_(tree->GetChangeCount()) {}
    bool HasAny() const { return tree_->GetChangeCount() != saved_; }
    void WereSaved() { saved_ = tree_->GetChangeCount(); }

private:
    Tree* tree_;
    int saved_;
};
// [/change-counts]

// [errors]
std::string RenameCarefully(String* name, const char16_t* text) {
    try {
        name->Set(text);
        return "done";
    } catch (const ReadOnlyException& error) {
        return "locked: " + KivBase::ToUtf8(error.GetMessage());
    } catch (const Exception& error) {
        return "a mistake in this program: " + KivBase::ToUtf8(error.GetMessage());
    }
}
// [/errors]

// [saving]
std::string SaveOrExplain(Tree* tree, const std::filesystem::path& file) {
    for (const KivStorage::UnsavedPart& part : KivStorage::FindUnsavedParts(tree)) {
        std::cerr << part.sentence << "\n";
    }
    KivStorage::SaveOptions options;
    options.withTransient = true;
    const KivStorage::Result result = KivStorage::SaveTree(tree, file, options);
    return result.Ok() ? "saved" : result.sentence;
}
// [/saving]

// [loading]
KivBase::ReturnPtrI<Tree> LoadOrExplain(const std::filesystem::path& file) {
    KivStorage::LoadResult loaded = KivStorage::LoadTree(file);
    if (!loaded.result.Ok()) {
        std::cerr << loaded.result.sentence << "\n";
    }
    return std::move(loaded.tree);  // empty after a failure
}
// [/loading]

void CheckBuilding(Checks& checks) {
    const auto tree = MakePerson();
    checks.ExpectEqual(DescribeNotes(GetPerson(tree.Get())),
                       std::string("\"first program\" at 0; \"Bernoulli numbers\" at 1; born 1815"), "reading");
    const auto other = CreateGenericTree(EnumOrvObjectType(0));
    checks.ExpectEqual(CountSlotsOfTag4108(other.Get()), 3, "the slots of tag 4108");
    const auto* const map = node_cast<Map>(other->GetRoot());
    checks.Expect(map->HasOverflow() && map->Get(1000000) != nullptr, "a child in the overflow store");
    const Vector* const wrapper = WrapInVector(GetPerson(tree.Get()), 1);
    checks.ExpectEqual(ToText(wrapper->Get(0)), std::string("1815"), "the wrapped value");
    checks.ExpectEqual(static_cast<int>(GetPerson(tree.Get())->Get(1)->GetType()), static_cast<int>(NodeTypeVector),
                       "the wrapper in the place of the value");
}

void CheckTemporality(Checks& checks) {
    const auto tree = MakePerson();
    const auto plain = MakePerson();
    AddCaches(GetPerson(tree.Get()));
    checks.Expect(AreSameWhenSaved(tree.Get(), plain.Get()), "caches do not count for what is saved");
    checks.Expect(tree->GetRoot()->Compare(plain->GetRoot(), TemporalityTemporary, true) != 0,
                  "caches count otherwise");
    TemporaryFile file;
    checks.ExpectEqual(SaveOrExplain(tree.Get(), file.GetPath()), std::string("saved"), "saving");
    const auto loaded = LoadOrExplain(file.GetPath());
    checks.Expect(loaded && ToText(loaded->FindNodeByKey(u"0:3:")) == "\"ADA LOVELACE\"", "the transient node is back");
    checks.Expect(loaded && loaded->FindNodeByKey(u"0:4:") == nullptr, "the temporary node is not");
    tree->ClearTemporaryNodes();
    checks.Expect(tree->GetRoot()->Compare(plain->GetRoot(), TemporalityTemporary, true) == 0, "clearing");
}

void CheckCopyAndMerge(Checks& checks) {
    const auto source = MakePerson();
    const auto target = CreateGenericTree(EnumOrvObjectType(0));
    CopyPerson(target.Get(), source.Get());
    checks.ExpectEqual(ToText(target->FindNodeByKey(u"1:0:")), std::string("\"Ada Lovelace\""), "the copy");
    auto* const notes = node_cast<Vector>(target->FindNodeByKey(u"0:2:"));
    MoveToFront(notes, notes->Get(1));
    checks.ExpectEqual(ToText(notes->Get(0)), std::string("\"Bernoulli numbers\""), "the moved note");

    const auto mine = MakePerson();
    const auto theirs = MakePerson();
    GetPerson(mine.Get())->Remove(1);
    checks.ExpectEqual(MergePersons(mine.Get(), theirs.Get()), std::string("nothing conflicted"), "merging");
    checks.ExpectEqual(ToText(mine->FindNodeByKey(u"0:1:")), std::string("1815"), "the missing year was copied in");
    node_cast<Integer>(theirs->FindNodeByKey(u"0:1:"))->Set(1816);
    checks.ExpectEqual(MergePersons(mine.Get(), theirs.Get()), std::string("something differs: mine was kept"),
                       "a conflict");
    checks.ExpectEqual(ToText(mine->FindNodeByKey(u"0:1:")), std::string("1815"), "mine was kept");
    checks.Expect(!AreSameWhenSaved(mine.Get(), theirs.Get()), "comparing");
}

void CheckKeys(Checks& checks) {
    const auto tree = MakePerson();
    Node* const note = tree->FindNodeByKey(u"0:2:1:");
    checks.ExpectEqual(ToText(note), std::string("\"Bernoulli numbers\""), "the key of the second note");
    checks.Expect(FindsItself(tree.Get(), note), "a node finds itself by its key");
    GetPerson(tree.Get())->SetSemanticTag(SemanticTag(4108));
    checks.ExpectEqual(GetReadableKey(GetPerson(tree.Get())), std::string("person:"), "the readable key");
}

void CheckMemory(Checks& checks) {
    auto tree = MakePerson();
    const auto neighbour = MakeNeighbour(tree.Get());
    checks.Expect(neighbour->BufferQueryB() == tree->BufferQueryB(), "two trees of a forest share its buffer");
    tree.Reset();
    checks.ExpectEqual(ToText(neighbour->FindNodeByKey(u"0:1:")), std::string("1815"), "the forest outlives one tree");
}

void CheckChanges(Checks& checks) {
    const auto tree = MakePerson();
    UnsavedChanges changes(tree.Get());
    auto* const name = node_cast<String>(tree->FindNodeByKey(u"0:0:"));
    checks.ExpectEqual(RenameCarefully(name, u"Ada"), std::string("done"), "renaming");
    checks.Expect(changes.HasAny(), "a change counts");
    changes.WereSaved();
    tree->SetReadOnly();
    checks.ExpectEqual(RenameCarefully(name, u"Ada King"),
                       std::string("locked: Operation not allowed on a read-only tree!"), "a read-only tree");
    checks.Expect(!changes.HasAny(), "a refused change does not count");
}

}  // namespace

int main() {
    Checks checks;
    CheckBuilding(checks);
    CheckTemporality(checks);
    CheckCopyAndMerge(checks);
    Guide::CheckWalking(checks);
    CheckKeys(checks);
    CheckMemory(checks);
    CheckChanges(checks);
    Guide::CheckPrinting(checks);
    return checks.Finish();
}
