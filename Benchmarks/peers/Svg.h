#pragma once

#include <string>
#include <vector>

namespace Peers {

struct Point {
    double x;
    double y;
};

/// An image that is drawn from the top left, in pixels.
class Svg {
public:
    Svg(double width, double height);

    void Text(double x, double y, const char* anchor, const std::string& text);
    void Rectangle(double x, double y, double width, double height, const char* color);
    void Line(Point from, Point to, const char* color);
    void Path(const std::vector<Point>& points, const char* color);
    /// The whole document.
    std::string Finish() const { return text_ + "</svg>\n"; }

private:
    std::string text_;
};

}  // namespace Peers
