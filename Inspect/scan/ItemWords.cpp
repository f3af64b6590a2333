#include "scan/ItemWords.h"

#include <KivGenerics/ToText.h>
#include <KivInspect/ValueText.h>

#include "scan/ItemValue.h"

namespace KivInspect {
namespace {

using namespace KivGenerics;
using KivStorage::ScannedItem;
using KivStorage::ScannedItemType;

std::string TemporalityWords(int t) {
    std::string text = "temporality " + std::to_string(t);
    if (t <= TemporalityTemporary) {
        text += std::string(" (") + ToText(static_cast<EnumOrvGenericsTemporality>(t)) + ")";
    }
    return text;
}

std::string KindWords(int kind) {
    return "kind " + std::to_string(kind) + " (" + ToText(static_cast<NodeType>(kind)) + ")";
}

std::string CodeWords(std::uint32_t value, bool hasExtraByte) {
    const TypeCode type{static_cast<std::uint16_t>(hasExtraByte ? value : value << 8)};
    return KindWords(type.GetKind()) + ", " + TemporalityWords(type.GetTemporality());
}

std::string FieldWords(const HeaderField& field, int kind) {
    const std::string number = std::to_string(field.value);
    switch (field.kind) {
        case HeaderFieldKind::Tag: return "tag " + number;
        case HeaderFieldKind::Count:
            if (kind == NodeTypeVector) {
                return number + (field.value == 1 ? " element" : " elements");
            }
            return number + (field.value == 1 ? " child" : " children");
        case HeaderFieldKind::Index: return "index " + number + ", a composite";
        case HeaderFieldKind::TypedIndex: return "index " + number + ", a value";
        case HeaderFieldKind::Kind: return CodeWords(field.value, field.value > 0xFF);
        case HeaderFieldKind::ElementsKind: return field.value == 0 ? "composites" : CodeWords(field.value, true);
        case HeaderFieldKind::Padding: return "padding";
    }
    return {};
}

std::string HeaderWords(const ScannedItem& item, const Meaning& meaning) {
    std::string text = "packed";
    for (int i = 4; i >= 1; --i) {
        constexpr char digits[] = "0123456789ABCDEF";
        text += {' ', digits[item.bytes[i] >> 4], digits[item.bytes[i] & 15]};
    }
    const char* separator = ": ";
    for (const HeaderField& field : meaning.fields) {
        text += separator + FieldWords(field, meaning.node.kind);
        separator = "; ";
    }
    return text;
}

/// The key of a node that the item belongs to, with what stands before it.
std::string Key(const NodeFacts& node, const StructureReader& structure) {
    return node.index < 0 ? "the root" : structure.GetKeyOfLevel(node.level) + std::to_string(node.index) + ":";
}

std::string ValueWords(const ScannedItem& item, const Meaning& meaning, std::int32_t firstHalf) {
    std::string text = ToText(static_cast<NodeType>(meaning.node.kind));
    text += ' ';
    if (meaning.node.kind == NodeTypeInteger64) {
        AppendValue(text, JoinHalves(firstHalf, item.GetLong()));
        text += ", upper half";
    } else if (meaning.node.kind == NodeTypeBoolean) {
        AppendValue(text, item.GetLong() != 0);
    } else {
        AppendItem(text, item);
    }
    return text;
}

}  // namespace

std::string DescribeAlone(const ScannedItem& item) {
    std::string value;
    AppendItem(value, item);
    switch (item.type) {
        case ScannedItemType::Long: return "a long, " + value;
        case ScannedItemType::Double: return "a double, " + value;
        case ScannedItemType::Short: return "a short, " + value;
        case ScannedItemType::Text:
            return "a text of " + std::to_string(item.GetUnits()) + (item.GetUnits() == 1 ? " unit, " : " units, ") +
                   value;
        case ScannedItemType::Guid: return "a GUID, " + value;
        case ScannedItemType::Variant: return "a variant " + value;
        case ScannedItemType::ObjectOpens: return "an object opens, " + value;
        case ScannedItemType::ObjectEnds: return "an object ends";
    }
    return {};
}

std::string Describe(const ScannedItem& item, const Meaning& meaning, const StructureReader& structure,
                     std::int32_t firstHalf) {
    const NodeFacts& node = meaning.node;
    switch (meaning.role) {
        case Role::TreeOpens: return DescribeAlone(item) + ": the tree";
        case Role::TreeWord: return DescribeAlone(item);
        case Role::NodeOpens:
            return Key(node, structure) + " " + ToText(static_cast<NodeType>(node.kind)) + " opens, " +
                   TemporalityWords(node.temporality);
        case Role::HeaderWord: return HeaderWords(item, meaning);
        case Role::Value: return Key(node, structure) + " " + ValueWords(item, meaning, firstHalf);
        case Role::FirstHalf: return Key(node, structure) + " Integer64, lower half";
        case Role::SetCount: return std::to_string(node.count) + (node.count == 1 ? " element" : " elements");
        case Role::SetElement: return "element: " + DescribeAlone(item);
        case Role::NodeEnds: return Key(node, structure) + " ends";
        case Role::TreeEnds: return "the tree ends";
        case Role::Unused: return "passed over: " + DescribeAlone(item);
        case Role::Unplaced: return DescribeAlone(item);
        case Role::Wrong: return DescribeAlone(item) + ": WRONG, " + meaning.problem;
    }
    return {};
}

}  // namespace KivInspect
