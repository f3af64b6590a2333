#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <KivGenerics/Double.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivInspect/Diff.h>
#include <KivInspect/ValueText.h>

#include "inspect/Corpus.h"
#include "json/JsonParser.h"
#include "text/Scan.h"

namespace InspectTest {
namespace {

using namespace KivGenerics;

struct FormCase {
    const char* name;
    std::string (*write)(const Tree*);
    KivStorage::LoadResult (*read)(std::string_view, const KivStorage::LoadOptions&);
};

class FormRoundTripTest : public testing::TestWithParam<FormCase> {
protected:
    /// Writes, reads, and expects the same tree, and the same bytes on the second turn.
    void ExpectReadsBack(Tree* tree) {
        const std::string written = GetParam().write(tree);
        const KivStorage::LoadResult loaded = GetParam().read(written, {});
        ASSERT_TRUE(loaded.result.Ok()) << loaded.result.sentence << "\n" << written.substr(0, 2000);
        KivInspect::Diff(tree, loaded.tree.Get(), {}, [](const KivInspect::Change& change) {
            ADD_FAILURE() << change.key << " " << KivInspect::ShortText(change.left) << " "
                          << KivInspect::ShortText(change.right);
            return true;
        });
        EXPECT_EQ(GetParam().write(loaded.tree.Get()), written);
    }
};

TEST_P(FormRoundTripTest, ATreeOfEveryKindAndBoundaryValueReadsBack) {
    ExpectReadsBack(TreeOfEverything().Get());
    ExpectReadsBack(SavableTree().Get());
}

TEST_P(FormRoundTripTest, AnEmptyTreeReadsBack) {
    ExpectReadsBack(NewTree().Get());
}

TEST_P(FormRoundTripTest, ARootOfEveryKindReadsBack) {
    for (int kind = NodeTypeInteger; kind <= NodeTypeInteger64; ++kind) {
        const auto tree = NewTree();
        tree->NewRoot(static_cast<NodeType>(kind));
        ExpectReadsBack(tree.Get());
    }
}

TEST_P(FormRoundTripTest, TheDeepestTreeThatALoadTakesReadsBack) {
    const auto tree = NewTree();
    Composite* deepest = NewRootMap(tree.Get());
    for (int level = 2; level <= 1000; ++level) {
        deepest = level % 2 == 0 ? static_cast<Composite*>(New<Map>(deepest, 0)) : New<Vector>(deepest, 0);
    }
    ExpectReadsBack(tree.Get());
    New<Map>(deepest, 0);
    const KivStorage::LoadResult loaded = GetParam().read(GetParam().write(tree.Get()), {});
    EXPECT_FALSE(loaded.result.Ok());
    EXPECT_NE(loaded.result.sentence.find("more than 1000 levels"), std::string::npos) << loaded.result.sentence;
}

TEST_P(FormRoundTripTest, EveryUtf16UnitReadsBackAloneAndBesideOthers) {
    const auto tree = NewTree();
    Map* const root = NewRootMap(tree.Get());
    auto* const alone = New<Vector>(root, 0);
    KivBase::WString all;
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        Append<String>(alone)->Set(KivBase::WString(1, static_cast<char16_t>(unit)));
        all += static_cast<char16_t>(unit);
    }
    New<String>(root, 1)->Set(all);
    New<String>(root, 2)->Set(KivBase::WString(all.rbegin(), all.rend()));
    ExpectReadsBack(tree.Get());
}

TEST_P(FormRoundTripTest, RandomDoublesReadBackBitForBit) {
    std::mt19937_64 random(20261121);
    const auto tree = NewTree();
    auto* const vector = New<Vector>(NewRootMap(tree.Get()), 0);
    for (int i = 0; i < 100000; ++i) {
        Append<Double>(vector)->Set(FromBits(random()));
    }
    ExpectReadsBack(tree.Get());
}

INSTANTIATE_TEST_SUITE_P(Forms, FormRoundTripTest,
                         testing::Values(FormCase{"Text", ToText, FromText}, FormCase{"Json", ToJson, FromJson}),
                         [](const auto& each) { return each.param.name; });

/// Expects numbers in an array one after the other, bit for bit.
class ExpectNumbers final : public KivInspect::JsonHandler {
public:
    explicit ExpectNumbers(const std::vector<double>& numbers) : numbers_(numbers) {}

    void Null() override { FAIL(); }
    void Boolean(bool /*value*/) override { FAIL(); }
    void Integer(std::int64_t value) override { Take(static_cast<double>(value)); }
    void Unsigned(std::uint64_t value) override { Take(static_cast<double>(value)); }
    void Float(double value, const std::string& /*digits*/) override { Take(value); }
    void String(std::string& /*value*/) override { FAIL(); }
    void StartObject() override { FAIL(); }
    void Key(std::string& /*key*/) override { FAIL(); }
    void EndObject() override { FAIL(); }
    void StartArray() override {}
    void EndArray() override { EXPECT_EQ(next_, numbers_.size()); }

private:
    void Take(double value) {
        ASSERT_LT(next_, numbers_.size());
        ASSERT_TRUE(ToBits(numbers_[next_]) == ToBits(value)) << std::hex << ToBits(numbers_[next_]);
        ++next_;
    }

    const std::vector<double>& numbers_;
    std::size_t next_ = 0;
};

/// The same digits read as JSON, which has no name for what is not finite.
TEST(DoubleTextTest, TenMillionRandomBitPatternsReadBackFromJson) {
    std::mt19937_64 random(1852);
    for (int part = 0; part < 100; ++part) {
        std::vector<double> numbers;
        std::string text = "[";
        while (numbers.size() < 100000) {
            const double number = FromBits(random());
            if (std::isfinite(number)) {
                text += numbers.empty() ? "" : ",";
                KivInspect::AppendValue(text, number);
                numbers.push_back(number);
            }
        }
        text += "]";
        KivInspect::MemorySource source(text);
        ExpectNumbers handler(numbers);
        KivInspect::ParseJson(source, "the numbers", handler);
    }
}

/// As many as it takes to meet what is rare; the digits themselves, without a tree around them.
TEST(DoubleTextTest, TenMillionRandomBitPatternsReadBack) {
    std::mt19937_64 random(1815);
    std::string text;
    for (int i = 0; i < 10000000; ++i) {
        const std::uint64_t bits = random();
        text.clear();
        KivInspect::AppendValue(text, FromBits(bits));
        KivInspect::Scan scan(text);
        const double back = scan.TakeDouble();
        ASSERT_TRUE(ToBits(back) == bits && scan.AtEnd()) << std::hex << bits << " " << text;
    }
}

}  // namespace
}  // namespace InspectTest
