#include <KivGenerics/ResultCode.h>
#include <KivStorage/MemoryWriteStream.h>

#include "model/Steps.h"

using namespace KivGenerics;

namespace Model {
namespace {

void RunNewRoot(World& world, Choices& choices) {
    Pair& pair = choices.AnyTree();
    const NodeType type = choices.Below(4) != 3 ? NodeTypeMap : choices.AnyType();
    const bool keepOld = choices.Below(4) != 3;
    const SemanticTag tag = choices.AnyTag();
    world.Both([&] { return pair.library->NewRoot(type, keepOld, tag); },
               [&] { return &NewRoot(*pair.model, type, keepOld, tag); });
}

void RunSetRoot(World& world, Choices& choices) {
    Pair& pair = choices.AnyTree();
    Item* const item = choices.OneIn(16) ? nullptr : choices.AnyItem();
    world.Both([&] { pair.library->SetRoot(TwinOf(item)); }, [&] { SetRoot(*pair.model, item); });
}

void RunRemoveRoot(World& world, Choices& choices) {
    Pair& pair = choices.AnyTree();
    world.Both([&] { pair.library->RemoveRoot(); }, [&] { RemoveRoot(*pair.model); });
}

void RunCopyFromTree(World& world, Choices& choices) {
    Pair& pair = choices.AnyTree();
    Pair& other = choices.AnyTree();
    const bool none = choices.OneIn(16);
    world.Both([&] { return pair.library->CopyFromTree(none ? nullptr : other.library.Get()); },
               [&] { return CopyFromTree(*pair.model, none ? nullptr : other.model.get()); });
}

void RunCopyFromNode(World& world, Choices& choices) {
    Pair& pair = choices.AnyTree();
    Item* const source = choices.AnyItem();
    world.Both([&] { return pair.library->CopyFromNode(TwinOf(source)); },
               [&] { return &CopyFromNode(*pair.model, source); });
}

void RunClearTemporaryNodes(World& world, Choices& choices) {
    Pair& pair = choices.AnyTree();
    world.Both([&] { pair.library->ClearTemporaryNodes(); }, [&] { ClearTemporaryNodes(*pair.model); });
}

void RunUpdate(World& world, Choices& choices) {
    Pair& pair = choices.AnyTree();
    world.Both([&] { pair.library->UpdateDerivedTemporality(); }, [&] { Update(*pair.model); });
}

void RunResetChangeCount(World& world, Choices& choices) {
    Pair& pair = choices.AnyTree();
    world.Both([&] { pair.library->ResetChangeCount(); },
               [&] {
                   Guard(*pair.model);
                   pair.model->changes = 0;
               });
}

// Reading alone is left in between, so read-only trees are not made often.
void RunSetReadOnly(World&, Choices& choices) {
    Pair& pair = choices.AnyTree();
    if (choices.OneIn(8)) {
        pair.library->SetReadOnly();
        pair.model->readOnly = true;
    }
}

// Only a save makes a tree writable again; one that fails in the root leaves it locked.
void RunSave(World& world, Choices& choices) {
    Pair& pair = choices.AnyTree();
    const bool withTransient = choices.Below(2) == 1;
    world.Both(
        [&] {
            const auto stream = KivStorage::MemoryWriteStream::Create();
            return std::int64_t{pair.library->SaveToStream(stream.Get(), withTransient)};
        },
        [&] {
            Tree& tree = *pair.model;
            Update(tree);
            const bool written = tree.root && tree.root->derived <= (withTransient ? 3 : 2);
            const bool failed = written && !tree.root->IsMap();
            tree.readOnly = tree.root ? failed : tree.readOnly;
            return std::int64_t{failed ? ResultNotImplemented : 0};
        });
}

void RunRenew(World& world, Choices& choices) {
    const std::uint32_t i = choices.Below(World::kTrees);
    if (world.At(i).model->readOnly || choices.OneIn(32)) {
        world.Renew(i);
    }
}

void RunFindNodeByKey(World& world, Choices& choices) {
    Pair& pair = choices.AnyTree();
    const Item* const item = choices.AnyItem();
    Text key = item != nullptr ? GetKey(*item) : Text();
    constexpr char16_t kEnds[][12] = {u"", u"", u"0:", u"7", u"x", u"4294967297:", u":"};
    key += kEnds[choices.Below(7)];
    world.Both([&] { return pair.library->FindNodeByKey(ToLibrary(key)); },
               [&] { return FindByKey(*pair.model, key); });
}

}  // namespace

const std::vector<Operation> kTreeOperations = {
    {"NewRoot", 8, RunNewRoot},
    {"SetRoot", 2, RunSetRoot},
    {"RemoveRoot", 1, RunRemoveRoot},
    {"CopyFromTree", 1, RunCopyFromTree},
    {"CopyFromNode", 2, RunCopyFromNode},
    {"ClearTemporaryNodes", 1, RunClearTemporaryNodes},
    {"UpdateDerivedTemporality", 8, RunUpdate},
    {"ResetChangeCount", 2, RunResetChangeCount},
    {"SetReadOnly", 1, RunSetReadOnly},
    {"Save", 8, RunSave},
    {"NewTree", 2, RunRenew},
    {"FindNodeByKey", 6, RunFindNodeByKey},
};

}  // namespace Model
