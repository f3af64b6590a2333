#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <KivInspect/FileSource.h>
#include <KivInspect/Names.h>
#include <KivInspect/Sink.h>
#include <KivStorage/FileScanner.h>
#include <KivStorage/Result.h>

namespace KivInspect {

/// Nodes, and the bytes of items that they take in the saved tree.
struct Share {
    std::uint64_t nodes = 0;
    std::uint64_t bytes = 0;
};

/// A node with everything below it.
struct SubTree {
    std::string key;
    int kind = 0;
    std::uint32_t tag = 0;  ///< of a map
    std::uint64_t bytes = 0;
    std::uint64_t nodes = 0;
    std::vector<SubTree> children;  ///< those that can be seen in a drawing of the whole
};

struct Statistics {
    Share all;
    std::array<Share, 13> byKind{};      ///< by KivGenerics::NodeType; of composites their own bytes alone
    std::map<std::uint32_t, Share> byTag;  ///< the maps of a tag, with all below them but other maps
    std::vector<std::uint64_t> byLevel;  ///< nodes on each level, the root's first
    /// Vectors and maps by number of children: none; 1; 2 and 3; 4 to 7; ...
    std::vector<std::uint64_t> byChildren;
    std::vector<SubTree> largest;  ///< vectors, maps and sets, the largest first
    SubTree root;                  ///< for the drawing
};

struct StatisticsResult {
    KivStorage::Result result;
    Statistics statistics;
};

/// Adds up a saved tree, reading it once; memory grows with `top`, with the number of tags and with the depth. Throws
/// std::bad_alloc.
StatisticsResult ReadStatistics(KivStorage::FileScanner& scanner, std::size_t top, const Progress& progress = {});

/// Tables and histograms for people; of tags at most `top`.
void WriteStatistics(const Statistics& statistics, std::size_t top, const Names* names, Sink& sink);
/// The same as one JSON object.
void WriteStatisticsJson(const Statistics& statistics, const Names* names, Sink& sink);
/// An SVG drawing in which every area is as large as its sub-tree's share of the bytes.
void WriteTreemap(const Statistics& statistics, const Names* names, Sink& sink);

}  // namespace KivInspect
