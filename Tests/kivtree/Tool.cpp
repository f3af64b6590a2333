#include "kivtree/Tool.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>

namespace ToolTest {

namespace fs = std::filesystem;

Folder::Folder() {
    std::random_device random;
    path_ = fs::temp_directory_path() / ("kivtree-test-" + std::to_string(random()) + std::to_string(random()));
    fs::create_directories(path_);
}

Folder::~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::vector<std::string> Folder::GetNames() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path_)) {
        names.push_back(entry.path().filename().u8string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string ReadFile(const std::string& file) {
    std::ifstream stream(fs::u8path(file), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void WriteFile(const std::string& file, const std::string& bytes) {
    std::ofstream stream(fs::u8path(file), std::ios::binary);
    stream << bytes;
}

Ran RunTool(const std::vector<std::string>& words, const std::string& input) {
    const Folder folder;
    WriteFile(folder / "in", input);
    Ran ran;
    ran.code = Start(KIVTREE, words, fs::u8path(folder / "in"), fs::u8path(folder / "out"), fs::u8path(folder / "err"));
    ran.out = ReadFile(folder / "out");
    ran.err = ReadFile(folder / "err");
    return ran;
}

}  // namespace ToolTest
