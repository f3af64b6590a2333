#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include <KivInspect/FileSource.h>
#include <KivInspect/Sink.h>
#include <KivStorage/FileScanner.h>
#include <KivStorage/Result.h>

namespace KivInspect {

/// What can be told of a saved tree without loading it.
struct TreeInfo {
    std::uint64_t fileBytes = 0;
    std::uint64_t blocks = 0;
    std::uint64_t items = 0;
    std::uint64_t itemBytes = 0;
    std::uint64_t nodes = 0;
    std::array<std::uint64_t, 13> nodesByKind{};       ///< by KivGenerics::NodeType
    std::array<std::uint64_t, 8> nodesByTemporality{};  ///< by own temporality
    std::size_t levels = 0;                            ///< of nodes, the root being level 1
    std::uint64_t textUnits = 0;                       ///< in texts and sets of texts
    std::uint64_t memoryBytes = 0;  ///< about what the loaded tree takes, as this library measures itself
};

struct InfoResult {
    KivStorage::Result result;
    TreeInfo info;  ///< what was read up to a failure
};

/// Reads a saved tree from its beginning to its end, in little memory, and checks every byte of it. Throws std::bad_alloc.
InfoResult ReadInfo(KivStorage::FileScanner& scanner, const Progress& progress = {});

/// For people: one fact a line.
void WriteInfo(const TreeInfo& info, Sink& sink);
/// The same as one JSON object.
void WriteInfoJson(const TreeInfo& info, Sink& sink);

}  // namespace KivInspect
