#pragma once

#include <cstddef>
#include <limits>

#include <KivGenerics/Node.h>
#include <KivInspect/Names.h>
#include <KivInspect/Sink.h>

namespace KivInspect {

struct DumpOptions {
    static constexpr int Everything = (std::numeric_limits<int>::max)();

    int children = 10;       ///< of each composite, that many are shown
    int depth = Everything;  ///< levels below the start
    std::size_t width = 80;  ///< characters of a value; 0 shows whole values
    const Names* names = nullptr;
};

/// Writes a node and what is below it for people to read: one node a line, with two spaces for each level, then index or name,
/// kind, tag, own temporality where it is not the usual one, and value. Where something is left out, a line says how much.
/// Returns true when something was. Throws what the sink throws.
bool WriteDump(KivGenerics::Node* start, Sink& sink, const DumpOptions& options = {});

}  // namespace KivInspect
