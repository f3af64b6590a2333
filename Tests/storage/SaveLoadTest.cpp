#include <KivGenerics/Integer.h>
#include <KivGenerics/String.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/MemoryWriteStream.h>
#include <KivStorage/SaveTree.h>
#include <gtest/gtest.h>

#include "storage/Support.h"

using namespace KivGenerics;
using namespace KivStorage;
using namespace StorageTest;

namespace {

using Names = std::vector<std::string>;

/// A chain of maps of so many levels, root included, with a value in the last one.
KivBase::ReturnPtrI<Tree> Chain(int levels) {
    auto tree = NewTree();
    Map* map = NewRootMap(tree.Get());
    for (int level = 1; level < levels; ++level) {
        map = static_cast<Map*>(map->NewNode(0, NodeTypeMap));
    }
    static_cast<Integer*>(map->NewNode(1, NodeTypeInteger))->Set(levels);
    return tree;
}

LoadResult Load(const Bytes& bytes, const LoadOptions& options = {}) {
    return LoadTreeFromMemory(bytes.data(), bytes.size(), options);
}

TEST(SaveLoadTest, ATreeComesBackFromAFileAsItWas) {
    const Folder folder;
    const auto tree = TreeOfEveryKind();
    const Result saved = SaveTree(tree.Get(), folder / "tree");
    EXPECT_EQ(0, saved.code);
    EXPECT_EQ("", saved.sentence);
    const LoadResult loaded = LoadTree(folder / "tree");
    EXPECT_EQ(0, loaded.result.code);
    EXPECT_EQ("", loaded.result.sentence);
    ASSERT_NE(nullptr, loaded.tree.Get());
    EXPECT_EQ(Describe(tree.Get()), Describe(loaded.tree.Get()));
    EXPECT_EQ(0, tree->GetRoot()->Compare(loaded.tree->GetRoot(), TemporalityPersistent, true));
    EXPECT_FALSE(loaded.tree->IsReadOnly());
    EXPECT_EQ(Names{"tree"}, folder.GetNames());
}

TEST(SaveLoadTest, MemoryAndFileHoldTheSame) {
    const Folder folder;
    const auto tree = TreeOfEveryKind();
    Bytes bytes = Text("what was there goes");
    ASSERT_EQ("", SaveTreeToMemory(tree.Get(), bytes).sentence);
    ASSERT_EQ("", SaveTree(tree.Get(), folder / "tree").sentence);
    EXPECT_TRUE(bytes == ReadFile(folder / "tree"));
    EXPECT_EQ(Describe(tree.Get()), Describe(Load(bytes).tree.Get()));
}

TEST(SaveLoadTest, AnEmptyTreeComesBackEmpty) {
    Bytes bytes;
    ASSERT_EQ("", SaveTreeToMemory(NewTree().Get(), bytes).sentence);
    EXPECT_EQ(24u + 12u + 9u + 44u, bytes.size());
    const LoadResult loaded = Load(bytes);
    ASSERT_EQ("", loaded.result.sentence);
    EXPECT_TRUE(loaded.tree->IsEmpty());
}

TEST(SaveLoadTest, TransientNodesAreSavedWhenTheSaveAsksForThem) {
    const auto tree = TreeOfEveryKind();
    auto* const map = static_cast<Map*>(static_cast<Map*>(tree->GetRoot())->Get(0));
    map->NewNode(50, NodeTypeInteger)->SetTemporality(TemporalityTransient);
    map->NewNode(51, NodeTypeInteger)->SetTemporality(TemporalityTemporary);
    Bytes bytes;
    ASSERT_EQ("", SaveTreeToMemory(tree.Get(), bytes).sentence);
    EXPECT_EQ(std::string::npos, Describe(Load(bytes).tree.Get(), true).find("0:50:"));
    SaveOptions options;
    options.withTransient = true;
    ASSERT_EQ("", SaveTreeToMemory(tree.Get(), bytes, options).sentence);
    const std::string text = Describe(Load(bytes).tree.Get(), true);
    EXPECT_NE(std::string::npos, text.find("0:50: Integer tag 1 transient = 0\n"));
    EXPECT_EQ(std::string::npos, text.find("0:51:"));
}

TEST(SaveLoadTest, NoTreeIsAClearError) {
    const Folder folder;
    Bytes bytes = Text("kept");
    EXPECT_EQ(StorageNoTree, SaveTree(nullptr, folder / "tree").code);
    EXPECT_EQ("There is no tree to save (memory). This is a mistake of the calling program.",
              SaveTreeToMemory(nullptr, bytes).sentence);
    EXPECT_EQ(Text("kept"), bytes);
    EXPECT_EQ(Names{}, folder.GetNames());
}

TEST(SaveLoadTest, LossesAreRefusedWithTheFirstOfThemAndTheOldFileStands) {
    const Folder folder;
    WriteFile(folder / "tree", Text("old"));
    const auto tree = NewTree();
    Map* const root = NewRootMap(tree.Get());
    for (int i = 0; i < 5; ++i) {
        root->NewNode(i, NodeTypeInteger);
    }
    const Result result = SaveTree(tree.Get(), folder / "tree");
    EXPECT_EQ(StorageUnsavedParts, result.code);
    EXPECT_EQ("A save would lose or alter parts of this tree (file \"" + (folder / "tree").string() +
                  "\": 5 parts, at \"0:\": A value stands directly in the root: the saved tree would not load; "
                  "at \"1:\": A value stands directly in the root: the saved tree would not load; "
                  "at \"2:\": A value stands directly in the root: the saved tree would not load; and 2 more). "
                  "Change them, or save despite the losses.",
              result.sentence);
    EXPECT_EQ(Text("old"), ReadFile(folder / "tree"));
    EXPECT_EQ(Names{"tree"}, folder.GetNames());
    EXPECT_FALSE(tree->IsReadOnly());
}

TEST(SaveLoadTest, ToldToGoOnASaveWritesWhatItCan) {
    const auto tree = TreeOfEveryKind();
    static_cast<Map*>(tree->GetRoot())->NewNode(1, NodeTypeMap)->SetTemporality(TemporalityDefault);
    Bytes bytes;
    EXPECT_EQ(StorageUnsavedParts, SaveTreeToMemory(tree.Get(), bytes).code);
    EXPECT_EQ(0u, bytes.size());
    SaveOptions options;
    options.saveDespiteLosses = true;
    ASSERT_EQ("", SaveTreeToMemory(tree.Get(), bytes, options).sentence);
    EXPECT_EQ(303u, bytes.size());
}

TEST(SaveLoadTest, ARootThatIsNoMapIsRefusedEvenWhenToldToGoOnAndTheTreeStaysWritable) {
    const auto tree = NewTree();
    tree->NewRoot(NodeTypeVector)->SetTemporality(TemporalityPersistent);
    SaveOptions options;
    options.saveDespiteLosses = true;
    Bytes bytes;
    const Result result = SaveTreeToMemory(tree.Get(), bytes, options);
    EXPECT_EQ(static_cast<std::int32_t>(0x80004001), result.code);
    EXPECT_EQ("Only a map can be saved as the root of a tree (memory). Put the root into a map.", result.sentence);
    EXPECT_FALSE(tree->IsReadOnly());
    // A root that is left out is none to be saved.
    tree->GetRoot()->SetTemporality(TemporalityTransient);
    EXPECT_EQ("", SaveTreeToMemory(tree.Get(), bytes, options).sentence);
    EXPECT_TRUE(Load(bytes).tree->IsEmpty());
}

TEST(SaveLoadTest, ASaveLeavesATreeWritableThatWasReadOnly) {
    const auto tree = TreeOfEveryKind();
    tree->SetReadOnly();
    Bytes bytes;
    ASSERT_EQ("", SaveTreeToMemory(tree.Get(), bytes).sentence);
    EXPECT_FALSE(tree->IsReadOnly());
}

TEST(SaveLoadTest, ATreeOfAThousandLevelsComesBackAndADeeperOneIsNotSaved) {
    const auto deepest = Chain(1000);
    Bytes bytes;
    ASSERT_EQ("", SaveTreeToMemory(deepest.Get(), bytes).sentence);
    const LoadResult loaded = Load(bytes);
    ASSERT_EQ("", loaded.result.sentence);
    EXPECT_EQ(0, deepest->GetRoot()->Compare(loaded.tree->GetRoot(), TemporalityPersistent, true));
    EXPECT_EQ(StorageUnsavedParts, SaveTreeToMemory(Chain(1001).Get(), bytes).code);
}

TEST(SaveLoadTest, ToldToGoOnATreeIsSavedToAsManyLevelsAsTheStackIsGoodFor) {
    SaveOptions options;
    options.saveDespiteLosses = true;
    Bytes bytes;
    ASSERT_EQ("", SaveTreeToMemory(Chain(4000).Get(), bytes, options).sentence);
    // The tree stops at its own limit, two objects before the stream would at its default one, whatever the options say.
    const LoadResult loaded = Load(bytes);
    EXPECT_EQ(static_cast<std::int32_t>(0x800703E9), loaded.result.code);
    LoadOptions deep;
    deep.limits.nesting = 5000;
    EXPECT_EQ(static_cast<std::int32_t>(0x800703E9), Load(bytes, deep).result.code);
    EXPECT_NE(std::string::npos, loaded.result.sentence.find("more than 1,000 levels deep (memory, block 1, byte "))
        << loaded.result.sentence;
    EXPECT_EQ(nullptr, loaded.tree.Get());
    EXPECT_EQ(StorageTreeTooDeep, SaveTreeToMemory(Chain(4001).Get(), bytes, options).code);
    EXPECT_EQ(StorageUnsavedParts, SaveTreeToMemory(Chain(4001).Get(), bytes).code);
}

TEST(SaveLoadTest, ASetAtTheDeepestLevelComesBack) {
    const auto tree = Chain(999);
    Composite* map = static_cast<Map*>(tree->GetRoot());
    while (map->Get(0) != nullptr) {
        map = static_cast<Map*>(map->Get(0));
    }
    static_cast<Map*>(map->NewNode(0, NodeTypeMap))->NewNode(0, NodeTypeIntegerSet);
    Bytes bytes;
    ASSERT_EQ("", SaveTreeToMemory(tree.Get(), bytes).sentence);
    EXPECT_EQ("", Load(bytes).result.sentence);
}

TEST(SaveLoadTest, TheLimitsAreThoseOfTheOptions) {
    Bytes bytes;
    ASSERT_EQ("", SaveTreeToMemory(Chain(10).Get(), bytes).sentence);
    LoadOptions options;
    options.limits.nesting = 10;
    EXPECT_EQ(0, Load(bytes, options).result.code);
    options.limits.nesting = 8;
    EXPECT_EQ(StorageNestingTooDeep, Load(bytes, options).result.code);
    options = {};
    options.limits.totalBytes = bytes.size() - 1;
    EXPECT_EQ(StorageTooManyBytes, Load(bytes, options).result.code);
    options = {};
    options.limits.stringUnits = 3;
    ASSERT_EQ("", SaveTreeToMemory(TreeOfEveryKind().Get(), bytes).sentence);
    EXPECT_EQ(StorageTextTooLong, Load(bytes, options).result.code);
    options.limits.stringUnits = 4;
    EXPECT_EQ(0, Load(bytes, options).result.code);
}

TEST(SaveLoadTest, ATextOf256000UnitsComesBack) {
    const auto tree = TreeOfEveryKind();
    auto* const map = static_cast<Map*>(static_cast<Map*>(tree->GetRoot())->Get(0));
    static_cast<String*>(map->Get(3))->Set(KivBase::WString(256000, u'\u20AC'));
    Bytes bytes;
    ASSERT_EQ("", SaveTreeToMemory(tree.Get(), bytes).sentence);
    const LoadResult loaded = Load(bytes);
    ASSERT_EQ("", loaded.result.sentence);
    EXPECT_EQ(Describe(tree.Get()), Describe(loaded.tree.Get()));
}

TEST(SaveLoadTest, AFileThatIsNotThereGivesNoTree) {
    const Folder folder;
    const LoadResult loaded = LoadTree(folder / "tree");
    EXPECT_EQ(StorageFileNotFound, loaded.result.code);
    EXPECT_EQ(nullptr, loaded.tree.Get());
}

TEST(SaveLoadTest, AnUnwritablePlaceIsReported) {
    const Folder folder;
    EXPECT_EQ(StorageFileNotCreated, SaveTree(TreeOfEveryKind().Get(), folder.GetPath() / "no" / "tree").code);
    EXPECT_EQ(StorageNotAFile, SaveTree(TreeOfEveryKind().Get(), folder.GetPath()).code);
}

TEST(SaveLoadTest, ItemsBehindTheTreeAreRefused) {
    const Bytes bytes = Frame(FromHex("07 00 00 01 00 00 00 00 08 01 00 00 00 00"), 4);
    const LoadResult loaded = Load(bytes);
    EXPECT_EQ(StorageItemsLeft, loaded.result.code);
    EXPECT_EQ(nullptr, loaded.tree.Get());
}

TEST(SaveLoadTest, DataThatHoldNoTreeAreRefused) {
    EXPECT_EQ(static_cast<std::int32_t>(0x8004119A), Load(Frame({}, 0)).result.code);
    EXPECT_EQ(StorageValueStands, Load(Frame(FromHex("01 00 00 00 00"), 1)).result.code);
    EXPECT_EQ(StorageObjectEnds, Load(Frame(FromHex("07 00 00 08"), 2)).result.code);
    EXPECT_EQ(StorageValueStands, Load(Frame(FromHex("07 00 00 01 00 00 00 00 01 00 00 00 00 08"), 4)).result.code);
    EXPECT_EQ(
        "An object is missing, or is not the expected one (memory, block 1, byte 24). "
        "Load the data with the program that saved them.",
        Load(Frame({}, 0)).result.sentence);
}

TEST(SaveLoadTest, WhatTheTreeThrowsBecomesACode) {
    // A root of a kind that no node has.
    const LoadResult loaded = Load(Frame(FromHex("07 00 00 01 00 00 00 00 07 0D 02 08 08"), 5));
    EXPECT_EQ(StorageTreeRefused, loaded.result.code);
    EXPECT_EQ(
        "The tree refused what it was given (Invalid node type!). Load the data with the program that saved them.",
        loaded.result.sentence);
    EXPECT_EQ(nullptr, loaded.tree.Get());
}

TEST(SaveLoadTest, ACountWithNothingBehindItReservesNothingAndIsRefused) {
    // A vector of 2^31 - 1 integers of which none follows, and a map of as many children.
    EXPECT_EQ(
        StorageObjectEnds,
        Load(Frame(FromHex("07 00 00 01 00 00 00 00 07 FE 05 01 FF FF FF 7F 01 00 00 00 81 08 08"), 7)).result.code);
    EXPECT_EQ(
        StorageObjectEnds,
        Load(Frame(FromHex("07 00 00 01 00 00 00 00 07 FF 05 01 FF 7F 01 00 01 00 00 FF FF 08 08"), 7)).result.code);
}

}  // namespace
