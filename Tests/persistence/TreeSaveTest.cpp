// How a whole tree is saved and sized.

#include <KivGenerics/Double.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/String.h>
#include <gtest/gtest.h>

#include "persistence/Archives.h"
#include "persistence/Streams.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

constexpr auto kNotImplemented = static_cast<std::int32_t>(0x80004001);

const Calls kEnvelope = {"Begin 0000", "Long 00000000", "End"};
const Calls kEmptyVector = {"Begin 0406", "Long 00000000", "End"};
const Calls kRoot = {"Begin 0207", "Long 00640100", "Begin 0406", "Long 00014100", "Long 00000007", "End", "End"};

/// A map tagged 100 with a vector of one integer in slot 0.
class TreeSaveTest : public testing::Test {
protected:
    TreeSaveTest() { AppendValue<Integer>(*Put<Vector>(GetRoot(), 0), 7); }

    Map& GetRoot() const { return tree_.GetRoot(); }
    Tree& GetTree() const { return *tree_; }

private:
    MapTree tree_{100};
};

TEST_F(TreeSaveTest, AnEmptyTreeIsTheEnvelopeAlone) {
    const auto tree = CreateGenericTree(EnumOrvObjectType{});
    EXPECT_EQ(kEnvelope, SaveOf(*tree));
    EXPECT_EQ(0, tree->GetChangeCount());
}

TEST_F(TreeSaveTest, TheRootStandsInTheEnvelope) {
    EXPECT_EQ(InEnvelope(kRoot), SaveOf(GetTree()));
}

TEST_F(TreeSaveTest, TheStreamFormMakesTheSameCalls) {
    RecordingStream stream;
    EXPECT_EQ(0, GetTree().SaveToStream(&stream, false));
    EXPECT_EQ((Calls{"PutBegin 0000", "PutLong 00000000", "PutBegin 0207", "PutLong 00640100", "PutBegin 0406",
                     "PutLong 00014100", "PutLong 00000007", "PutEnd", "PutEnd", "PutEnd"}),
              stream.calls);
    EXPECT_TRUE(stream.references.AreBalanced());
}

TEST_F(TreeSaveTest, TheStreamFormSetsAllSlotFlags) {
    for (int i = 1; i <= 3; ++i) {
        Put<Vector>(GetRoot(), i);
    }
    RecordingStream stream;
    EXPECT_EQ(0, GetTree().SaveToStream(&stream, true));
    ASSERT_EQ(20U, stream.calls.size());
    EXPECT_EQ("PutLong 00640400", stream.calls[3]);
    EXPECT_EQ("PutLong 01020300", stream.calls[4]);
}

TEST_F(TreeSaveTest, TheArchiveFormPassesTheSlotFlagsOn) {
    Put<Vector>(GetRoot(), 3);
    EXPECT_EQ(InEnvelope(Calls{"Begin 0207", "Long 00640203"} + kEmptyVector + Calls{"End"}),
              SaveOf(GetTree(), true, 0));
}

TEST_F(TreeSaveTest, TheLimitIsPassedOn) {
    Put<Vector>(GetRoot(), 1)->SetTemporality(TemporalityTransient);
    EXPECT_EQ(InEnvelope(kRoot), SaveOf(GetTree(), false));
    EXPECT_EQ("Long 00640200", SaveOf(GetTree(), true)[3]);
}

TEST_F(TreeSaveTest, ARootBeyondTheLimitIsNotSaved) {
    GetRoot().SetTemporality(TemporalityTransient);
    EXPECT_EQ(kEnvelope, SaveOf(GetTree(), false));
    Calls transient = kRoot;
    transient[0] = "Begin 0607";
    EXPECT_EQ(InEnvelope(transient), SaveOf(GetTree(), true));
    GetRoot().SetTemporality(TemporalityTemporary);
    EXPECT_EQ(kEnvelope, SaveOf(GetTree(), true));
}

TEST_F(TreeSaveTest, TheRootsDerivedTemporalityIsThatOfItsChildren) {
    GetRoot().Get(0)->SetTemporality(TemporalityTransient);
    EXPECT_EQ(kEnvelope, SaveOf(GetTree(), false));
}

TEST_F(TreeSaveTest, AnEmptyCompositeRootOfDefaultTemporalityIsNotSavedWhateverItsKind) {
    EXPECT_EQ(kEnvelope, SaveOf(*MapTree(), true));
    EXPECT_EQ(kEnvelope, SaveOf(*VectorTree(), true));
}

TEST_F(TreeSaveTest, ARootThatIsNoMapFailsInsideTheEnvelope) {
    const auto tree = CreateGenericTree(EnumOrvObjectType{});
    for (int type = 1; type <= 12; ++type) {
        if (type == NodeTypeMap) {
            continue;
        }
        const auto other = tree->CreateTreeInForest();
        other->NewRoot(NodeType(type))->SetTemporality(TemporalityPersistent);
        RecordingArchive archive;
        EXPECT_EQ(kNotImplemented, other->SaveToArchive(&archive, false, 255)) << type;
        EXPECT_EQ((Calls{"Begin 0000", "Long 00000000"}), archive.calls);
        EXPECT_TRUE(other->IsReadOnly());
        RecordingStream stream;
        EXPECT_EQ(kNotImplemented, other->SaveToStream(&stream, false));
        EXPECT_TRUE(stream.references.AreBalanced());
    }
}

TEST_F(TreeSaveTest, TemporalitiesAreBroughtUpToDateFirst) {
    auto* const vector = static_cast<Vector*>(GetRoot().Get(0));
    AppendValue<Integer>(*vector, 8)->SetTemporality(TemporalityTransient);
    // The vector is persistent, and its elements with it.
    EXPECT_EQ(InEnvelope({"Begin 0207", "Long 00640100", "Begin 0406", "Long 00024100", "Long 00000007",
                          "Long 00000008", "End", "End"}),
              SaveOf(GetTree(), false));
}

TEST_F(TreeSaveTest, AChangeBelowACompositeSinceTheLastCalculationCounts) {
    auto* const vector = static_cast<Vector*>(GetRoot().Get(0));
    vector->SetTemporality(TemporalityDefault);
    GetTree().UpdateDerivedTemporality();
    vector->Get(0)->SetTemporality(TemporalityTransient);
    EXPECT_EQ(kEnvelope, SaveOf(GetTree(), false));
    vector->Get(0)->SetTemporality(TemporalityPersistent);
    EXPECT_EQ(InEnvelope({"Begin 0207", "Long 00640100", "Begin 0206", "Long 00018100", "Long 00000007", "End", "End"}),
              SaveOf(GetTree(), false));
}

TEST_F(TreeSaveTest, TheTreeIsReadOnlyWhileItsRootIsWritten) {
    RecordingArchive archive;
    std::vector<bool> readOnly;
    archive.watch = [&] { readOnly.push_back(GetTree().IsReadOnly()); };
    EXPECT_EQ(0, GetTree().SaveToArchive(&archive, false, 255));
    EXPECT_EQ((std::vector<bool>{false, false, true, true, true, true, true, true, true, false}), readOnly);
    EXPECT_FALSE(GetTree().IsReadOnly());
}

TEST_F(TreeSaveTest, SavingCountsNoChange) {
    const int before = GetTree().GetChangeCount();
    SaveOf(GetTree());
    EXPECT_EQ(before, GetTree().GetChangeCount());
}

// kept-on-purpose: save-leaves-writable
TEST_F(TreeSaveTest, ASuccessfulSaveLeavesAReadOnlyTreeWritable) {
    GetTree().SetReadOnly();
    SaveOf(GetTree());
    EXPECT_FALSE(GetTree().IsReadOnly());
    GetRoot().SetTemporality(TemporalityTemporary);
    GetTree().SetReadOnly();
    EXPECT_EQ(kEnvelope, SaveOf(GetTree()));
    EXPECT_FALSE(GetTree().IsReadOnly());
}

TEST_F(TreeSaveTest, SavingAnEmptyReadOnlyTreeLeavesItReadOnly) {
    const auto tree = CreateGenericTree(EnumOrvObjectType{});
    tree->SetReadOnly();
    EXPECT_EQ(kEnvelope, SaveOf(*tree));
    EXPECT_TRUE(tree->IsReadOnly());
}

// kept-on-purpose: failed-save-stays-read-only
TEST_F(TreeSaveTest, AFailureIsAnsweredAndLeavesTheTreeReadOnlyOnlyInsideTheRoot) {
    for (int k = 1; k <= 10; ++k) {
        const MapTree tree(100);
        AppendValue<Integer>(*Put<Vector>(tree.GetRoot(), 0), 7);
        RecordingArchive archive;
        archive.counter.FailAt(k, -100 - k);
        EXPECT_EQ(-100 - k, tree->SaveToArchive(&archive, false, 255));
        EXPECT_EQ(k, archive.counter.GetCount());
        EXPECT_EQ(3 <= k && k <= 9, tree->IsReadOnly()) << k;
    }
}

TEST_F(TreeSaveTest, TheNextSuccessfulSaveMakesATreeWritableAgain) {
    RecordingArchive archive;
    archive.counter.FailAt(4, -1);
    EXPECT_EQ(-1, GetTree().SaveToArchive(&archive, false, 255));
    EXPECT_TRUE(GetTree().IsReadOnly());
    EXPECT_EQ(InEnvelope(kRoot), SaveOf(GetTree()));
    EXPECT_FALSE(GetTree().IsReadOnly());
}

TEST_F(TreeSaveTest, AFailingStreamIsReleasedAndItsCodeAnswered) {
    for (int k = 1; k <= 10; ++k) {
        for (const bool forGood : {false, true}) {
            RecordingStream stream;
            stream.counter.FailAt(k, static_cast<std::int32_t>(0x80030070), forGood);
            EXPECT_EQ(static_cast<std::int32_t>(0x80030070), GetTree().SaveToStream(&stream, false));
            EXPECT_EQ(k, stream.counter.GetCount());
            EXPECT_TRUE(stream.references.AreBalanced());
        }
    }
}

TEST_F(TreeSaveTest, AThrowingStreamIsReleasedAndTheTreeStaysReadOnlyInsideTheRoot) {
    for (int k = 1; k <= 10; ++k) {
        const MapTree tree(100);
        AppendValue<Integer>(*Put<Vector>(tree.GetRoot(), 0), 7);
        RecordingStream stream;
        stream.counter.ThrowAt(k);
        EXPECT_THROW(tree->SaveToStream(&stream, false), HostError);
        EXPECT_EQ(k, stream.counter.GetCount());
        EXPECT_TRUE(stream.references.AreBalanced());
        EXPECT_EQ(3 <= k && k <= 9, tree->IsReadOnly()) << k;
    }
}

TEST_F(TreeSaveTest, APositiveResultOfTheEndIsSuccess) {
    RecordingArchive archive;
    archive.counter.FailAt(10, 1);
    EXPECT_EQ(0, GetTree().SaveToArchive(&archive, false, 255));
    EXPECT_EQ(10, archive.counter.GetCount());
}

TEST_F(TreeSaveTest, NullIsRefusedWithItsText) {
    for (const bool readOnly : {false, true}) {
        if (readOnly) {
            GetTree().SetReadOnly();
        }
        const int before = GetTree().GetChangeCount();
        EXPECT_EQ(u"Stream is NULL!", ThrownText([&] { GetTree().SaveToStream(nullptr, false); }));
        EXPECT_EQ(u"Archive is NULL!", ThrownText([&] { GetTree().SaveToArchive(nullptr, false, 255); }));
        EXPECT_EQ(u"Archive is NULL!", ThrownText([&] { GetTree().SizeArchive(nullptr, false); }));
        EXPECT_EQ(before, GetTree().GetChangeCount());
        EXPECT_EQ(readOnly, GetTree().IsReadOnly());
    }
}

TEST_F(TreeSaveTest, AnEmptyTreeIsSizedAsTheEnvelope) {
    const auto tree = CreateGenericTree(EnumOrvObjectType{});
    RecordingSizer sizer;
    EXPECT_EQ(0, tree->SizeArchive(&sizer, false));
    EXPECT_EQ(Calls{"Sizes 0 0 0 1 1"}, sizer.calls);
}

TEST_F(TreeSaveTest, ATreeIsSizedAsEnvelopeAndNodes) {
    PutValue<String>(GetRoot(), 40, u"twelve units");
    Put<Double>(GetRoot(), 1)->SetTemporality(TemporalityTransient);
    const int before = GetTree().GetChangeCount();
    RecordingSizer persistent;
    EXPECT_EQ(0, GetTree().SizeArchive(&persistent, false));
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 0 0 1 1", "Sizes 0 0 0 4 0", "Sizes 0 0 0 1 1", "Sizes 0 0 0 1 0"}),
              persistent.calls);
    EXPECT_EQ(1U, persistent.GetStrings());
    EXPECT_EQ(12U, persistent.GetStringUnits());
    RecordingSizer all;
    EXPECT_EQ(0, GetTree().SizeArchive(&all, true));
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 0 0 1 1", "Sizes 0 0 0 6 0", "Sizes 0 0 0 1 1", "Sizes 0 0 0 1 0",
                     "Sizes 0 1 0 0 0"}),
              all.calls);
    EXPECT_EQ(before, GetTree().GetChangeCount());
    EXPECT_FALSE(GetTree().IsReadOnly());
}

// kept-on-purpose: size-without-filter-on-root
TEST_F(TreeSaveTest, SizingDoesNotTestTheRootsTemporality) {
    GetRoot().SetTemporality(TemporalityTemporary);
    RecordingSizer sizer;
    EXPECT_EQ(0, GetTree().SizeArchive(&sizer, false));
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 0 0 1 1", "Sizes 0 0 0 2 0", "Sizes 0 0 0 1 1", "Sizes 0 0 0 1 0"}),
              sizer.calls);
}

TEST_F(TreeSaveTest, SizingDoesNotBringTemporalitiesUpToDate) {
    GetTree().UpdateDerivedTemporality();
    AppendValue<Integer>(*static_cast<Vector*>(GetRoot().Get(0)), 8)->SetTemporality(TemporalityTransient);
    RecordingSizer stale;
    EXPECT_EQ(0, GetTree().SizeArchive(&stale, false));
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 0 0 1 1", "Sizes 0 0 0 2 0", "Sizes 0 0 0 1 1", "Sizes 0 0 0 1 0"}),
              stale.calls);
    // The vector gives its temporality to its elements.
    GetTree().UpdateDerivedTemporality();
    RecordingSizer fresh;
    EXPECT_EQ(0, GetTree().SizeArchive(&fresh, false));
    EXPECT_EQ(stale.calls + Calls{"Sizes 0 0 0 1 0"}, fresh.calls);
}

TEST_F(TreeSaveTest, ALeafAsRootIsSizedThoughItCannotBeSaved) {
    const TreeOf<Integer> tree;
    RecordingSizer sizer;
    EXPECT_EQ(0, tree->SizeArchive(&sizer, false));
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 0 0 1 0"}), sizer.calls);
}

/// A map tagged 100 with a vector in slot 0 of two transient numbers, to which the vector has given its own temporality.
class UpdatedVectorTest : public testing::Test {
protected:
    UpdatedVectorTest() : vector_(*Put<Vector>(tree_.GetRoot(), 0)) {
        for (const int value : {5, 6}) {
            AppendValue<Integer>(vector_, value)->SetTemporality(TemporalityTransient);
        }
    }

    /// The calls between those of the envelope and of the root.
    Calls SaveVector() const {
        const Calls all = SaveOf(*tree_);
        return {all.begin() + 4, all.end() - 2};
    }

    const MapTree tree_{100};
    Vector& vector_;
};

TEST_F(UpdatedVectorTest, EveryElementIsWrittenWithTheVector) {
    const Calls whole = {"Begin 0406", "Long 0002C100", "Long 00000005", "Long 00000006", "End"};
    EXPECT_EQ(whole, SaveVector());
    EXPECT_EQ(whole, SaveVector());
}

TEST_F(UpdatedVectorTest, AnElementThatWasCalculatedByItselfAfterwardsIsLeftOutAgain) {
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityTransient, vector_.GetNV(1)->CalculateDerivedTemporality());
    EXPECT_EQ((Calls{"Begin 0406", "Long 0001C100", "Long 00000005", "End"}), SaveVector());
}

TEST_F(UpdatedVectorTest, AnElementThatWasOverwrittenAfterwardsCountsAsWhatWasCopied) {
    auto& last = static_cast<Integer&>(*vector_.GetNV(1));
    const Integer copy = last;
    tree_->UpdateDerivedTemporality();
    last = copy;
    EXPECT_EQ((Calls{"Begin 0406", "Long 0001C100", "Long 00000005", "End"}), SaveVector());
}

TEST_F(UpdatedVectorTest, AChangeBringsTheElementsBackInLine) {
    tree_->UpdateDerivedTemporality();
    vector_.GetNV(1)->CalculateDerivedTemporality();
    AppendValue<Integer>(vector_, 7);
    EXPECT_EQ((Calls{"Begin 0406", "Long 0003C100", "Long 00000005", "Long 00000006", "Long 00000007", "End"}),
              SaveVector());
}

}  // namespace
}  // namespace KivGenerics::Testing
