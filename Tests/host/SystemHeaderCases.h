#pragma once

// What must hold whether the system's header came before the public ones or after them. Included last, so that the names here
// mean what the includer's order of headers has made of them; without a header of its own for the same reason.

namespace {

using namespace KivGenerics;

inline void CheckMessagesGiveTheirTextUnderTheSystemsNamesToo() {
    KivBase::Message message;
    message.SetMessage(u"text");
    EXPECT_TRUE(message.GetMessage() == u"text");
    EXPECT_TRUE(message.GetMessageA() == u"text");
    EXPECT_TRUE(message.GetMessageW() == u"text");
}

inline void CheckExceptionsGiveTheirText() {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    try {
        root->Move(0, nullptr);
        ADD_FAILURE() << "nothing thrown";
    } catch (const Exception& caught) {
        EXPECT_TRUE(caught.GetMessage() == u"Move::Node can't be NULL!");
    }
}

inline void CheckTreesAreBuiltSavedAndLoaded() {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    auto* const record = static_cast<Map*>(root->NewNode(0, NodeTypeMap));
    static_cast<Integer*>(record->NewNode(0, NodeTypeInteger))->Set(42);
    static_cast<GlobalID*>(record->NewNode(1, NodeTypeGlobalID))->Set(IID_IUnknown);
    std::vector<std::uint8_t> bytes;
    ASSERT_EQ("", KivStorage::SaveTreeToMemory(tree.Get(), bytes).sentence);
    const auto loaded = KivStorage::LoadTreeFromMemory(bytes.data(), bytes.size());
    ASSERT_TRUE(loaded.result.Ok());
    EXPECT_EQ(42, node_cast<Integer>(loaded.tree->FindNodeByKey(u"0:0:"))->Get());
    EXPECT_TRUE(IsEqualGUID(IID_IUnknown, node_cast<GlobalID>(loaded.tree->FindNodeByKey(u"0:1:"))->Get()));
}

}  // namespace
