#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <KivGenerics/Node.h>
#include <KivInspect/Names.h>

namespace KivInspect {

/// One JSON object in one line, for the output of tools: members in the order in which they were added.
class JsonLine {
public:
    /// `text` must be UTF-8.
    void Add(std::string_view member, std::string_view text);
    void Add(std::string_view member, const char* text) { Add(member, std::string_view(text)); }
    void Add(std::string_view member, std::int64_t number);
    void Add(std::string_view member, bool value) { AddRaw(member, value ? "true" : "false"); }
    /// `json` stands as it is.
    void AddRaw(std::string_view member, std::string_view json);

    /// The object and the line's end; empty afterwards.
    std::string Take();

private:
    std::string text_;
};

/// Adds what tools say of a node: "key", "kind", of a map "tag" and the tag's name, "temporality", and its "value" as
/// AppendValue writes it, or the number of its "children".
void DescribeNode(JsonLine& line, KivGenerics::Node* node, const std::string& key, const Names* names = nullptr);

}  // namespace KivInspect
