#pragma once

#include <string>

#include <KivGenerics/Tree.h>
#include <KivInspect/FileSource.h>
#include <KivInspect/Sink.h>
#include <KivInspect/Source.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/Options.h>

namespace KivInspect {

/// Writes a tree as lines of text, one node a line; drawn in Docs/text-form.md. Nothing is lost but the number of fixed slots
/// of a map whose tag was changed after it was made. Two trees that are the same give the same bytes.
///
/// Every node is written, whatever its temporality. `progress` is told of nodes. Throws what the sink throws. Cost: linear, for a tree whose depth is within
/// what a load accepts; each line begins with two spaces for each level.
void WriteText(const KivGenerics::Tree* tree, Sink& sink, const Progress& progress = {});

/// Reads what WriteText writes, also when people have edited it: children of a map in any order, any spelling of escapes, lines
/// that end with CR and LF. `place` is how messages call it. Never throws but std::bad_alloc.
///
/// The limits are those of saved files: levels, bytes, units of one text.
KivStorage::LoadResult ReadText(Source& source, const std::string& place, const KivStorage::LoadOptions& options = {});

/// The first bytes of the text form; its version follows.
inline constexpr const char* TextFormBegins = "kivtext ";

}  // namespace KivInspect
