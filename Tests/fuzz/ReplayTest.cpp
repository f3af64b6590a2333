// What the fuzzers have found stays found: every target runs over its corpus and its regressions.

#include "fuzz/Replay.h"

namespace {

TEST_P(ReplayTest, TheCorpusBreaksNoPromise) {
    const auto files = FilesIn("corpus");
    EXPECT_GE(files.size(), 5u);
    Replay(files);
}

TEST_P(ReplayTest, WhatWasFoundOnceBreaksNoPromiseAgain) {
    Replay(FilesIn("regressions"));
}

TEST_P(ReplayTest, NoBytesAtAllBreakNoPromise) {
    EXPECT_NO_THROW(GetParam().run(nullptr, 0));
}

INSTANTIATE_TEST_SUITE_P(Targets, ReplayTest, testing::ValuesIn(KivFuzz::kTargets), NameOfTarget);

}  // namespace
