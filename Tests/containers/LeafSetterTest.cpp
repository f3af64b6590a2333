// Many leaves set through the composites they stand in: LeafSetter.

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/LeafSetter.h>

#include "containers/TestNodes.h"
#include "core/Invariants.h"

namespace KivGenerics::Testing {
namespace {

class LeafSetterTest : public ContainerTest {
protected:
    /// Sets a leaf by itself, and then as a setter does: both must count the same changes, and only the value may differ.
    template <class T, class Parent, class Value>
    static void ExpectTheSame(Parent& parent, int index, const Value& value, const Value& other) {
        T& leaf = *node_cast<T>(parent.Get(index));
        leaf.SetTemporality(TemporalityTransient);
        const int changes = ChangesOf(*parent.GetTree(), [&] { leaf.Set(other); });
        const std::string before = ToText(&leaf);
        EXPECT_EQ(changes,
                  ChangesOf(*parent.GetTree(), [&] { LeafSetter(parent).template Set<T>(parent, index, value); }))
            << index;
        const std::string set = ToText(&leaf);
        EXPECT_NE(before, set) << index;
        leaf.Set(value);
        EXPECT_EQ(ToText(&leaf), set) << index;
        EXPECT_EQ(TemporalityTransient, leaf.GetTemporality());
        EXPECT_EQ(0, CheckInvariants(&parent));
    }

    template <class T, class Value>
    void ExpectTheSame(const Value& value, const Value& other) {
        Vector* const vector = NewVector();
        vector->Add<T>();
        vector->Add<T>();
        ExpectTheSame<T>(*vector, 1, value, other);
        EXPECT_NE(ToText(vector->Get(1)), ToText(vector->Get(0)));
        Map* const map = NewMap();
        for (const int index : {0, 7, 8, 536870911}) {
            map->NewNode<T>(index);
            ExpectTheSame<T>(*map, index, value, other);
        }
    }
};

TEST_F(LeafSetterTest, SetsAsTheLeafItselfDoes) {
    ExpectTheSame<Boolean>(true, false);
    ExpectTheSame<Double>(2.5, -1.0);
    ExpectTheSame<GlobalID>(GUID{1, 2, 3, {}}, GUID{4, 5, 6, {}});
    ExpectTheSame<Integer>(std::int32_t{7}, std::int32_t{-1});
    ExpectTheSame<Integer64>(std::int64_t{1} << 40, std::int64_t{-1});
}

TEST_F(LeafSetterTest, CountsItsChangesWhenItGoes) {
    Map* const map = NewMap();
    Put(map, 2, 5);
    Vector* const vector = NewVector();
    Append(vector, 6);
    EXPECT_EQ(3, ChangesOf(*tree_, [&] {
                  LeafSetter setter(*root_);
                  setter.Set<Integer>(*map, 2, 1);
                  setter.Set<Integer>(*vector, 0, 2);
                  setter.Set<Integer>(*map, 2, 3);
              }));
    EXPECT_EQ("{2:3}", Show(map));
    EXPECT_EQ("[2]", Show(vector));
    EXPECT_EQ(0, ChangesOf(*tree_, [&] { LeafSetter setter(*map); }));
}

TEST_F(LeafSetterTest, IsRefusedByAReadOnlyTree) {
    Map* const map = NewMap();
    Put(map, 2, 5);
    tree_->SetReadOnly();
    EXPECT_EQ(kReadOnlyText, TextOf([&] { LeafSetter(*map).Set<Integer>(*map, 2, 1); }));
    EXPECT_EQ("{2:5}", Show(map));
}

}  // namespace
}  // namespace KivGenerics::Testing
