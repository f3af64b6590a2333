#include "inspect/Corpus.h"

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
#include <KivInspect/JsonForm.h>
#include <KivInspect/TextForm.h>

namespace InspectTest {

using namespace KivGenerics;

namespace {

constexpr GUID LowId = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};
constexpr GUID HighId = {0xFFFFFFFF, 0xFFFF, 0xFFFF, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}};
constexpr GUID SomeId = {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}};

void AddNumbers(Map* map) {
    New<Integer>(map, 0)->Set(0);
    New<Integer>(map, 1)->Set((std::numeric_limits<std::int32_t>::min)());
    New<Integer>(map, 2)->Set((std::numeric_limits<std::int32_t>::max)());
    New<Integer64>(map, 3)->Set((std::numeric_limits<std::int64_t>::min)());
    New<Integer64>(map, 4)->Set((std::numeric_limits<std::int64_t>::max)());
    New<Integer64>(map, 5)->Set(9007199254740993);
    New<Boolean>(map, 6)->Set(true);
    New<Boolean>(map, 7)->Set(false);
    auto* const vector = New<Vector>(map, 0x1FFFFFFF);
    for (const double value : BoundaryDoubles()) {
        Append<Double>(vector)->Set(value);
    }
}

void AddTexts(Map* map) {
    New<String>(map, 0)->Set(u"");
    New<String>(map, 1)->Set(u"\"quoted\" \\ back\nnew\ttab\rreturn");
    New<String>(map, 2)->Set(KivBase::WString(u"a\0b", 3));
    New<String>(map, 3)->Set(KivBase::WString(1, static_cast<char16_t>(0xD800)));
    New<String>(map, 4)->Set(KivBase::WString(u"x") + static_cast<char16_t>(0xDC00) + static_cast<char16_t>(0xD800));
    New<String>(map, 5)->Set(u"K\u00E4se \u20AC \U0001F600 \u202E\uFEFF\u2028\u0085\u007F");
    New<String>(map, 6)->Set(KivBase::WString(70000, u'y'));
    New<String>(map, 7)->Set(u"  leading, }] and trailing  ");
}

void AddSets(Map* map) {
    New<IntegerSet>(map, 0);
    auto* const integers = New<IntegerSet>(map, 1);
    integers->Add((std::numeric_limits<std::int32_t>::min)());
    integers->Add(0);
    integers->Add((std::numeric_limits<std::int32_t>::max)());
    New<IdSet>(map, 2);
    auto* const ids = New<IdSet>(map, 3);
    ids->Add(HighId);
    ids->Add(LowId);
    New<StringSet>(map, 4);
    auto* const texts = New<StringSet>(map, 5);
    texts->Add(u"");
    texts->Add(u"a, \"b\"}");
    texts->Add(KivBase::WString(1, static_cast<char16_t>(0xDFFF)));
    New<DoubleSet>(map, 6);
    auto* const doubles = New<DoubleSet>(map, 7);
    doubles->Add(-std::numeric_limits<double>::infinity());
    doubles->Add(-0.0);
    doubles->Add(0.1);
    doubles->Add(std::numeric_limits<double>::quiet_NaN());
    New<GlobalID>(map, 8)->Set(SomeId);
    New<GlobalID>(map, 9)->Set(HighId);
}

void AddTemporalities(Map* map) {
    int index = 0;
    for (const int t : {0, 1, 2, 3, 4, 5, 7, 127, -128}) {
        New<Integer>(map, index++)->SetTemporality(static_cast<EnumOrvGenericsTemporality>(t));
        New<Map>(map, index++)->SetTemporality(static_cast<EnumOrvGenericsTemporality>(t));
    }
    auto* const vector = New<Vector>(map, index);
    Append<Integer>(vector)->SetTemporality(TemporalityTransient);
    Append<Vector>(vector)->SetTemporality(TemporalityPersistent);
    Append<String>(vector)->SetTemporality(TemporalityTemporary);
}

void AddTags(Map* map) {
    int index = 0;
    for (const int tag : {0, 1, 2, -1, 4108, (std::numeric_limits<int>::min)(), (std::numeric_limits<int>::max)()}) {
        New<Map>(map, index++)->SetSemanticTag(static_cast<SemanticTag>(tag));
    }
}

std::string Write(const Tree* tree, void (*write)(const Tree*, KivInspect::Sink&, const KivInspect::Progress&)) {
    KivInspect::StringSink sink;
    write(tree, sink, {});
    return sink.GetText();
}

}  // namespace

const std::vector<double>& BoundaryDoubles() {
    using Limits = std::numeric_limits<double>;
    static const std::vector<double> values = {0.0,
                                               -0.0,
                                               Limits::denorm_min(),
                                               -Limits::denorm_min(),
                                               Limits::min(),
                                               FromBits(0x000FFFFFFFFFFFFF),
                                               Limits::max(),
                                               Limits::lowest(),
                                               Limits::infinity(),
                                               -Limits::infinity(),
                                               Limits::quiet_NaN(),
                                               FromBits(0xFFF8000000000000),
                                               FromBits(0x7FF0000000000001),
                                               FromBits(0x7FFFFFFFFFFFFFFF),
                                               0.1,
                                               1.0 / 3.0,
                                               5e-324,
                                               9007199254740992.0,
                                               9007199254740994.0,
                                               1e21,
                                               1e22,
                                               123456789012345680.0,
                                               18446744073709551616.0,
                                               1e300,
                                               -1.5};
    return values;
}

KivBase::ReturnPtrI<Tree> NewTree() {
    return CreateGenericTree(static_cast<EnumOrvObjectType>(0));
}

Map* NewRootMap(Tree* tree, int tag) {
    return static_cast<Map*>(tree->NewRoot(NodeTypeMap, false, static_cast<SemanticTag>(tag)));
}

KivBase::ReturnPtrI<Tree> TreeOfEverything() {
    auto tree = NewTree();
    Map* const root = NewRootMap(tree.Get(), 4108);
    AddNumbers(New<Map>(root, 0));
    AddTexts(New<Map>(root, 1, 4098));
    AddSets(New<Map>(root, 2));
    AddTemporalities(New<Map>(root, 3));
    AddTags(New<Map>(root, 4));
    New<Vector>(root, 100);
    New<Integer>(root, 101)->Set(5);
    return tree;
}

KivBase::ReturnPtrI<Tree> SavableTree() {
    auto tree = NewTree();
    Map* const root = NewRootMap(tree.Get(), 4107);
    auto* const map = New<Map>(root, 0, 4162);
    New<Integer>(map, 0)->Set(-7);
    New<GlobalID>(map, 1)->Set(SomeId);
    New<String>(map, 2)->Set(u"text");
    New<Double>(map, 3)->Set(0.1);
    New<Boolean>(map, 4)->Set(true);
    auto* const vector = New<Vector>(map, 5);
    Append<Integer>(vector)->Set(1);
    Append<Integer>(vector)->Set(2);
    New<IntegerSet>(map, 6)->Add(3);
    New<IdSet>(map, 7)->Add(SomeId);
    New<StringSet>(map, 8)->Add(u"element");
    New<DoubleSet>(map, 9)->Add(-0.5);
    New<Integer64>(map, 10)->Set(1);
    New<Integer>(map, 11)->SetTemporality(TemporalityTransient);
    New<Integer>(map, 12)->SetTemporality(TemporalityTemporary);
    return tree;
}

std::string ToText(const Tree* tree) {
    return Write(tree, KivInspect::WriteText);
}

std::string ToJson(const Tree* tree) {
    return Write(tree, KivInspect::WriteJson);
}

KivStorage::LoadResult FromText(std::string_view text, const KivStorage::LoadOptions& options) {
    KivInspect::MemorySource source(text);
    return KivInspect::ReadText(source, "the text", options);
}

KivStorage::LoadResult FromJson(std::string_view json, const KivStorage::LoadOptions& options) {
    KivInspect::MemorySource source(json);
    return KivInspect::ReadJson(source, "the document", options);
}

}  // namespace InspectTest
