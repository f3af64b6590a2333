#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <KivInspect/View.h>

namespace KivInspect {

/// A node of a drawing, or what stands for those that are left out.
struct DrawnNode {
    std::size_t parent = 0;  // its number in the drawing; the root is its own
    int depth = 0;
    std::string head;   // index, kind and tag; "..." for what is left out
    std::string value;  // in short
    int temporality = 0;
};

/// The nodes that are drawn, parents first.
std::vector<DrawnNode> ChooseNodes(KivGenerics::Tree* tree, const DrawOptions& options);

/// The colour of a temporality: "#1f7a3f".
const char* ColorOf(int temporality) noexcept;

/// Escapes what has a meaning in XML.
std::string EscapeXml(const std::string& text);

}  // namespace KivInspect
