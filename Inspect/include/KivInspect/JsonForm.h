#pragma once

#include <string>

#include <KivGenerics/Tree.h>
#include <KivInspect/FileSource.h>
#include <KivInspect/Sink.h>
#include <KivInspect/Source.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/Options.h>

namespace KivInspect {

/// Writes a tree as a JSON document, one node a line; its schema is in Docs/json-form.md. Nothing is lost but the number of
/// fixed slots of a map whose tag was changed after it was made. Two trees that are the same give the same bytes.
///
/// Every node is written, whatever its temporality. `progress` is told of nodes. Throws what the sink throws.
void WriteJson(const KivGenerics::Tree* tree, Sink& sink, const Progress& progress = {});

/// Reads what WriteJson writes, in any layout of spaces and lines; the members of each object in the order of the schema, which
/// is the alphabetical one. `place` is how messages call it. Never throws but std::bad_alloc.
///
/// The limits are those of saved files: levels, bytes, units of one text.
KivStorage::LoadResult ReadJson(Source& source, const std::string& place, const KivStorage::LoadOptions& options = {});

}  // namespace KivInspect
