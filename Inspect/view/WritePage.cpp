#include <functional>
#include <string_view>

#include <KivInspect/View.h>

#include "view/Base64Writer.h"
#include "view/Drawing.h"
#include "view/Page.h"
#include "view/PageData.h"

namespace KivInspect {
namespace {

/// Inside a script no name may end it.
std::string EscapeScript(const std::string& json) {
    std::string escaped;
    for (const char c : json) {
        if (c == '<') {
            escaped += "\\u003c";
        } else {
            escaped += c;
        }
    }
    return escaped;
}

/// Writes the page, and calls `fill` with the name of each place in double braces.
void FillPage(Sink& sink, const std::function<void(std::string_view name)>& fill) {
    std::string_view rest = PageHtml;
    for (std::size_t at = rest.find("{{"); at != std::string_view::npos; at = rest.find("{{")) {
        sink.Write(rest.substr(0, at));
        const std::size_t end = rest.find("}}", at);
        fill(rest.substr(at + 2, end - at - 2));
        rest.remove_prefix(end + 2);
    }
    sink.Write(rest);
}

}  // namespace

void WritePage(const ViewTree& tree, const ViewTree* other, const Names* names, Sink& sink, const Progress& progress) {
    KivGenerics::Node* const left = tree.tree->GetRoot();
    KivGenerics::Node* const right = other != nullptr ? other->tree->GetRoot() : nullptr;
    const std::string title = other != nullptr ? tree.title + " and " + other->title : tree.title;
    FillPage(sink, [&](std::string_view name) {
        if (name == "TITLE") {
            sink.Write(EscapeXml(title));
        } else if (name == "TITLE_A") {
            sink.Write(EscapeXml(tree.title));
        } else if (name == "TITLE_B") {
            sink.Write(EscapeXml(other != nullptr ? other->title : ""));
        } else if (name == "STYLE") {
            sink.Write(PageStyle);
        } else if (name == "SCRIPT") {
            sink.Write(PageScript);
        } else if (name == "NAMES") {
            sink.Write(EscapeScript(PageNames({left, right}, names)));
        } else if (name == "DATA") {
            Base64Writer out(sink);
            WritePageData(left, right, other != nullptr, progress, out);
            out.Finish();
        }
    });
}

}  // namespace KivInspect
