// Uses the library on the host's platform and prints one line for each thing that is not as expected. Ends with 0 when
// there was none.

#include <cstdio>
#include <string>
#include <vector>

#include <KivBase/Message.h>
#include <KivBase/Utf.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>

#include "Host.h"

using namespace KivGenerics;

namespace {

int checks = 0;
int failures = 0;

void Check(bool good, const char* what) {
    ++checks;
    if (!good) {
        ++failures;
        std::printf("not as expected: %s\n", what);
    }
}

void CheckStart() {
    const std::vector<std::string> expected = {"log up", "log router up", "router Orv Generics Error -3",
                                               "router Orv Generics TreeTrace -3"};
    Check(Host::GetCalls() == expected, "loading the library starts the host's logging");
}

KivBase::ReturnPtrI<Tree> MakeTree() {
    Host::GetCalls().clear();
    KivBase::ReturnPtrI<Tree> tree = CreateGenericTree(static_cast<EnumOrvObjectType>(55));
    Check(Host::GetCalls() == std::vector<std::string>{"buffer 1 1 16384 false"}, "the tree asks for a buffer");
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap, false, SemanticTag(255)));
    auto* const fields = static_cast<Map*>(root->NewNode(0, NodeTypeMap, false, SemanticTag(4096)));
    static_cast<String*>(fields->NewNode(0, NodeTypeString))->Set(u"a text that does not fit into the node itself");
    static_cast<Integer*>(fields->NewNode(100, NodeTypeInteger))->Set(7);
    auto* const ids = static_cast<IdSet*>(fields->NewNode(1, NodeTypeIdSet));
    ids->Add(GUID{2, 0, 0, {}});
    ids->Add(GUID{1, 0, 0, {}});
    auto* const numbers = static_cast<Vector*>(root->NewNode(1, NodeTypeVector));
    for (int i = 0; i < 100; ++i) {
        static_cast<Integer*>(numbers->Add(NodeTypeInteger))->Set(i);
    }
    return tree;
}

void CheckContent(Tree* tree) {
    KivBase::WString key = u"0:0:";
    const auto* const text = node_cast<String>(tree->FindNodeByKey(key.c_str()));
    Check(text != nullptr && KivBase::WString(text->Get()) == u"a text that does not fit into the node itself", "text");
    key = u"1:99:";
    const auto* const number = node_cast<Integer>(tree->FindNodeByKey(key.c_str()));
    Check(number != nullptr && number->Get() == 99, "last element");
    if (text != nullptr) {
        text->GetHumanReadableKey(9, key);
        // The map is tagged 4096, and every leaf has the tag 1.
        Check(key == u"24624/9:24577/9:", "the readable key comes from the host's texts");
    }
    const auto* const ids = node_cast<IdSet>(tree->FindNodeByKey(u"0:1:"));
    GUID first{};
    if (ids != nullptr && ids->Count() == 2) {
        ids->Item(0, first);
    }
    Check(first.Data1 == 1, "ids are in their order");
}

void CheckErrors(Tree* tree) {
    std::string text;
    try {
        tree->NewRoot(NodeTypeInteger, true);
    } catch (const KivBase::Message& message) {
        text = KivBase::ToUtf8(message.GetMessage());
    }
    Check(text == "NewRoot:Invalid node type for keeping old root", "misuse is caught as the host's message");
    text.clear();
    try {
        tree->NewRoot(static_cast<NodeType>(13));
    } catch (const std::exception& exception) {
        text = exception.what();
    }
    Check(text == "Invalid node type!", "misuse is caught as a standard exception");
}

void CheckSaving(Tree* tree) {
    const auto written = KivStorage::MemoryWriteStream::Create();
    Check(tree->SaveToStream(written.Get(), false) == 0, "saving");
    written->Finish();
    const KivStorage::SavedBytes bytes = written->TakeBytes();
    const auto read = KivStorage::MemoryReadStream::Create(bytes.data(), bytes.size());
    const KivBase::ReturnPtrI<Tree> loaded = CreateGenericTree(static_cast<EnumOrvObjectType>(0));
    Check(loaded->LoadFromStream(read.Get()) == 0, "loading");
    CheckContent(loaded.Get());
    Check(Host::GetBuffers() == 2, "each tree has a buffer");
}

void CheckNoMemory(Tree* tree) {
    auto* const root = static_cast<Map*>(tree->GetRoot());
    const std::size_t pieces = Host::GetPieces();
    Host::RefuseMemory(true);
    Check(root->NewNode(5, NodeTypeInteger) == nullptr, "without memory there is no new node");
    Check(root->Get(5) == nullptr && Host::GetPieces() == pieces, "and nothing has changed");
    Host::RefuseMemory(false);
    Check(root->NewNode(5, NodeTypeInteger) != nullptr, "with memory there is one");
}

}  // namespace

int main() {
    CheckStart();
    {
        const KivBase::ReturnPtrI<Tree> tree = MakeTree();
        Check(Host::GetBuffers() == 1 && Host::GetPieces() > 100, "nodes live in the host's buffer");
        CheckContent(tree.Get());
        CheckErrors(tree.Get());
        CheckSaving(tree.Get());
        CheckNoMemory(tree.Get());
    }
    Check(Host::GetBuffers() == 0 && Host::GetPieces() == 0, "all memory goes with the trees");
    std::printf("%d checks, %d not as expected\n", checks, failures);
    return failures == 0 ? 0 : 1;
}
