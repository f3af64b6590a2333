#pragma once

#include <filesystem>
#include <iostream>
#include <random>
#include <string>
#include <system_error>

namespace GuideChecks {

/// A file of its own in the temporary directory, gone with the object.
class TemporaryFile {
public:
    TemporaryFile()
        : path_(std::filesystem::temp_directory_path() / ("GuideSnippets-" + std::to_string(std::random_device()()))) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    const std::filesystem::path& GetPath() const { return path_; }

private:
    std::filesystem::path path_;
};

class Checks {
public:
    void Expect(bool holds, const char* what) {
        ++count_;
        if (!holds) {
            ++failed_;
            std::cerr << "GuideSnippets: not as the guide says: " << what << "\n";
        }
    }
    template <class T>
    void ExpectEqual(const T& found, const T& expected, const char* what) {
        Expect(found == expected, what);
    }
    int Finish() const {
        std::cout << count_ << " statements of the guide hold, " << failed_ << " do not\n";
        return failed_ == 0 && count_ > 0 ? 0 : 1;
    }

private:
    int count_ = 0;
    int failed_ = 0;
};

}  // namespace GuideChecks
