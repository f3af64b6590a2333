#include <KivInspect/Info.h>

#include <KivGenerics/NodeType.h>
#include <KivGenerics/ToText.h>
#include <algorithm>
#include <string>

#include "scan/ItemWalk.h"
#include "scan/MemoryModel.h"

namespace KivInspect {
namespace {

using namespace KivGenerics;
using KivStorage::ScannedItem;

/// Adds up what the items of a tree tell.
class Collector {
public:
    explicit Collector(TreeInfo& info) : info_(info) {}

    void Take(const ItemWalk& walk) {
        const Meaning& meaning = walk.GetMeaning();
        const ScannedItem& item = walk.GetItem();
        info_.items += 1;
        info_.itemBytes += item.size;
        switch (meaning.role) {
            case Role::NodeOpens: TakeNode(meaning.node, walk.GetStructure()); break;
            case Role::Value:
                TakeNode(meaning.node, walk.GetStructure());
                TakeText(meaning.node.kind, item);
                break;
            case Role::SetElement:
                memory_ += model_.OfElement(meaning.node.kind);
                TakeText(meaning.node.kind, item);
                break;
            case Role::HeaderWord: TakeHeader(meaning); break;
            default: break;
        }
    }

    void Finish() { info_.memoryBytes = static_cast<std::uint64_t>(memory_); }

private:
    /// A node's place with its parent counts here; that of a map and its children is known with its header.
    void TakeNode(const NodeFacts& node, const StructureReader& structure) {
        info_.nodes += 1;
        info_.nodesByKind[static_cast<std::size_t>(node.kind)] += 1;
        info_.nodesByTemporality[static_cast<std::size_t>(node.temporality)] += 1;
        info_.levels = std::max(info_.levels, node.level);
        memory_ += node.kind == NodeTypeMap ? 0.0 : model_.OfNode(node.kind);
        const NodeFacts& above = structure.GetLevel(node.level - 1).node;
        if (above.kind == NodeTypeMap) {
            memory_ += model_.OfMapChild(above.tag, node.index);
        } else if (above.kind == NodeTypeVector) {
            memory_ += model_.OfVectorChild();
        }
    }

    void TakeHeader(const Meaning& meaning) {
        if (meaning.headerEnds && meaning.node.kind == NodeTypeMap) {
            memory_ += model_.OfMap(meaning.node.tag);
        }
    }

    void TakeText(int kind, const ScannedItem& item) {
        if (kind == NodeTypeString || kind == NodeTypeStringSet) {
            info_.textUnits += item.GetUnits();
            memory_ += model_.OfText(item.GetUnits());
        }
    }

    TreeInfo& info_;
    MemoryModel model_ = MemoryModel::Measured();
    double memory_ = 0.0;
};

void Line(std::string& text, std::string name, const std::string& value) {
    name.resize(std::max<std::size_t>(name.size() + 1, 13), ' ');
    text += name + value + "\n";
}

std::string Number(std::uint64_t value) {
    return std::to_string(value);
}

const char* TemporalityName(std::size_t t) {
    return ToText(static_cast<EnumOrvGenericsTemporality>(t));
}

void AppendMember(std::string& text, const std::string& name, std::uint64_t value) {
    text += text.back() == '{' ? "" : ", ";
    text += "\"" + name + "\": " + std::to_string(value);
}

}  // namespace

InfoResult ReadInfo(KivStorage::FileScanner& scanner, const Progress& progress) {
    InfoResult read;
    Collector collector(read.info);
    ItemWalk walk(scanner, progress);
    while (walk.Next()) {
        collector.Take(walk);
    }
    collector.Finish();
    read.info.fileBytes = scanner.GetSize();
    read.info.blocks = walk.GetBlocks();
    read.result = walk.GetResult();
    return read;
}

void WriteInfo(const TreeInfo& info, Sink& sink) {
    std::string text;
    Line(text, "form", "binary, version 1");
    Line(text, "size",
         Number(info.fileBytes) + " bytes: " + Number(info.blocks) + (info.blocks == 1 ? " block, " : " blocks, ") +
             Number(info.items) + " items");
    Line(text, "checksums", "all match");
    Line(text, "memory", "about " + Number(info.memoryBytes) + " bytes when loaded");
    Line(text, "levels", Number(info.levels));
    Line(text, "text", Number(info.textUnits) + " units of 16 bits");
    Line(text, "nodes", Number(info.nodes));
    for (std::size_t kind = 1; kind < info.nodesByKind.size(); ++kind) {
        if (info.nodesByKind[kind] > 0) {
            Line(text, std::string("  ") + ToText(static_cast<NodeType>(kind)), Number(info.nodesByKind[kind]));
        }
    }
    Line(text, "temporality", "own, of these nodes");
    for (std::size_t t = 0; t < info.nodesByTemporality.size(); ++t) {
        if (info.nodesByTemporality[t] > 0) {
            Line(text, std::string("  ") + (t <= TemporalityTemporary ? TemporalityName(t) : Number(t)),
                 Number(info.nodesByTemporality[t]));
        }
    }
    sink.Write(text);
}

void WriteInfoJson(const TreeInfo& info, Sink& sink) {
    std::string text = "{";
    AppendMember(text, "version", 1);
    AppendMember(text, "bytes", info.fileBytes);
    AppendMember(text, "blocks", info.blocks);
    AppendMember(text, "items", info.items);
    AppendMember(text, "itemBytes", info.itemBytes);
    AppendMember(text, "memoryBytes", info.memoryBytes);
    AppendMember(text, "levels", info.levels);
    AppendMember(text, "textUnits", info.textUnits);
    AppendMember(text, "nodes", info.nodes);
    text += ", \"byKind\": {";
    for (std::size_t kind = 1; kind < info.nodesByKind.size(); ++kind) {
        AppendMember(text, ToText(static_cast<NodeType>(kind)), info.nodesByKind[kind]);
    }
    text += "}, \"byTemporality\": {";
    for (std::size_t t = 0; t <= TemporalityTemporary; ++t) {
        AppendMember(text, TemporalityName(t), info.nodesByTemporality[t]);
    }
    sink.Write(text + "}}\n");
}

}  // namespace KivInspect
