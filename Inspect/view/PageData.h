#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <KivGenerics/Composite.h>
#include <KivGenerics/Node.h>
#include <KivInspect/FileSource.h>
#include <KivInspect/Names.h>

#include "view/Base64Writer.h"

namespace KivInspect {

/// The names that a page needs, as a JSON object.
std::string PageNames(const std::vector<KivGenerics::Node*>& roots, const Names* names);

/// The number of nodes of a tree, or of two trees that are aligned by key.
std::uint32_t CountAligned(KivGenerics::Node* left, KivGenerics::Node* right);

/// Writes a tree, or two that are aligned by key, for the page's script; `right` is null for one.
///
///     number    1 when two trees are compared, else 0
///     number    how many nodes there are
///     for each node, parents first:
///     number        its index and 1
///     byte          when compared: 0 both alike, 1 changed, 2 on the left alone, 3 on the right alone
///     side          of the left one, unless it is on the right alone
///     side          of the right one, when changed or on the right alone
///     number        how many children of both together follow
///
///     side:     byte      kind + 16 * temporality
///               number    of a map: its tag
///               number    of a vector or a map: how many children it has; else the bytes of its value
///               bytes     its value, in UTF-8
void WritePageData(KivGenerics::Node* left, KivGenerics::Node* right, bool compared, const Progress& progress,
                   Base64Writer& out);

}  // namespace KivInspect
