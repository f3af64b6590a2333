// Runs one target over files, and over all files of folders, without an engine: to look at a finding, or to measure what a
// corpus reaches.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count);

namespace {

namespace fs = std::filesystem;

/// The files that a name stands for, in the order of their names. Throws where there is no such thing.
std::vector<fs::path> ListFiles(const fs::path& path) {
    if (!fs::is_directory(path)) {
        return {path};
    }
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// The exact bytes in a block of their own, so that a sanitizer sees each step over their end.
bool Run(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "%s cannot be read: check its name, and that you may read it.\n", path.u8string().c_str());
        return false;
    }
    const std::vector<char> text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const std::vector<std::uint8_t> bytes(text.begin(), text.end());
    // The last name that is printed before a crash is the finding's.
    std::printf("%s\n", path.u8string().c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    return true;
}

}  // namespace

int main(int count, char** names) {
    int unread = 0;
    std::size_t runs = 0;
    for (int i = 1; i < count; ++i) {
        for (const fs::path& path : ListFiles(names[i])) {
            const bool read = Run(path);
            runs += read ? 1U : 0U;
            unread += read ? 0 : 1;
        }
    }
    std::printf("%zu inputs\n", runs);
    return unread == 0 && runs > 0 ? 0 : 1;
}
