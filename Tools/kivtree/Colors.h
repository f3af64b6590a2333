#pragma once

#include <string>

#include <KivGenerics/Node.h>

namespace KivTree {

/// `text` in the colour of the node's own temporality, when colours are wanted: what is transient yellow, what is temporary
/// red, the rest plain.
inline std::string Colored(const std::string& text, const KivGenerics::Node* node, bool colors) {
    const bool plain = !colors || node->GetTemporality() < KivGenerics::TemporalityTransient;
    const char* const color = node->GetTemporality() == KivGenerics::TemporalityTransient ? "\x1b[33m" : "\x1b[31m";
    return plain ? text : color + text + "\x1b[0m";
}

/// `text` in one of the terminal's colours, given as in "32" for green, when colours are wanted.
inline std::string Colored(const std::string& text, const char* color, bool colors) {
    return colors ? "\x1b[" + std::string(color) + "m" + text + "\x1b[0m" : text;
}

}  // namespace KivTree
