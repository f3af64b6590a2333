// One tree of all twelve kinds, and the calls that it is saved as: what hosts keep in files. Never made anew.

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <gtest/gtest.h>

#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

const GUID kId = {0x00112233, 0x4455, 0x6677, {0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}};

const Calls kWithTransient = {
    "Begin 0000",
    "Long 00000000",
    "Begin 0207",  // the root
    "Long 00640200",
    "Long 01000000",
    "Begin 0407",  // slot 0: a map tagged 4100 of twelve children
    "Long 10040C80",
    "Long 81818282",
    "Long 43838484",
    "Long C5858886",
    "Long 89878A88",
    "Long 8BC0648C",
    "Long 09600023",
    "Long 28000000",
    "Long FFFFFFD6",
    "Guid 00112233-4455-6677-8899AABBCCDDEEFF",
    "Text \"Gr\\u00FC\\u00DFe\"",
    "Double 3FB999999999999A",
    "Long 00000001",
    "Begin 040B",
    "Long 00000002",
    "Long FFFFFFFF",
    "Long 00000002",
    "End",
    "Begin 040D",
    "Long 00000001",
    "Guid 00000001-0000-0000-0000000000000000",
    "End",
    "Begin 040E",
    "Long 00000002",
    "Text \"\"",
    "Text \"\\u00E9\"",
    "End",
    "Begin 040C",
    "Long 00000002",
    "Double BFE0000000000000",
    "Double 7E37E43C8800759C",
    "End",
    "Long 76543210",
    "Long 01234567",
    "Begin 0406",
    "Long 00024100",
    "Long 00000001",
    "Long 00000002",
    "End",
    "Begin 0407",
    "Long 80008000",
    "Long 00000000",
    "End",
    "End",
    "Begin 0606",  // slot 1: a transient vector of one map
    "Long 00010000",
    "Begin 0207",
    "Long 00020180",
    "Long 85000000",
    "Long 00000000",
    "End",
    "End",
    "End",
    "End",
};

const std::vector<std::string> kLines = {
    ": Map(tag 100, 2 children) t1",
    "0: Map(tag 4100, 12 children) t2",
    "0:0: Integer -42 t2",
    "0:1: GlobalID {00112233-4455-6677-8899-AABBCCDDEEFF} t2",
    "0:2: String \"Gr\u00FC\u00DFe\" t1",
    "0:3: Double 0.1 t2",
    "0:4: Boolean true t3",
    "0:5: IntegerSet {-1, 2} t2",
    "0:6: IdSet {{00000001-0000-0000-0000-000000000000}} t2",
    "0:7: StringSet {\"\", \"\u00E9\"} t2",
    "0:8: DoubleSet {-0.5, 1e+300} t2",
    "0:9: Vector(2 children) t2",
    "0:9:0: Integer 1 t1",
    "0:9:1: Integer 2 t1",
    "0:100: Integer64 81985528891978256 t2",
    "0:9000: Map(tag 32768, 0 children) t2",
    "1: Vector(1 child) t3",
    "1:0: Map(tag 2, 1 child) t1",
    "1:0:0: Boolean false t2",
};

class GoldenTreeTest : public testing::Test {
protected:
    GoldenTreeTest() {
        Map& map = *Put<Map>(tree_.GetRoot(), 0, 4100);
        PutValue<Integer>(map, 0, -42);
        PutValue<GlobalID>(map, 1, kId);
        PutValue<String>(map, 2, u"Gr\u00FC\u00DFe")->SetTemporality(TemporalityDefault);
        PutValue<Double>(map, 3, 0.1);
        PutValue<Boolean>(map, 4, true)->SetTemporality(TemporalityTransient);
        auto* const integers = Put<IntegerSet>(map, 5);
        integers->Add(2);
        integers->Add(-1);
        Put<IdSet>(map, 6)->Add(Id(1));
        auto* const texts = Put<StringSet>(map, 7);
        texts->Add(u"\u00E9");
        texts->Add(u"");
        auto* const doubles = Put<DoubleSet>(map, 8);
        doubles->Add(1e300);
        doubles->Add(-0.5);
        PutValue<Integer64>(map, 100, 0x0123456776543210);
        Vector* const numbers = Put<Vector>(map, 9);
        AppendValue<Integer>(*numbers, 1);
        AppendValue<Integer>(*numbers, 2);
        Put<Map>(map, 9000, 32768);
        Vector* const transient = Put<Vector>(tree_.GetRoot(), 1);
        transient->SetTemporality(TemporalityTransient);
        Put<Boolean>(*Append<Map>(*transient, 2), 0);
    }

    Tree& GetTree() const { return *tree_; }

private:
    MapTree tree_{100};
};

TEST_F(GoldenTreeTest, IsSavedAsItAlwaysWas) {
    EXPECT_EQ(kLines, Describe(GetTree()));
    EXPECT_EQ(kWithTransient, SaveOf(GetTree(), true));
}

TEST_F(GoldenTreeTest, IsLoadedAsItAlwaysWas) {
    const auto loaded = CreateGenericTree(EnumOrvObjectType{});
    EXPECT_EQ(0, Load(*loaded, kWithTransient));
    EXPECT_EQ(kLines, Describe(*loaded));
    EXPECT_EQ(0, loaded->GetRoot()->Compare(GetTree().GetRoot(), TemporalityTemporary, true));
}

TEST_F(GoldenTreeTest, LeavesOutWhatIsTransient) {
    Calls persistent = kWithTransient;
    persistent.erase(persistent.begin() + 50, persistent.begin() + 58);  // slot 1
    persistent.erase(persistent.begin() + 18);                           // the Boolean's value
    const Calls words = {"Long 10040B80", "Long 81818282", "Long 43838485", "Long 88868987",
                         "Long 8A888BC0", "Long 648C0960", "Long 00232800"};
    persistent.erase(persistent.begin() + 6, persistent.begin() + 14);
    persistent.insert(persistent.begin() + 6, words.begin(), words.end());
    persistent[3] = "Long 00640100";
    persistent.erase(persistent.begin() + 4);
    EXPECT_EQ(persistent, SaveOf(GetTree(), false));
    const auto loaded = CreateGenericTree(EnumOrvObjectType{});
    EXPECT_EQ(0, Load(*loaded, persistent));
    GetTree().ClearTemporaryNodes();
    EXPECT_EQ(Describe(GetTree()), Describe(*loaded));
}

}  // namespace
}  // namespace KivGenerics::Testing
