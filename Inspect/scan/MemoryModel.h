#pragma once

#include <array>
#include <cstdint>
#include <map>

#include <KivGenerics/NodeType.h>

namespace KivInspect {

/// About how much memory the parts of a tree take. Small trees are made and their buffers asked, so that the figures are
/// those of this library, this platform and this compiler.
class MemoryModel {
public:
    /// A model of its own, of what has been measured once.
    static MemoryModel Measured() {
        static const MemoryModel model;
        return model;
    }

    /// A node without content; of a map use OfMap.
    double OfNode(int kind) const noexcept { return nodes_[static_cast<std::size_t>(kind)]; }
    /// A child's place in a vector.
    double OfVectorChild() const noexcept { return vectorChild_; }
    double OfMap(std::uint32_t tag) { return FindMap(tag).bytes; }
    /// A child at an index among the children of a map of this tag: nothing in a fixed slot.
    double OfMapChild(std::uint32_t tag, std::int32_t index) {
        return index < FindMap(tag).slots ? 0.0 : overflowChild_;
    }
    /// An element of a set of this kind, without a text's units.
    double OfElement(int kind) const noexcept { return elements_[static_cast<std::size_t>(kind)]; }
    double OfText(std::uint32_t units) const noexcept;

private:
    struct OfTag {
        double bytes = 0.0;
        int slots = 0;
    };

    MemoryModel();
    void MeasureNodes();
    void MeasureElements();
    void MeasureText();
    const OfTag& FindMap(std::uint32_t tag);
    OfTag MeasureMap(std::uint32_t tag) const;

    std::array<double, 13> nodes_{};
    std::array<double, 13> elements_{};
    double vectorChild_ = 0.0;
    double overflowChild_ = 0.0;
    double textExtra_ = 0.0;  // of a text that does not lie in its node
    std::map<std::uint32_t, OfTag> maps_;
};

}  // namespace KivInspect
