#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/ResultCode.h>
#include <KivGenerics/Vector.h>

#include "core/NodeAccess.h"
#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::NewTree;

namespace {

// Claims to hold children, by its class, and not to, by its kind: no node of the library is like this.
class OddParent final : public Composite {
public:
    using Node::WriteToArchive;

    explicit OddParent(const Node& node) : Composite(NodeAccess::GetTree(node), NodeTypeInteger) {}

    void Clear() override {}
    bool MergeWith(Node*, bool) override { return true; }
    std::int32_t WriteToArchive(KivCOMShared::COrvWriteArchive*, bool) override { return ResultSuccess; }
    std::int32_t ReadFromArchive(ArchiveDecoder&, bool) override { return ResultSuccess; }
    std::int32_t SizeDefnArchive(KivCOMShared::COrvSizeArchive*, bool) override { return ResultSuccess; }
    VisitCode Visit(Visitor*, bool) override { return VisitContinue; }
    int GetSize(EnumOrvGenericsTemporality) override { return 0; }
    bool IsEmpty() const override { return true; }
    Node* Get(int) const override { return nullptr; }
    Node* GetNext(int) const override { return nullptr; }
    Node* GetNth(int) const override { return nullptr; }
    Node* NewNode(int, NodeType, bool, SemanticTag) override { return nullptr; }
    void Remove(int) override {}

private:
    VisitCode IterateInner(Visitor*, SemanticTag, int) override { return VisitContinue; }
    Node* hDetach(int) override { return nullptr; }
};

class ExceptionTest : public ::testing::Test {
protected:
    KivBase::ReturnPtrI<Tree> tree = NewTree();
    KivBase::ReturnPtrI<Tree> other = NewTree();
    KivBase::ReturnPtrI<Tree> readOnly = NewTree();
    Map* map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Integer* leaf = static_cast<Integer*>(map->NewNode(0, NodeTypeInteger));
    Vector* vector = static_cast<Vector*>(map->NewNode(1, NodeTypeVector));
    IntegerSet* set = static_cast<IntegerSet*>(map->NewNode(2, NodeTypeIntegerSet));
    Integer* element = static_cast<Integer*>(vector->Add(NodeTypeInteger));
    Node* foreign = other->NewRoot(NodeTypeString);

    void SetUp() override { readOnly->SetReadOnly(); }

    struct Row {
        const char16_t* text;
        std::function<void()> raise;
    };

    std::vector<Row> TreeRows() {
        return {
            {u"Invalid node type!", [this] { tree->NewRoot(NodeType(13)); }},
            {u"Unexpected error! Parent is not composite",
             [this] {
                 OddParent parent(*leaf);
                 Node* const node = map->NewNode(5, NodeTypeInteger);
                 NodeAccess::Place(*node, &parent, 5);
                 try {
                     tree->SetRoot(node);
                 } catch (...) {
                     NodeAccess::Place(*node, map, 5);
                     throw;
                 }
             }},
            {u"New root is either NULL or from a different tree!", [this] { tree->SetRoot(foreign); }},
            {u"NewRoot:Invalid node type for keeping old root", [this] { tree->NewRoot(NodeTypeString, true); }},
            {u"Original tree is either NULL or the same tree!", [this] { tree->CopyFromTree(tree.Get()); }},
            {u"Original node is either NULL or from the same tree!", [this] { tree->CopyFromNode(leaf); }},
            {u"Stream is NULL!", [this] { tree->SaveToStream(nullptr, true); }},
            {u"Stream is NULL!", [this] { other->LoadFromStream(nullptr); }},
            {u"Archive is NULL!", [this] { tree->SaveToArchive(nullptr, true, 255); }},
            {u"Archive is NULL!", [this] { other->LoadFromArchive(nullptr); }},
            {u"Archive is NULL!", [this] { tree->SizeArchive(nullptr, true); }},
        };
    }

    std::vector<Row> NodeRows() {
        return {
            {u"Move::Node can't be NULL!", [this] { map->Move(9, nullptr); }},
            {u"Can't perform this operation on an ancestor", [this] { vector->Move(0, map); }},
            {u"Move::Can't move a node from a different tree!", [this] { map->Move(9, foreign); }},
            {u"NewNode:Invalid node type for keeping old node", [this] { map->NewNode(0, NodeTypeInteger, true); }},
            {u"NewNode:Invalid node type for keeping old node", [this] { vector->NewNode(0, NodeTypeInteger, true); }},
            {u"Move::Index already in use!", [this] { map->Move(0, vector); }},
            {u"Remove::Index out of range", [this] { map->Remove(9); }},
            {u"Remove::Index out of range", [this] { map->Detach(9); }},
            {u"Index out of range", [this] { map->NewNode(-1, NodeTypeInteger); }},
            {u"Move::Index out of range!", [this] { vector->Move(1, element); }},
            {u"Vector::Add::Different children type", [this] { vector->Add(NodeTypeString); }},
            {u"Item::Index out of range",
             [this] {
                 std::int32_t value = 0;
                 set->Item(0, value);
             }},
            {u"Can't compare NULL node!", [this] { leaf->Compare(nullptr, TemporalityTemporary, true); }},
            {u"Can't copy NULL node!", [this] { leaf->Populate(static_cast<Node*>(nullptr)); }},
            {u"Can't copy nodes of different type!", [this] { leaf->Populate(foreign); }},
            {u"Cannot merge with NULL node!", [this] { leaf->MergeWith(nullptr, false); }},
            {u"Cannot merge with node of different type!", [this] { leaf->MergeWith(foreign, false); }},
        };
    }

    static void ExpectEach(const std::vector<Row>& rows) {
        for (const Row& row : rows) {
            SCOPED_TRACE(KivBase::ToUtf8(KivBase::WString(row.text)));
            try {
                row.raise();
                ADD_FAILURE() << "nothing thrown";
            } catch (const KivBase::ExceptionImpl<Exception>& exception) {
                EXPECT_EQ(exception.GetMessage(), row.text);
                EXPECT_EQ(exception.what(), KivBase::ToUtf8(KivBase::WString(row.text)));
                EXPECT_EQ(exception.GetExceptionKind(), 0);
                EXPECT_EQ(exception.GetDomain(), KivBase::MESSAGE_DOMAIN_UNKNOWN);
                EXPECT_EQ(exception.GetID(), -1);
                EXPECT_EQ(dynamic_cast<const ReadOnlyException*>(&exception), nullptr);
            }
        }
    }
};

/// Which of the classes catches what `call` throws, each tried alone.
template <class Class>
bool IsCaughtAs(const std::function<void()>& call) {
    try {
        call();
    } catch (const Class&) {
        return true;
    } catch (...) {
        return false;
    }
    return false;
}

}  // namespace

TEST_F(ExceptionTest, EveryTextOfTheTreeIsAsWrittenWithUnknownDomainAndIdMinusOne) {
    ExpectEach(TreeRows());
}

TEST_F(ExceptionTest, EveryTextOfTheNodesIsAsWrittenWithUnknownDomainAndIdMinusOne) {
    ExpectEach(NodeRows());
}

TEST_F(ExceptionTest, AReadOnlyTreeThrowsItsOwnClass) {
    try {
        readOnly->NewRoot(NodeTypeInteger);
        ADD_FAILURE() << "nothing thrown";
    } catch (const KivBase::ExceptionImpl<ReadOnlyException>& exception) {
        EXPECT_EQ(exception.GetMessage(), u"Operation not allowed on a read-only tree!");
        EXPECT_STREQ(exception.what(), "Operation not allowed on a read-only tree!");
        EXPECT_EQ(exception.GetExceptionKind(), 1);
        EXPECT_EQ(exception.GetDomain(), KivBase::MESSAGE_DOMAIN_UNKNOWN);
        EXPECT_EQ(exception.GetID(), -1);
    }
}

TEST_F(ExceptionTest, AReadOnlyExceptionIsCaughtAsAnyOfItsBases) {
    const auto call = [this] { readOnly->RemoveRoot(); };
    EXPECT_TRUE(IsCaughtAs<KivBase::ExceptionImpl<ReadOnlyException>>(call));
    EXPECT_TRUE(IsCaughtAs<ReadOnlyException>(call));
    EXPECT_TRUE(IsCaughtAs<Exception>(call));
    EXPECT_TRUE(IsCaughtAs<KivBase::Message>(call));
    EXPECT_TRUE(IsCaughtAs<std::exception>(call));
    EXPECT_FALSE(IsCaughtAs<KivBase::ExceptionImpl<Exception>>(call));
}

TEST_F(ExceptionTest, AnExceptionIsCaughtAsAnyOfItsBasesButNotAsReadOnly) {
    const auto call = [this] { tree->SetRoot(nullptr); };
    EXPECT_TRUE(IsCaughtAs<KivBase::ExceptionImpl<Exception>>(call));
    EXPECT_TRUE(IsCaughtAs<Exception>(call));
    EXPECT_TRUE(IsCaughtAs<KivBase::Message>(call));
    EXPECT_TRUE(IsCaughtAs<std::exception>(call));
    EXPECT_FALSE(IsCaughtAs<ReadOnlyException>(call));
    EXPECT_FALSE(IsCaughtAs<KivBase::ExceptionImpl<ReadOnlyException>>(call));
}

TEST_F(ExceptionTest, TheKindIsAnsweredThroughTheBase) {
    try {
        readOnly->RemoveRoot();
        ADD_FAILURE() << "nothing thrown";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.GetExceptionKind(), 1);
    }
}

TEST_F(ExceptionTest, CopyingAnExceptionCopiesItsMessage) {
    EXPECT_TRUE((std::is_base_of_v<KivBase::Message, Exception>));
    EXPECT_TRUE((std::is_base_of_v<Exception, ReadOnlyException>));
    Exception original;
    original.SetDomainAndID(KivBase::MessageDomain(3), 17);
    original.SetMessage(u"text");
    const Exception copy(original);
    EXPECT_EQ(copy.GetMessage(), u"text");
    EXPECT_EQ(copy.GetDomain(), 3);
    EXPECT_EQ(copy.GetID(), 17);
    EXPECT_EQ(copy.GetExceptionKind(), 0);
    EXPECT_EQ(ReadOnlyException().GetExceptionKind(), 1);
}
