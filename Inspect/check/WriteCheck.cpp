#include <algorithm>

#include <KivInspect/Check.h>

#include "json/JsonText.h"

namespace KivInspect {
namespace {

/// How a key is shown: the root's is empty.
std::string Shown(const std::string& key) {
    return key.empty() ? "the root" : key;
}

std::string Percent(const LimitUse& use) {
    const std::uint64_t tenths = use.limit == 0 ? 0 : use.used * 1000 / use.limit;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " %";
}

void WriteFileCheck(const FileCheck& file, std::string& text) {
    for (const Damage& damage : file.damage) {
        text += "bytes " + std::to_string(damage.offset) + " to " + std::to_string(damage.offset + damage.size) + ": " +
                damage.sentence + "\n";
    }
    if (file.result.Ok()) {
        text += "The file is whole: " + std::to_string(file.blocks) +
                (file.blocks == 1 ? " block, every checksum matches.\n" : " blocks, every checksum matches.\n");
    }
}

void WriteTreeCheck(const TreeCheck& tree, std::string& text) {
    for (const Finding& finding : tree.findings) {
        text += Shown(finding.key) + " " + finding.why + " " + finding.advice + "\n";
    }
    if (tree.findings.empty()) {
        text += "The tree would survive a save as it is.\n";
    }
    text += "Limits:\n";
    for (const LimitUse& use : tree.limits) {
        text += "  " + use.name + ": " + std::to_string(use.used) + " of " + std::to_string(use.limit) + " (" +
                Percent(use) + ")" + (use.used > 0 ? " at " + Shown(use.key) : "") + "\n";
    }
}

void AppendMember(std::string& text, const char* name, const std::string& value) {
    text += text.back() == '{' ? "" : ", ";
    text += "\"" + std::string(name) + "\": ";
    AppendJsonString(text, value);
}

void AppendMember(std::string& text, const char* name, std::uint64_t value) {
    text += text.back() == '{' ? "" : ", ";
    text += "\"" + std::string(name) + "\": " + std::to_string(value);
}

template <class Item, class Append>
void AppendList(std::string& text, const char* name, const std::vector<Item>& items, Append append) {
    text += "\"" + std::string(name) + "\": [";
    const char* separator = "";
    for (const Item& item : items) {
        text += std::string(separator) + "{";
        append(item);
        text += "}";
        separator = ", ";
    }
    text += "]";
}

}  // namespace

void WriteCheck(const FileCheck* file, const TreeCheck* tree, Sink& sink) {
    std::string text;
    if (file != nullptr) {
        WriteFileCheck(*file, text);
    }
    if (tree != nullptr) {
        WriteTreeCheck(*tree, text);
    }
    sink.Write(text);
}

void WriteCheckJson(const FileCheck* file, const TreeCheck* tree, Sink& sink) {
    std::string text = "{";
    if (file != nullptr) {
        text += std::string("\"whole\": ") + (file->result.Ok() ? "true, " : "false, ");
        AppendList(text, "damage", file->damage, [&text](const Damage& damage) {
            AppendMember(text, "offset", damage.offset);
            AppendMember(text, "size", damage.size);
            AppendMember(text, "sentence", damage.sentence);
        });
    }
    if (tree != nullptr) {
        text += file != nullptr ? ", " : "";
        AppendList(text, "findings", tree->findings, [&text](const Finding& finding) {
            AppendMember(text, "key", finding.key);
            AppendMember(text, "reason", finding.reason);
            AppendMember(text, "why", finding.why);
            AppendMember(text, "advice", finding.advice);
        });
        text += ", ";
        AppendList(text, "limits", tree->limits, [&text](const LimitUse& use) {
            AppendMember(text, "name", use.name);
            AppendMember(text, "used", use.used);
            AppendMember(text, "limit", use.limit);
            AppendMember(text, "key", use.key);
        });
    }
    sink.Write(text + "}\n");
}

}  // namespace KivInspect
