#include "Svg.h"

#include "Tables.h"

namespace Peers {
namespace {

std::string Attribute(const char* name, double value) {
    return std::string(" ") + name + "=\"" + Format(value, 1) + "\"";
}

std::string Escape(const std::string& text) {
    std::string escaped;
    for (const char each : text) {
        escaped += each == '&' ? "&amp;" : each == '<' ? "&lt;" : std::string(1, each);
    }
    return escaped;
}

}  // namespace

Svg::Svg(double width, double height)
    : text_("<svg xmlns=\"http://www.w3.org/2000/svg\"" + Attribute("width", width) + Attribute("height", height) +
            " font-family=\"sans-serif\" font-size=\"13\">\n" +
            "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n") {}

void Svg::Text(double x, double y, const char* anchor, const std::string& text) {
    text_ += "<text" + Attribute("x", x) + Attribute("y", y) + " text-anchor=\"" + anchor + "\">" + Escape(text) +
             "</text>\n";
}

void Svg::Rectangle(double x, double y, double width, double height, const char* color) {
    text_ += "<rect" + Attribute("x", x) + Attribute("y", y) + Attribute("width", width) + Attribute("height", height) +
             " fill=\"" + color + "\"/>\n";
}

void Svg::Line(Point from, Point to, const char* color) {
    Path({from, to}, color);
}

void Svg::Path(const std::vector<Point>& points, const char* color) {
    text_ += "<polyline fill=\"none\" stroke=\"" + std::string(color) + "\" points=\"";
    for (const Point& point : points) {
        text_ += Format(point.x, 1) + "," + Format(point.y, 1) + " ";
    }
    text_ += "\"/>\n";
}

}  // namespace Peers
