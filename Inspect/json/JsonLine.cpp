#include <KivInspect/JsonLine.h>

#include <KivGenerics/Composite.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ToText.h>
#include <KivInspect/ValueText.h>

#include "json/JsonText.h"

namespace KivInspect {

void JsonLine::AddRaw(std::string_view member, std::string_view json) {
    text_ += text_.empty() ? "{" : ",";
    AppendJsonString(text_, member);
    text_ += ':';
    text_ += json;
}

void JsonLine::Add(std::string_view member, std::string_view text) {
    std::string json;
    AppendJsonString(json, text);
    AddRaw(member, json);
}

void JsonLine::Add(std::string_view member, std::int64_t number) {
    AddRaw(member, std::to_string(number));
}

std::string JsonLine::Take() {
    std::string line = text_.empty() ? "{}\n" : text_ + "}\n";
    text_.clear();
    return line;
}

void DescribeNode(JsonLine& line, KivGenerics::Node* node, const std::string& key, const Names* names) {
    using namespace KivGenerics;
    line.Add("key", key);
    line.Add("kind", ToText(node->GetType()));
    if (const Map* const map = node_cast<Map>(node)) {
        line.Add("tag", std::int64_t{map->GetSemanticTagNV()});
        if (const std::string* const name = names != nullptr ? names->FindTag(map->GetSemanticTagNV()) : nullptr) {
            line.Add("tagName", *name);
        }
    }
    line.Add("temporality", TemporalityText(node));
    if (Composite* const composite = node_cast<Composite>(node)) {
        line.Add("children", std::int64_t{composite->GetSize(TemporalityTemporary)});
    } else {
        std::string value;
        AppendValue(value, node);
        line.Add("value", value);
    }
}

}  // namespace KivInspect
