#include "persistence/Trees.h"

#include <KivBase/Utf.h>
#include <KivGenerics/Children.h>
#include <KivGenerics/ToText.h>
#include <gtest/gtest.h>

#include "persistence/Archives.h"

namespace KivGenerics::Testing {
namespace {

void DescribeInto(Node& node, std::vector<std::string>& lines) {
    KivBase::WString key;
    node.GetKey(key);
    const bool isComposite = IsCompositeType(node.GetType());
    std::string line = key.empty() ? ": " : KivBase::ToUtf8(key) + " ";
    line += isComposite ? "" : std::string(ToText(node.GetType())) + " ";
    line += ToText(&node) + " t" + std::to_string(node.GetTemporality());
    lines.push_back(line);
    for (Node* const child : Children(&node)) {
        DescribeInto(*child, lines);
    }
}

}  // namespace

GUID Id(std::uint32_t number) {
    GUID id{};
    id.Data1 = number;
    return id;
}

Calls WriteOf(Node& node, bool withTransient) {
    RecordingArchive archive;
    EXPECT_EQ(0, node.WriteToArchive(&archive, withTransient));
    return archive.calls;
}

Calls SaveOf(Tree& tree, bool withTransient, int slotFlags) {
    RecordingArchive archive;
    EXPECT_EQ(0, tree.SaveToArchive(&archive, withTransient, slotFlags));
    return archive.calls;
}

Calls SizeOf(Node& node, bool withTransient) {
    RecordingSizer sizer;
    EXPECT_EQ(0, node.SizeDefnArchive(&sizer, withTransient));
    return sizer.calls;
}

std::int32_t Load(Tree& tree, const Calls& calls) {
    ScriptedArchive archive(calls);
    return tree.LoadFromArchive(&archive);
}

Calls InEnvelope(const Calls& root) {
    return Calls{"Begin 0000", "Long 00000000"} + root + Calls{"End"};
}

std::vector<std::string> Describe(Tree& tree) {
    return tree.IsEmpty() ? std::vector<std::string>() : Describe(*tree.GetRoot());
}

std::vector<std::string> Describe(Node& node) {
    std::vector<std::string> lines;
    DescribeInto(node, lines);
    return lines;
}

}  // namespace KivGenerics::Testing
