// Children made where their kind is known when compiling: Vector::Add<T> and Map::NewNode<T>.

#include <vector>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>

#include "containers/TestNodes.h"
#include "core/Invariants.h"

namespace KivGenerics::Testing {
namespace {

class KnownKindTest : public ContainerTest {};

/// Both ways of making a child, one after the other: they must tell and leave the same.
template <class T>
void ExpectTheSameElements(Vector& known, Vector& plain) {
    for (int i = 0; i < 3; ++i) {
        T* node = nullptr;
        const int changes = ChangesOf(*plain.GetTree(), [&] { plain.Add(T::StaticType); });
        EXPECT_EQ(changes, ChangesOf(*known.GetTree(), [&] { node = known.Add<T>(); })) << T::StaticType;
        ASSERT_NE(nullptr, node);
        EXPECT_EQ(T::StaticType, node->GetType());
        EXPECT_EQ(node, known.Get(i));
        EXPECT_EQ(i, node->GetIndex());
        EXPECT_EQ(&known, node->GetParent());
        EXPECT_EQ(TemporalityDefault, node->GetTemporality());
    }
    EXPECT_EQ(Show(&plain), Show(&known));
}

TEST_F(KnownKindTest, AnElementIsMadeAsByItsKindsNumber) {
    ExpectTheSameElements<Boolean>(*NewVector(), *NewVector());
    ExpectTheSameElements<Double>(*NewVector(), *NewVector());
    ExpectTheSameElements<GlobalID>(*NewVector(), *NewVector());
    ExpectTheSameElements<Integer>(*NewVector(), *NewVector());
    ExpectTheSameElements<Integer64>(*NewVector(), *NewVector());
    ExpectTheSameElements<IntegerSet>(*NewVector(), *NewVector());
    ExpectTheSameElements<Map>(*NewVector(), *NewVector());
    ExpectTheSameElements<String>(*NewVector(), *NewVector());
    ExpectTheSameElements<Vector>(*NewVector(), *NewVector());
}

TEST_F(KnownKindTest, AnElementOfAnotherKindIsRefused) {
    Vector* const vector = NewVector();
    vector->Add<Integer>();
    EXPECT_EQ("Vector::Add::Different children type", TextOf([&] { vector->Add<Double>(); }));
    EXPECT_EQ("Vector::Add::Different children type", TextOf([&] { vector->Add<String>(); }));
    EXPECT_EQ("[0]", Show(vector));
}

TEST_F(KnownKindTest, AChildOfAMapIsMadeAsByItsKindsNumber) {
    Map* const known = NewMap();
    Map* const plain = NewMap();
    for (const int index : {0, 7, 8, 0, 536870911}) {
        Integer* node = nullptr;
        const int changes = ChangesOf(*plain->GetTree(), [&] { plain->NewNode(index, NodeTypeInteger); });
        EXPECT_EQ(changes, ChangesOf(*known->GetTree(), [&] { node = known->NewNode<Integer>(index); })) << index;
        ASSERT_NE(nullptr, node);
        EXPECT_EQ(node, known->Get(index));
        EXPECT_EQ(index, node->GetIndex());
        EXPECT_EQ(TemporalityPersistent, node->GetTemporality());
    }
    known->NewNode<Map>(3, SemanticTag(100))->NewNode<Boolean>(1);
    plain->NewNode(3, NodeTypeMap, false, SemanticTag(100));
    static_cast<Map*>(plain->Get(3))->NewNode(1, NodeTypeBoolean);
    EXPECT_EQ(Show(plain), Show(known));
}

/// The same children of a map in both ways, at these indexes one after the other.
template <class T>
void ExpectTheSameChildren(Map& known, Map& plain, const std::vector<int>& indexes) {
    for (const int index : indexes) {
        T* node = nullptr;
        const int changes = ChangesOf(*plain.GetTree(), [&] { plain.NewNode(index, T::StaticType); });
        EXPECT_EQ(changes, ChangesOf(*known.GetTree(), [&] { node = known.NewNode<T>(index); })) << index;
        ASSERT_NE(nullptr, node) << index;
        EXPECT_EQ(node, known.Get(index));
        EXPECT_EQ(&known, node->GetParent()) << index;
        EXPECT_EQ(TemporalityPersistent, node->GetTemporality()) << index;
        EXPECT_EQ(TemporalityPersistent, node->GetDerivedTemporality()) << index;
    }
    EXPECT_EQ(Show(&plain), Show(&known));
    EXPECT_EQ(0, CheckInvariants(&known));
}

/// More than one chunk of the overflow store, then what comes before and between, and what is there already.
std::vector<int> GetManyIndexes() {
    constexpr int kChildren = 300;
    constexpr int kStep = 7;
    std::vector<int> indexes;
    for (int i = 0; i < kChildren; ++i) {
        indexes.push_back(i * kStep);
    }
    for (const int index : {536870911, 8, 15, 700, 0, 2093, 2094, 14, 536870911}) {
        indexes.push_back(index);
    }
    return indexes;
}

TEST_F(KnownKindTest, ChildrenBeyondTheSlotsAreMadeAsByTheirKindsNumber) {
    ExpectTheSameChildren<Integer>(*NewMap(), *NewMap(), GetManyIndexes());
    ExpectTheSameChildren<GlobalID>(*NewMap(), *NewMap(), GetManyIndexes());
    ExpectTheSameChildren<IntegerSet>(*NewMap(), *NewMap(), GetManyIndexes());
    ExpectTheSameChildren<Map>(*NewMap(), *NewMap(), GetManyIndexes());
    ExpectTheSameChildren<String>(*NewMap(), *NewMap(), GetManyIndexes());
    ExpectTheSameChildren<Vector>(*NewMap(), *NewMap(), GetManyIndexes());
}

std::vector<int> GetDerived(Tree& tree, Vector& element) {
    tree.UpdateDerivedTemporality();
    return {tree.GetRoot()->GetDerivedTemporality(), element.GetDerivedTemporality()};
}

// A composite of default temporality is temporary as long as it is empty, and so its tree counts it.
TEST_F(KnownKindTest, AnEmptyVectorCountsAsOneThatWasMadeByItsKindsNumber) {
    const auto knownTree = KivTests::NewTree();
    const auto plainTree = KivTests::NewTree();
    auto* const knownRoot = static_cast<Vector*>(knownTree->NewRoot(NodeTypeVector));
    auto* const plainRoot = static_cast<Vector*>(plainTree->NewRoot(NodeTypeVector));
    Vector* const known = knownRoot->Add<Vector>();
    auto* const plain = static_cast<Vector*>(plainRoot->Add(NodeTypeVector));
    const std::vector<int> empty = GetDerived(*plainTree, *plain);
    EXPECT_EQ(empty, GetDerived(*knownTree, *known));
    known->Add<Integer>();
    plain->Add(NodeTypeInteger);
    const std::vector<int> filled = GetDerived(*plainTree, *plain);
    EXPECT_NE(empty, filled);
    EXPECT_EQ(filled, GetDerived(*knownTree, *known));
    known->Remove(0);
    plain->Remove(0);
    EXPECT_EQ(empty, GetDerived(*plainTree, *plain));
    EXPECT_EQ(empty, GetDerived(*knownTree, *known));
}

TEST_F(KnownKindTest, AnEmptyCompositeInAMapIsPersistent) {
    Map* const map = NewMap();
    for (const int index : {2, 200, 202}) {
        Vector* const list = map->NewNode<Vector>(index);
        Map* const inner = map->NewNode<Map>(index + 1);
        map->GetTree()->UpdateDerivedTemporality();
        EXPECT_EQ(TemporalityPersistent, list->GetDerivedTemporality()) << index;
        EXPECT_EQ(TemporalityPersistent, inner->GetDerivedTemporality()) << index;
    }
}

TEST_F(KnownKindTest, TextsAndVectorsThatWaitAreHandedOutAgain) {
    Map* const map = NewMap();
    String* const text = map->NewNode<String>(0);
    Vector* const list = map->NewNode<Vector>(1);
    text->Set(u"gone");
    list->Add<Integer>();
    Vector* const elements = NewVector();
    map->Remove(0);
    map->Remove(1);
    EXPECT_EQ(text, elements->Add<String>());
    EXPECT_EQ(0U, text->GetLength());
    EXPECT_EQ(list, map->NewNode<Vector>(3));
    EXPECT_TRUE(list->IsEmpty());
    EXPECT_EQ(3, list->GetIndex());
    EXPECT_NE(list, map->NewNode<Vector>(4));
}

TEST_F(KnownKindTest, AnIndexOutsideAMapIsRefused) {
    Map* const map = NewMap();
    for (const int index : {-1, 536870912}) {
        EXPECT_NE("", TextOf([&] { map->NewNode<Integer>(index); })) << index;
        EXPECT_EQ(TextOf([&] { map->NewNode(index, NodeTypeInteger); }), TextOf([&] { map->NewNode<Integer>(index); }));
    }
    EXPECT_TRUE(map->IsEmpty());
}

TEST_F(KnownKindTest, ANodeThatWaitsIsHandedOutAgain) {
    Vector* const vector = NewVector();
    Map* const map = NewMap();
    Integer* const first = vector->Add<Integer>();
    first->Set(5);
    vector->Remove(0);
    Integer* const again = map->NewNode<Integer>(2);
    EXPECT_EQ(first, again);
    EXPECT_EQ(0, again->Get());
    EXPECT_EQ(2, again->GetIndex());
    EXPECT_NE(first, vector->Add<Integer>());
}

TEST_F(KnownKindTest, AReadOnlyTreeRefuses) {
    Vector* const vector = NewVector();
    Map* const map = NewMap();
    vector->GetTree()->SetReadOnly();
    EXPECT_EQ(kReadOnlyText, TextOf([&] { vector->Add<Integer>(); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { vector->Add<Map>(); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map->NewNode<Integer>(0); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map->NewNode<Map>(0); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map->NewNode<Vector>(0); }));
    EXPECT_TRUE(vector->IsEmpty());
    EXPECT_TRUE(map->IsEmpty());
}

TEST_F(KnownKindTest, AReadOnlyTreeRefusesBeyondTheSlotsHoweverFullTheStoreIs) {
    for (int children = 1; children <= 12; ++children) {
        const auto tree = KivTests::NewTree();
        Map* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
        for (int i = 0; i < children; ++i) {
            map->NewNode<Integer>(100 + i);
        }
        tree->SetReadOnly();
        const std::size_t inUse = tree->BufferQueryB();
        EXPECT_EQ(kReadOnlyText, TextOf([&] { map->NewNode<Integer>(200); })) << children;
        EXPECT_EQ(inUse, tree->BufferQueryB()) << children;
        EXPECT_EQ(children, map->GetSize(TemporalityTemporary));
    }
}

}  // namespace
}  // namespace KivGenerics::Testing
