// The library and its model do the same, whatever is done to them.
//
// The steps are made by a generator of the test's own, which costs next to nothing; RapidCheck counts them out and shrinks
// what fails. RC_PARAMS="seed=7" chooses other steps, KIV_MODEL_OPERATIONS how many.

#include <algorithm>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "model/Steps.h"

namespace Model {

// Found by RapidCheck when it shows what failed.
void showValue(const Step& step, std::ostream& out) {
    out << "{" << OperationOf(step).name;
    for (const std::uint16_t number : step.numbers) {
        out << " " << number;
    }
    out << "}";
}

}  // namespace Model

namespace {

using Model::Step;
using Steps = std::vector<Step>;

constexpr int kStepsInSequence = 500;

Steps MakeSteps(std::uint64_t seed) {
    std::mt19937_64 random(seed);
    Steps steps(kStepsInSequence);
    for (Step& step : steps) {
        for (std::size_t i = 0; i < step.numbers.size(); i += 4) {
            const std::uint64_t word = random();
            for (unsigned j = 0; j < 4; ++j) {
                step.numbers[i + j] = static_cast<std::uint16_t>(word >> (16 * j));
            }
        }
    }
    return steps;
}

rc::Seq<Step> ShrinkStep(const Step& step) {
    std::vector<Step> smaller;
    for (std::size_t i = 1; i < step.numbers.size(); ++i) {
        for (const std::uint16_t number : {std::uint16_t{0}, static_cast<std::uint16_t>(step.numbers[i] / 2)}) {
            if (number != step.numbers[i]) {
                smaller.push_back(step);
                smaller.back().numbers[i] = number;
            }
        }
    }
    return rc::seq::fromContainer(std::move(smaller));
}

rc::Gen<Steps> AnySteps() {
    return {[](const rc::Random& random, int) {
        rc::Random next = random;
        return rc::shrinkable::shrinkRecur(MakeSteps(next.next()), [](const Steps& steps) {
            return rc::seq::concat(rc::shrink::removeChunks(steps), rc::shrink::eachElement(steps, ShrinkStep));
        });
    }};
}

rc::detail::TestResult RunOperations(int operations, void (*run)(const Steps&)) {
    rc::detail::TestParams params = rc::detail::configuration().testParams;
    if (std::getenv("RC_PARAMS") == nullptr) {
        params.seed = 1;
    }
    params.maxSuccess = std::max(1, operations / kStepsInSequence);
    return rc::detail::checkTestable([run] { run(*AnySteps()); }, rc::detail::TestMetadata(), params);
}

std::string Describe(const rc::detail::TestResult& result) {
    std::ostringstream text;
    rc::detail::printResultMessage(result, text);
    return text.str();
}

int CountWanted() {
    const char* const wanted = std::getenv("KIV_MODEL_OPERATIONS");
    return wanted != nullptr ? std::atoi(wanted) : 200'000;
}

TEST(TreeModelTest, WhateverIsDoneTheLibraryAndTheModelDoTheSame) {
    const auto result = RunOperations(CountWanted(), Model::Run);
    EXPECT_TRUE(result.is<rc::detail::SuccessResult>()) << Describe(result);
}

// The library is changed behind the model's back by one kind of step.
void RunWithASlip(const Steps& steps) {
    Model::World world;
    for (const Step& step : steps) {
        Model::Choices choices(world, step);
        Model::OperationOf(step).run(world, choices);
        if (Model::OperationOf(step).name == std::string("Reserve")) {
            world.At(0).library->NewRoot(KivGenerics::NodeTypeMap);
        }
        world.CheckAll();
    }
}

TEST(TreeModelTest, OneSlipIsFoundAndShrunkToTheStepThatMadeIt) {
    const auto result = RunOperations(2000, RunWithASlip);
    ASSERT_TRUE(result.is<rc::detail::FailureResult>());
    const auto& failure = result.get<rc::detail::FailureResult>();
    ASSERT_EQ(failure.counterExample.size(), 1U);
    EXPECT_NE(failure.counterExample[0].second.find("[{Reserve "), std::string::npos) << Describe(result);
    EXPECT_EQ(failure.counterExample[0].second.find("}, {"), std::string::npos) << Describe(result);
}

}  // namespace
