// The check that ends UnicodeData is worth something only if it finds what is wrong: here a tree is spoilt in every way
// that it looks for. Takes the directory of the sample; ends with 1 when a fault is not found.

#include <iostream>
#include <string>

#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Tree.h>

#include "../unicode/BuildTree.h"
#include "../unicode/Recheck.h"
#include "../unicode/Schema.h"

namespace {

using namespace KivGenerics;
using namespace UnicodeExample;

struct Fault {
    const char* found;  ///< how the line begins that names it
    void (*spoil)(Tree& tree);
};

template <class T>
T& Get(Tree& tree, const char16_t* key) {
    return *static_cast<T*>(tree.FindNodeByKey(key));
}

const Fault Faults[] = {
    {"U+0041 name: ", [](Tree& tree) { Get<String>(tree, u"0:65:0:").Set(u"LATIN CAPITAL LETTER B"); }},
    {"U+0041 category: ", [](Tree& tree) { Get<Integer>(tree, u"0:65:1:").Set(25); }},
    {"U+0041 in the set of its category: ", [](Tree& tree) { Get<IntegerSet>(tree, u"1:0:1:").Remove(0x41); }},
    {"U+030A combining class: ", [](Tree& tree) { Get<Map>(tree, u"0:778:").Remove(FieldCombiningClass); }},
    {"U+00C5 decomposition: ", [](Tree& tree) { Get<Integer>(tree, u"0:197:4:1:").Set(0x30B); }},
    {"U+00BD numeric value: ", [](Tree& tree) { Get<Double>(tree, u"0:189:6:").Set(2); }},
    {"U+0028 mirrored: ", [](Tree& tree) { Get<Map>(tree, u"0:40:").Remove(FieldMirrored); }},
    {"U+0061 uppercase: ", [](Tree& tree) { Get<Integer>(tree, u"0:97:8:").Set(0x42); }},
    {"U+0041 lowercase: ", [](Tree& tree) { Get<Integer>(tree, u"0:65:9:").Set(0x62); }},
    {"U+01C5 titlecase: ", [](Tree& tree) { Get<Map>(tree, u"0:453:").Remove(FieldTitlecase); }},
    {"U+20BF age: ", [](Tree& tree) { Get<Integer>(tree, u"0:8383:2:").Set(900); }},
    {"U+0041 script: ", [](Tree& tree) { Get<String>(tree, u"2:3:0:").Set(u"Greek"); }},
    {"U+0041 block: ", [](Tree& tree) { Get<Integer>(tree, u"3:0:2:").Set(0x40); }},
    {"U+3409 name: ", [](Tree& tree) { Get<Map>(tree, u"0:").Remove(0x3409); }},
    {"U+00BC: ", [](Tree& tree) { Get<Map>(tree, u"0:").NewNode(0xBC, NodeTypeMap); }},
    {"number of code points: ", [](Tree& tree) { Get<Map>(tree, u"0:").Remove(0x3401); }},
    {"total of code points: ", [](Tree& tree) { Get<Integer64>(tree, u"5:1:").Set(27); }},
    {"the script names ", [](Tree& tree) { Get<StringSet>(tree, u"5:3:").Add(u"Greek"); }},
    {"the numeric values ", [](Tree& tree) { Get<DoubleSet>(tree, u"5:4:").Remove(-0.5); }},
};

bool IsFound(const Fault& fault, const Recheck& recheck) {
    for (const std::string& difference : recheck.differences) {
        if (difference.compare(0, std::string(fault.found).size(), fault.found) == 0) {
            return true;
        }
    }
    std::cerr << "not found: " << fault.found << "\n";
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: RecheckCanFail DIRECTORY\n";
        return 2;
    }
    const Database database = ReadDatabase(argv[1]);
    bool allFound = CheckAgainstFiles(*BuildTree(database), argv[1]).differences.empty();
    for (const Fault& fault : Faults) {
        const auto tree = BuildTree(database);
        fault.spoil(*tree);
        allFound = IsFound(fault, CheckAgainstFiles(*tree, argv[1])) && allFound;
    }
    return allFound ? 0 : 1;
}
