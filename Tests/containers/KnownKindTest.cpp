// Children made where their kind is known when compiling: Vector::Add<T> and Map::NewNode<T>.

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>

#include "containers/TestNodes.h"

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
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map->NewNode<Integer>(0); }));
    EXPECT_TRUE(vector->IsEmpty());
    EXPECT_TRUE(map->IsEmpty());
}

}  // namespace
}  // namespace KivGenerics::Testing
