#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ToolTest {

/// How a run of the tool ended.
struct Ran {
    int code = -1;  ///< 128 and the signal's number when a signal ended it
    std::string out;
    std::string err;
};

/// Runs the built tool with these words and this standard input, and waits for it. Words are UTF-8.
Ran RunTool(const std::vector<std::string>& words, const std::string& input = {});

/// What starts a program with its standard streams on files; each system has its own.
int Start(const std::string& program, const std::vector<std::string>& words, const std::filesystem::path& input,
          const std::filesystem::path& output, const std::filesystem::path& errors);

/// A folder of its own for one test, removed with what is in it.
class Folder {
public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    /// The path of a file in it, as a word.
    std::string operator/(const std::string& name) const { return (path_ / std::filesystem::u8path(name)).u8string(); }
    /// The names in it, sorted.
    std::vector<std::string> GetNames() const;

private:
    std::filesystem::path path_;
};

std::string ReadFile(const std::string& file);
void WriteFile(const std::string& file, const std::string& bytes);

/// A file of the tests' data.
inline std::string Data(const std::string& name) {
    return std::string(KIV_TEST_DATA "/") + name;
}

}  // namespace ToolTest
