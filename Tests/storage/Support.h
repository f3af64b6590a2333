#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <KivBase/ReturnPtrI.h>
#include <KivBase/WString.h>
#include <KivCOMShared/BlockReadStream.h>
#include <KivCOMShared/BlockWriteStream.h>
#include <KivGenerics/Composite.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>

namespace StorageTest {

using Bytes = std::vector<std::uint8_t>;

/// A folder of its own for one test, removed with what is in it.
class Folder {
public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::filesystem::path operator/(const char* name) const { return path_ / name; }
    const std::filesystem::path& GetPath() const { return path_; }
    /// The names in it, sorted.
    std::vector<std::string> GetNames() const;

private:
    std::filesystem::path path_;
};

Bytes ReadFile(const std::filesystem::path& path);
void WriteFile(const std::filesystem::path& path, const Bytes& bytes);
Bytes Text(const char* text);

/// "89 4B 49 56": two capital hexadecimal digits for each byte.
std::string ToHex(const Bytes& bytes);
Bytes FromHex(const std::string& hex);

/// A variant whose type is complete nowhere: its type's number and its value, as they lie in every system's record.
class Variant {
public:
    explicit Variant(std::uint16_t type = 0, std::uint64_t value = 0);
    operator VARIANT*() { return reinterpret_cast<VARIANT*>(bytes_); }

    std::uint16_t GetType() const;
    std::uint64_t GetValue() const;

private:
    alignas(8) unsigned char bytes_[24] = {};
};

/// A file with header, blocks and trailer around these items, made by an implementation of its own.
Bytes Frame(const Bytes& items, std::uint64_t count, std::size_t blockPayload = 65524);
/// One item's bytes after another.
Bytes Join(const std::vector<Bytes>& parts);

KivBase::ReturnPtrI<KivGenerics::Tree> NewTree();
/// A tree whose root is a map of this tag with 8 slots unless the tag says otherwise.
KivGenerics::Map* NewRootMap(KivGenerics::Tree* tree, int tag = 1);

/// A persistent map with one child of every kind, at 0 to 12, in slot 0 of a new root.
KivBase::ReturnPtrI<KivGenerics::Tree> TreeOfEveryKind();

/// Every node that a save takes, one in a line: key, kind, tag, own temporality, value.
std::string Describe(KivGenerics::Tree* tree, bool withTransient = false);

}  // namespace StorageTest
