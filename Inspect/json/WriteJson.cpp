#include <KivInspect/JsonForm.h>

#include <cmath>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/ToText.h>
#include <KivInspect/ValueText.h>
#include <KivInspect/Walk.h>

#include "json/JsonText.h"
#include "text/Utf.h"
#include "tree/NodeProgress.h"
#include "tree/TreeBuilder.h"

namespace KivInspect {
namespace {

using namespace KivGenerics;

void AppendMember(std::string& text, const char* member) {
    text += ", \"";
    text += member;
    text += "\": ";
}

template <class Value>
void AppendInQuotes(std::string& text, const Value& value) {
    text += '"';
    AppendValue(text, value);
    text += '"';
}

// Each value in a shape that every reader of JSON takes and gives back without loss.
void AppendJson(std::string& text, std::int32_t value) {
    AppendValue(text, value);
}

void AppendJson(std::string& text, double value) {
    const bool special = !std::isfinite(value) || (value == 0.0 && std::signbit(value));
    if (special) {
        AppendInQuotes(text, value);
    } else {
        AppendValue(text, value);
    }
}

void AppendJson(std::string& text, const GUID& value) {
    AppendInQuotes(text, value);
}

/// Text that no UTF-8 can hold goes as the numbers of its units.
void AppendJson(std::string& text, const char16_t* units, std::size_t count) {
    if (IsWellFormed(units, count)) {
        AppendJsonString(text, units, count);
        return;
    }
    text += "{\"utf16\": [";
    for (std::size_t i = 0; i < count; ++i) {
        text += i > 0 ? ", " : "";
        AppendValue(text, std::int32_t{units[i]});
    }
    text += "]}";
}

void AppendJson(std::string& text, const KivBase::WString& value) {
    AppendJson(text, value.data(), value.size());
}

template <class Elements>
void AppendElements(std::string& text, const Elements& elements) {
    text += '[';
    const char* separator = "";
    for (const auto& element : elements) {
        text += separator;
        AppendJson(text, element);
        separator = ", ";
    }
    text += ']';
}

template <class Set>
void AppendSet(std::string& text, const Node* node) {
    typename Set::Elements elements;
    static_cast<const Set*>(node)->Get(elements);
    AppendElements(text, elements);
}

void AppendLeaf(std::string& text, Node* leaf) {
    switch (leaf->GetType()) {
        case NodeTypeInteger: AppendJson(text, static_cast<Integer*>(leaf)->Get()); break;
        case NodeTypeGlobalID: AppendJson(text, static_cast<GlobalID*>(leaf)->Get()); break;
        case NodeTypeString: {
            const auto* const string = static_cast<String*>(leaf);
            AppendJson(text, string->Get(), string->GetLength());
            break;
        }
        case NodeTypeDouble: AppendJson(text, static_cast<Double*>(leaf)->Get()); break;
        case NodeTypeBoolean: AppendValue(text, static_cast<Boolean*>(leaf)->Get()); break;
        case NodeTypeVector: break;
        case NodeTypeMap: break;
        case NodeTypeIntegerSet: AppendSet<IntegerSet>(text, leaf); break;
        case NodeTypeIdSet: AppendSet<IdSet>(text, leaf); break;
        case NodeTypeStringSet: AppendElements(text, static_cast<StringSet*>(leaf)->Get()); break;
        case NodeTypeDoubleSet: AppendSet<DoubleSet>(text, leaf); break;
        // Many readers keep numbers as doubles, which have 53 bits.
        case NodeTypeInteger64: AppendInQuotes(text, static_cast<Integer64*>(leaf)->Get()); break;
    }
}

void AppendTemporality(std::string& text, const Node* node) {
    const EnumOrvGenericsTemporality own = node->GetTemporality();
    AppendMember(text, "temporality");
    if (TemporalityReserved <= own && own <= TemporalityTemporary) {
        text += '"';
        text += ToText(own);
        text += '"';
    } else {
        AppendValue(text, std::int32_t{own});
    }
}

/// A node up to its value; of a composite the bracket that its children stand in is open afterwards.
void AppendNode(std::string& text, Node* node) {
    const Node* const parent = node->GetParent();
    text += '{';
    if (parent != nullptr && parent->GetType() == NodeTypeMap) {
        text += "\"index\": ";
        AppendValue(text, std::int32_t{node->GetIndex()});
        text += ", ";
    }
    text += "\"kind\": \"";
    text += ToText(node->GetType());
    text += '"';
    const Map* const map = node_cast<Map>(node);
    if (map != nullptr && map->GetSemanticTagNV() != SemanticTagDefault) {
        AppendMember(text, "tag");
        AppendValue(text, std::int32_t{map->GetSemanticTagNV()});
    }
    if (node->GetTemporality() != UsualTemporality(node)) {
        AppendTemporality(text, node);
    }
    AppendMember(text, "value");
    if (IsCompositeType(node->GetType())) {
        text += '[';
    } else {
        AppendLeaf(text, node);
        text += '}';
    }
}

/// Closes composites until so many are open.
void Close(std::string& text, std::size_t& open, std::size_t until) {
    for (; open > until; --open) {
        text += "]}";
    }
}

}  // namespace

void WriteJson(const Tree* tree, Sink& sink, const Progress& progress) {
    BufferedSink buffered(sink);
    std::string& text = buffered.GetText();
    text += "{\"kivtree\": 1, \"root\":";
    text += tree->IsEmpty() ? " null" : "";
    std::size_t open = 0;
    bool afterBracket = true;
    NodeProgress done(tree->GetRoot(), progress);
    Walk walk(tree->GetRoot());
    while (Node* const node = walk.Next()) {
        // Composites that the walk has left end here; behind one that ends, as behind a leaf, a comma follows.
        const auto depth = static_cast<std::size_t>(walk.GetDepth());
        afterBracket = afterBracket && open == depth;
        Close(text, open, depth);
        text += afterBracket ? "\n" : ",\n";
        AppendNode(text, node);
        afterBracket = IsCompositeType(node->GetType());
        open += afterBracket ? 1 : 0;
        buffered.FlushWhenFull();
        done.Step();
    }
    Close(text, open, 0);
    text += "}\n";
    buffered.Flush();
}

}  // namespace KivInspect
