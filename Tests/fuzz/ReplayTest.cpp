// What the fuzzers have found stays found: every target runs over its corpus and its regressions.

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "storage/Support.h"
#include "targets/Targets.h"

namespace {

namespace fs = std::filesystem;

class ReplayTest : public testing::TestWithParam<KivFuzz::Target> {};

std::vector<fs::path> FilesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    if (fs::exists(folder)) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

void Replay(const KivFuzz::Target& target, const std::vector<fs::path>& files) {
    for (const fs::path& file : files) {
        SCOPED_TRACE(file.u8string());
        const StorageTest::Bytes bytes = StorageTest::ReadFile(file);
        EXPECT_NO_THROW(target.run(bytes.data(), bytes.size()));
    }
}

TEST_P(ReplayTest, TheCorpusBreaksNoPromise) {
    const auto files = FilesIn(fs::path(KIV_FUZZ_DATA) / "corpus" / GetParam().name);
    EXPECT_GE(files.size(), 5u);
    Replay(GetParam(), files);
}

TEST_P(ReplayTest, WhatWasFoundOnceBreaksNoPromiseAgain) {
    Replay(GetParam(), FilesIn(fs::path(KIV_FUZZ_DATA) / "regressions" / GetParam().name));
}

TEST_P(ReplayTest, NoBytesAtAllBreakNoPromise) {
    EXPECT_NO_THROW(GetParam().run(nullptr, 0));
}

INSTANTIATE_TEST_SUITE_P(Targets, ReplayTest, testing::ValuesIn(KivFuzz::kTargets),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
