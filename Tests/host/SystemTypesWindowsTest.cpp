// GUID, VARIANT and VariantInit are the system's own.

#include <cstring>
#include <type_traits>

#include <gtest/gtest.h>

#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Tree.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>

#include "support/WholeVariant.h"

namespace {

TEST(SystemTypesTest, AGuidIsTheSystemsRecord) {
    static_assert(std::is_same_v<GUID, ::_GUID>);
    GUID made = {};
    ASSERT_EQ(S_OK, IIDFromString(L"{12345678-9ABC-DEF0-0102-030405060708}", &made));
    const auto tree = KivGenerics::CreateGenericTree(KivGenerics::EnumOrvObjectType(0));
    auto* const node = static_cast<KivGenerics::GlobalID*>(tree->NewRoot(KivGenerics::NodeTypeGlobalID));
    node->Set(made);
    EXPECT_EQ(0x12345678u, node->Get().Data1);
    EXPECT_EQ(0x9ABC, node->Get().Data2);
    EXPECT_EQ(0xDEF0, node->Get().Data3);
    EXPECT_EQ(8, node->Get().Data4[7]);
}

TEST(SystemTypesTest, AVariantIsTheSystemsRecord) {
    static_assert(std::is_same_v<VARIANT, ::tagVARIANT>);
    static_assert(sizeof(VARIANT) == 24);
    VARIANT made;
    std::memset(&made, 0xEE, sizeof made);
    VariantInit(&made);
    EXPECT_EQ(VT_EMPTY, V_VT(&made));
}

TEST(SystemTypesTest, VariantsThatTheSystemMadeAreSavedAndLoaded) {
    VARIANT text;
    VariantInit(&text);
    V_VT(&text) = VT_BSTR;
    V_BSTR(&text) = SysAllocString(L"-12.5");
    VARIANT number;
    VariantInit(&number);
    ASSERT_EQ(S_OK, VariantChangeTypeEx(&number, &text, LOCALE_INVARIANT, 0, VT_R8));
    const auto out = KivStorage::MemoryWriteStream::Create();
    EXPECT_EQ(KivStorage::StorageUnsupportedVariant, out->PutVariant(&text));
    VariantClear(&text);
    const auto second = KivStorage::MemoryWriteStream::Create();
    ASSERT_EQ(0, second->PutVariant(&number));
    ASSERT_TRUE(second->Finish().Ok());
    const auto in = KivStorage::MemoryReadStream::Create(second->GetBytes().data(), second->GetBytes().size());
    VARIANT read;
    VariantInit(&read);
    ASSERT_EQ(0, in->GetVariant(&read));
    EXPECT_EQ(VT_R8, V_VT(&read));
    EXPECT_EQ(-12.5, V_R8(&read));
}

}  // namespace
