#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Tree.h>

using Bytes = std::vector<std::uint8_t>;

/// A folder of its own for one test, removed with what is in it.
class Folder {
public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::filesystem::path operator/(const char* name) const { return path_ / name; }
    /// The names in it, sorted.
    std::vector<std::string> GetNames() const;

private:
    std::filesystem::path path_;
};

/// A tree with so many texts; what they say depends on `word`.
KivBase::ReturnPtrI<KivGenerics::Tree> TreeOf(int texts, const char16_t* word);
/// What a save of the tree writes.
Bytes SavedBytes(KivGenerics::Tree& tree);

Bytes ReadFile(const std::filesystem::path& path);
void WriteFile(const std::filesystem::path& path, const Bytes& bytes);
