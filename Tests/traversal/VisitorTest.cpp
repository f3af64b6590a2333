// What visitors answer by themselves, and how a single node is shown to one.

#include <type_traits>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>

#include "support/Kinds.h"
#include "traversal/Recorder.h"

namespace KivGenerics::Testing {
namespace {

class Silent final : public Visitor {};
class SilentNode final : public VisitorNode {};

/// Notes which operation is called; for composites with the bool.
class Noting final : public Visitor {
public:
    std::string text;

    VisitCode VisitBoolean(Boolean*) override { return Note("Boolean"); }
    VisitCode VisitDouble(Double*) override { return Note("Double"); }
    VisitCode VisitGlobalID(GlobalID*) override { return Note("GlobalID"); }
    VisitCode VisitInteger(Integer*) override { return Note("Integer"); }
    VisitCode VisitInteger64(Integer64*) override { return Note("Integer64"); }
    VisitCode VisitString(String*) override { return Note("String"); }
    VisitCode VisitDoubleSet(DoubleSet*) override { return Note("DoubleSet"); }
    VisitCode VisitIdSet(IdSet*) override { return Note("IdSet"); }
    VisitCode VisitIntegerSet(IntegerSet*) override { return Note("IntegerSet"); }
    VisitCode VisitStringSet(StringSet*) override { return Note("StringSet"); }
    VisitCode VisitMap(Map*, bool postOrder) override { return Note(postOrder ? "Map after" : "Map"); }
    VisitCode VisitVector(Vector*, bool postOrder) override { return Note(postOrder ? "Vector after" : "Vector"); }

private:
    VisitCode Note(const char* name) {
        text += text.empty() ? name : std::string(",") + name;
        return VisitContinue;
    }
};

/// Notes what is forwarded to the one operation, and answers VisitStop.
class NotingNode final : public VisitorNode {
public:
    Node* node = nullptr;
    bool postOrder = false;
    int type = 0;

    VisitCode VisitNode(Node* shown, bool after, NodeType kind) override {
        node = shown;
        postOrder = after;
        type = kind;
        return VisitStop;
    }
};

class VisitorTest : public ContainerTest {
protected:
    template <class T>
    T* Make() {
        return static_cast<T*>(NewLeaf(T::StaticType));
    }

    /// Shows a new leaf to both visitors through `visit`.
    template <class T>
    void ExpectForwarded(VisitCode (Visitor::*visit)(T*), int type) {
        T* const leaf = Make<T>();
        Silent silent;
        EXPECT_EQ(VisitContinue, (silent.*visit)(leaf));
        SilentNode silentNode;
        EXPECT_EQ(VisitContinue, (silentNode.*visit)(leaf));
        NotingNode noting;
        noting.postOrder = true;
        EXPECT_EQ(VisitStop, (noting.*visit)(leaf));
        EXPECT_EQ(leaf, noting.node);
        EXPECT_EQ(type, noting.type);
        EXPECT_FALSE(noting.postOrder);
    }
    template <class T>
    void ExpectForwarded(VisitCode (Visitor::*visit)(T*, bool), int type) {
        T* const composite = Make<T>();
        for (const bool postOrder : {false, true}) {
            Silent silent;
            EXPECT_EQ(VisitContinue, (silent.*visit)(composite, postOrder));
            SilentNode silentNode;
            EXPECT_EQ(VisitContinue, (silentNode.*visit)(composite, postOrder));
            NotingNode noting;
            noting.postOrder = !postOrder;
            EXPECT_EQ(VisitStop, (noting.*visit)(composite, postOrder));
            EXPECT_EQ(composite, noting.node);
            EXPECT_EQ(type, noting.type);
            EXPECT_EQ(postOrder, noting.postOrder);
        }
    }
};

TEST_F(VisitorTest, TheAnswersHaveTheirNumbers) {
    EXPECT_EQ(1, VisitContinue);
    EXPECT_EQ(2, VisitStop);
    EXPECT_EQ(3, VisitSkipChildren);
    EXPECT_EQ(4, VisitRemove);
    EXPECT_EQ(4U, sizeof(VisitCode));
}

TEST_F(VisitorTest, TheIterateFlagsHaveTheirBits) {
    EXPECT_EQ(0x0000FFFF, IterateTypeBits);
    EXPECT_EQ(0x00010000, IteratePreOrder);
    EXPECT_EQ(0x00020000, IteratePostOrder);
    EXPECT_EQ(0x00100000, IterateSelf);
    EXPECT_EQ(0x00200000, IterateChildren);
    EXPECT_EQ(0x00400000, IterateDeeper);
    EXPECT_EQ(0x01000000, IterateUpToPersistent);
    EXPECT_EQ(0x02000000, IterateUpToTransient);
    EXPECT_EQ(0x04000000, IterateUpToTemporary);
    EXPECT_EQ(0x10000000, IterateSeeDefault);
    EXPECT_EQ(0x20000000, IterateSeePersistent);
    EXPECT_EQ(0x40000000, IterateSeeTransient);
    EXPECT_EQ(0x80000000U, static_cast<unsigned>(IterateSeeTemporary));
}

TEST_F(VisitorTest, EveryOperationContinuesByDefaultAndAVisitorNodeForwardsItToOne) {
    ExpectForwarded(&Visitor::VisitInteger, 1);
    ExpectForwarded(&Visitor::VisitGlobalID, 2);
    ExpectForwarded(&Visitor::VisitString, 3);
    ExpectForwarded(&Visitor::VisitDouble, 4);
    ExpectForwarded(&Visitor::VisitBoolean, 5);
    ExpectForwarded(&Visitor::VisitVector, 6);
    ExpectForwarded(&Visitor::VisitMap, 7);
    ExpectForwarded(&Visitor::VisitIntegerSet, 8);
    ExpectForwarded(&Visitor::VisitIdSet, 9);
    ExpectForwarded(&Visitor::VisitStringSet, 10);
    ExpectForwarded(&Visitor::VisitDoubleSet, 11);
    ExpectForwarded(&Visitor::VisitInteger64, 12);
    SilentNode silent;
    EXPECT_EQ(VisitContinue, silent.VisitNode(root_, true, NodeTypeMap));
}

TEST_F(VisitorTest, AWalkCallsTheOperationOfEachKind) {
    Map* const map = NewMap(4107);
    int index = 0;
    for (const NodeType type : KivTests::kAllKinds) {
        map->NewNode(index++, type);
    }
    Noting noting;
    map->Iterate(&noting, SemanticTagNone, IteratePreOrder | IteratePostOrder);
    EXPECT_EQ(
        "Integer,GlobalID,String,Double,Boolean,Vector,Vector after,Map,Map after,IntegerSet,IdSet,StringSet,"
        "DoubleSet,Integer64",
        noting.text);
    Silent silent;
    map->Iterate(&silent, SemanticTagNone, 0);
    EXPECT_EQ(12, map->GetSize(TemporalityTemporary));
}

TEST_F(VisitorTest, ASingleVisitShowsJustTheCompositeAndReturnsTheAnswer) {
    Vector* const vector = NewVector();
    Append(vector, 5);
    Map* const map = NewMap(4100);
    Put(map, 0, 6);
    for (Node* const node : {static_cast<Node*>(vector), static_cast<Node*>(map)}) {
        for (const bool postOrder : {false, true}) {
            NotingNode noting;
            noting.postOrder = !postOrder;
            EXPECT_EQ(VisitStop, node->Visit(&noting, postOrder));
            EXPECT_EQ(node, noting.node);
            EXPECT_EQ(postOrder, noting.postOrder);
            EXPECT_EQ(node->GetType(), noting.type);
        }
    }
}

TEST_F(VisitorTest, ASingleVisitAsksNoTemporality) {
    Map* const map = NewMap();
    map->SetTemporality(TemporalityReserved);
    Noting noting;
    EXPECT_EQ(VisitContinue, map->Visit(&noting, false));
    EXPECT_EQ("Map", noting.text);
}

TEST_F(VisitorTest, CopyingAVisitorCopiesNothingAndHarmsNothing) {
    Silent one;
    Silent two(one);
    Silent three(std::move(one));
    two = three;
    three = std::move(two);
    EXPECT_EQ(VisitContinue, three.VisitMap(root_, false));
    EXPECT_FALSE(std::is_default_constructible_v<Visitor>);
    EXPECT_FALSE(std::is_default_constructible_v<VisitorNode>);
    EXPECT_FALSE(std::is_destructible_v<Visitor>) << "never destroyed through the base";
    EXPECT_FALSE(std::has_virtual_destructor_v<Visitor>);
}

}  // namespace
}  // namespace KivGenerics::Testing
