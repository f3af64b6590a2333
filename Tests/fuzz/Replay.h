#pragma once

#include <algorithm>
#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

#include "storage/Support.h"
#include "targets/Targets.h"

/// Runs targets over what they have learnt, KIV_FUZZ_DATA/corpus/<name> and KIV_FUZZ_DATA/regressions/<name>.
class ReplayTest : public testing::TestWithParam<KivFuzz::Target> {
protected:
    static std::vector<std::filesystem::path> FilesIn(const char* kind) {
        std::vector<std::filesystem::path> files;
        const auto folder = std::filesystem::path(KIV_FUZZ_DATA) / kind / GetParam().name;
        if (std::filesystem::exists(folder)) {
            for (const auto& entry : std::filesystem::directory_iterator(folder)) {
                files.push_back(entry.path());
            }
        }
        std::sort(files.begin(), files.end());
        return files;
    }

    static void Replay(const std::vector<std::filesystem::path>& files) {
        for (const std::filesystem::path& file : files) {
            SCOPED_TRACE(file.u8string());
            const StorageTest::Bytes bytes = StorageTest::ReadFile(file);
            EXPECT_NO_THROW(GetParam().run(bytes.data(), bytes.size()));
        }
    }
};

inline std::string NameOfTarget(const testing::TestParamInfo<KivFuzz::Target>& each) {
    return each.param.name;
}
