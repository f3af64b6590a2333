#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <KivGenerics/ToText.h>
#include <KivInspect/Statistics.h>

#include "view/Drawing.h"

namespace KivInspect {
namespace {

using namespace KivGenerics;

constexpr double Width = 1200.0;
constexpr double Height = 800.0;
constexpr double Head = 16.0;         // room for the name of what holds others
constexpr double SmallestLabel = 40.0;  // narrower areas have none
constexpr double SmallestSide = 3.0;  // smaller areas are not divided
constexpr double CharacterWidth = 6.6;
constexpr int DeepestLevel = 8;

struct Area {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;
};

/// With one decimal; the same in every locale.
std::string Number(double value) {
    const auto tenths = static_cast<long long>(std::llround(value * 10.0));
    return std::to_string(tenths / 10) + (tenths % 10 != 0 ? "." + std::to_string(tenths % 10) : "");
}

/// Divides an area in proportion to the bytes of sub-trees, largest first, in pieces as square as they can be.
class Layout {
public:
    Layout(const std::vector<SubTree>& trees, std::uint64_t bytes, const Area& area) : rest_(area) {
        for (const SubTree& tree : trees) {
            order_.push_back(&tree);
        }
        // Of the same size, in the order that they stand in.
        std::sort(order_.begin(), order_.end(), [](const SubTree* left, const SubTree* right) {
            return left->bytes != right->bytes ? left->bytes > right->bytes : left < right;
        });
        scale_ = area.width * area.height / static_cast<double>(bytes);
    }

    template <class Use>
    void ForEach(Use use) {
        for (std::size_t begin = 0; begin < order_.size();) {
            const std::size_t end = EndOfRow(begin);
            PlaceRow(begin, end, use);
            begin = end;
        }
    }

private:
    double SizeOf(std::size_t i) const { return static_cast<double>(order_[i]->bytes) * scale_; }

    /// How far from a square the worst of a row is, of the given sum.
    double Worst(std::size_t begin, std::size_t end, double sum) const {
        const double side = std::min(rest_.width, rest_.height);
        const double squared = side * side;
        return std::max(squared * SizeOf(begin) / (sum * sum), sum * sum / (squared * SizeOf(end - 1)));
    }

    /// A row takes more as long as that makes its pieces more square.
    std::size_t EndOfRow(std::size_t begin) const {
        std::size_t end = begin + 1;
        double sum = SizeOf(begin);
        double worst = Worst(begin, end, sum);
        while (end < order_.size()) {
            const double next = Worst(begin, end + 1, sum + SizeOf(end));
            if (next > worst) {
                break;
            }
            worst = next;
            sum += SizeOf(end);
            end += 1;
        }
        return end;
    }

    template <class Use>
    void PlaceRow(std::size_t begin, std::size_t end, Use use) {
        double sum = 0.0;
        for (std::size_t i = begin; i < end; ++i) {
            sum += SizeOf(i);
        }
        const bool upright = rest_.width >= rest_.height;
        const double side = upright ? rest_.height : rest_.width;
        const double thickness = side > 0.0 ? sum / side : 0.0;
        double along = 0.0;
        for (std::size_t i = begin; i < end; ++i) {
            const double length = thickness > 0.0 ? SizeOf(i) / thickness : 0.0;
            use(*order_[i], upright ? Area{rest_.x, rest_.y + along, thickness, length}
                                    : Area{rest_.x + along, rest_.y, length, thickness});
            along += length;
        }
        if (upright) {
            rest_ = {rest_.x + thickness, rest_.y, rest_.width - thickness, rest_.height};
        } else {
            rest_ = {rest_.x, rest_.y + thickness, rest_.width, rest_.height - thickness};
        }
    }

    std::vector<const SubTree*> order_;
    Area rest_;
    double scale_ = 0.0;
};

class Painter {
public:
    Painter(const Names* names, BufferedSink& out) : names_(names), out_(out) {}

    void Paint(const SubTree& tree, const Area& area, int level) {
        const std::string name = NameOf(tree);
        out_.GetText() += "<rect x=\"" + Number(area.x) + "\" y=\"" + Number(area.y) + "\" width=\"" +
                          Number(area.width) + "\" height=\"" + Number(area.height) + "\" fill=\"" + ColorOf(tree) +
                          "\"><title>" + EscapeXml(name) + ", " + std::to_string(tree.bytes) + " bytes, " +
                          std::to_string(tree.nodes) + " nodes</title></rect>\n";
        PaintLabel(name, area);
        out_.FlushWhenFull();
        const bool hasHead = area.height > 2 * Head && area.width > SmallestLabel;
        const Area inside{area.x + 1.5, area.y + (hasHead ? Head : 1.5), area.width - 3.0,
                          area.height - (hasHead ? Head + 1.5 : 3.0)};
        if (level < DeepestLevel && !tree.children.empty() && inside.width > SmallestSide &&
            inside.height > SmallestSide) {
            Layout(tree.children, tree.bytes, inside).ForEach([&](const SubTree& child, const Area& place) {
                Paint(child, place, level + 1);
            });
        }
    }

private:
    std::string NameOf(const SubTree& tree) const {
        std::string name = tree.key.empty() ? "the root" : tree.key;
        name += std::string(" ") + ToText(static_cast<NodeType>(tree.kind));
        if (tree.kind == NodeTypeMap) {
            const std::string* const tag =
                names_ != nullptr ? names_->FindTag(static_cast<SemanticTag>(tree.tag)) : nullptr;
            name += " " + std::to_string(tree.tag) + (tag != nullptr ? " " + *tag : "");
        }
        return name;
    }

    void PaintLabel(const std::string& name, const Area& area) {
        if (area.width < SmallestLabel || area.height < Head) {
            return;
        }
        const auto room = static_cast<std::size_t>((area.width - 8.0) / CharacterWidth);
        const std::string label = name.size() <= room ? name : name.substr(0, name.find_first_of(' '));
        if (label.size() <= room) {
            out_.GetText() += "<text x=\"" + Number(area.x + 4.0) + "\" y=\"" + Number(area.y + 12.0) + "\">" +
                              EscapeXml(label) + "</text>\n";
        }
    }

    /// Maps of one tag have one colour; every other kind has its own.
    static std::string ColorOf(const SubTree& tree) {
        const std::uint64_t number = tree.kind == NodeTypeMap ? std::uint64_t{tree.tag} * 47U + 200U
                                                              : static_cast<std::uint64_t>(tree.kind) * 29U;
        return "hsl(" + std::to_string(number % 360U) + ",45%," + (tree.kind == NodeTypeMap ? "78" : "86") + "%)";
    }

    const Names* names_;
    BufferedSink& out_;
};

}  // namespace

void WriteTreemap(const Statistics& statistics, const Names* names, Sink& sink) {
    BufferedSink out(sink);
    out.GetText() +=
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1200\" height=\"800\" viewBox=\"0 0 1200 800\" "
        "font-family=\"sans-serif\" font-size=\"11\" stroke=\"none\">\n"
        "<style>rect{stroke:#fff;stroke-width:.6}text{pointer-events:none}</style>\n";
    if (statistics.root.bytes > 0) {
        Painter(names, out).Paint(statistics.root, {0.0, 0.0, Width, Height}, 0);
    }
    out.GetText() += "</svg>\n";
    out.Flush();
}

}  // namespace KivInspect
