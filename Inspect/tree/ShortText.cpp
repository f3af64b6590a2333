#include <string>

#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Vector.h>
#include <KivInspect/ValueText.h>

namespace KivInspect {
namespace {

using namespace KivGenerics;

constexpr const char* Cut = "...";

std::string Counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

/// The first elements, as many as fit, and how many there are in all.
template <class Elements, class AppendElement>
std::string ShortElements(const Elements& elements, std::size_t width, AppendElement append) {
    std::string text = "{";
    std::size_t shown = 0;
    for (const auto& element : elements) {
        std::string next = shown == 0 ? "" : ", ";
        append(next, element);
        if (text.size() + next.size() > width) {
            text += shown == 0 ? Cut : std::string(", ") + Cut;
            break;
        }
        text += next;
        ++shown;
    }
    text += '}';
    return shown == elements.size() ? text : text + " " + Counted(elements.size(), "element", "elements");
}

template <class Set>
std::string ShortSet(const Node* node, std::size_t width) {
    typename Set::Elements elements;
    static_cast<const Set*>(node)->Get(elements);
    return ShortElements(elements, width, [](std::string& text, const auto& element) { AppendValue(text, element); });
}

void AppendShort(std::string& text, const char16_t* units, std::size_t count, std::size_t width) {
    if (count <= width) {
        AppendQuoted(text, units, count);
        return;
    }
    // A pair of surrogates is not torn apart.
    const bool tears = width > 0 && 0xD800 <= units[width - 1] && units[width - 1] <= 0xDBFF;
    AppendQuoted(text, units, tears ? width - 1 : width);
    text += Cut;
}

}  // namespace

std::string ShortText(Node* node, std::size_t width) {
    if (node == nullptr) {
        return "nothing";
    }
    std::string text;
    switch (node->GetType()) {
        case NodeTypeString: {
            const auto* const string = static_cast<String*>(node);
            AppendShort(text, string->Get(), string->GetLength(), width);
            return text;
        }
        case NodeTypeVector:
        case NodeTypeMap:
            return Counted(static_cast<std::size_t>(static_cast<Composite*>(node)->GetSize(TemporalityTemporary)),
                           "child", "children");
        case NodeTypeIntegerSet: return ShortSet<IntegerSet>(node, width);
        case NodeTypeIdSet: return ShortSet<IdSet>(node, width);
        case NodeTypeDoubleSet: return ShortSet<DoubleSet>(node, width);
        case NodeTypeStringSet:
            return ShortElements(static_cast<StringSet*>(node)->Get(), width,
                                 [width](std::string& to, const KivBase::WString& element) {
                                     AppendShort(to, element.data(), element.size(), width);
                                 });
        case NodeTypeInteger:
        case NodeTypeGlobalID:
        case NodeTypeDouble:
        case NodeTypeBoolean:
        case NodeTypeInteger64: AppendValue(text, node); break;
    }
    return text;
}

}  // namespace KivInspect
