#pragma once

#include <cstddef>
#include <limits>
#include <string>

#include <KivGenerics/Tree.h>
#include <KivInspect/FileSource.h>
#include <KivInspect/Names.h>
#include <KivInspect/Sink.h>

namespace KivInspect {

/// A tree to be drawn.
struct ViewTree {
    KivGenerics::Tree* tree = nullptr;
    std::string title;  ///< in UTF-8
};

/// Writes one HTML page that needs nothing else, no network either: it folds, searches and filters the tree, by kind, tag and
/// temporality. With `other` it shows both trees side by side, aligned by key. The page builds only what is on screen.
///
/// Values are cut to some hundred characters. `progress` is told of nodes. Needs no stack of the thread for the tree's depth.
void WritePage(const ViewTree& tree, const ViewTree* other, const Names* names, Sink& sink,
               const Progress& progress = {});

struct DrawOptions {
    int depth = (std::numeric_limits<int>::max)();  ///< levels below the root that are drawn
    std::size_t limit = 1000;  ///< nodes that are drawn at most
    const Names* names = nullptr;
};

/// Writes the tree as a graph in the language of Graphviz. What is left out is said in the drawing.
void WriteDot(KivGenerics::Tree* tree, const DrawOptions& options, Sink& sink);
/// Writes the tree as an SVG drawing, a line for each node.
void WriteSvg(KivGenerics::Tree* tree, const DrawOptions& options, Sink& sink);

}  // namespace KivInspect
