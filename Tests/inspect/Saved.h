#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <KivGenerics/Tree.h>
#include <KivStorage/FileScanner.h>

namespace InspectTest {

/// A tree as a save writes it, transient nodes too.
std::vector<std::uint8_t> Save(KivGenerics::Tree* tree);

/// A tree whose saved form takes several blocks: below the root a map (index 0) of `count` maps (tag 28682) with a text, an integer
/// and a 64-bit integer, and a vector (index 1) of as many integers.
KivBase::ReturnPtrI<KivGenerics::Tree> LongTree(int count);

inline std::unique_ptr<KivStorage::FileScanner> Scan(const std::vector<std::uint8_t>& bytes) {
    return KivStorage::FileScanner::OpenMemory(bytes.data(), bytes.size());
}

/// The document that Docs/file-format.md draws.
inline std::unique_ptr<KivStorage::FileScanner> ScanData(const std::string& name) {
    return KivStorage::FileScanner::OpenFile(std::string(KIV_TEST_DATA "/") + name);
}

}  // namespace InspectTest
