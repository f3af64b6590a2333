#include <KivStorage/LoadTree.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>
#include <KivStorage/SaveTree.h>
#include <gtest/gtest.h>

#include "storage/Support.h"

using namespace KivGenerics;
using namespace KivStorage;
using namespace StorageTest;

namespace {

constexpr std::int32_t kFault = static_cast<std::int32_t>(0x80071234);

/// Fails the k-th call, counted from 1, and once it has failed, or only then, the ones after it.
class Fault {
public:
    Fault(int at, bool forGood) : at_(at), forGood_(forGood) {}
    bool Strikes() {
        ++calls_;
        return forGood_ ? calls_ >= at_ : calls_ == at_;
    }
    int GetCalls() const { return calls_; }

private:
    int at_;
    bool forGood_;
    int calls_ = 0;
};

class FaultyWriteStream final : public KivCOMShared::BlockWriteStream {
public:
    explicit FaultyWriteStream(Fault when) : fault(when), inner(MemoryWriteStream::Create()) {}

    std::int32_t QueryInterface(const GUID& id, void** object) override { return inner->QueryInterface(id, object); }
    std::uint32_t AddRef() override { return ++references; }
    std::uint32_t Release() override { return --references; }
    std::int32_t PutLong(std::int32_t v) override { return fault.Strikes() ? kFault : inner->PutLong(v); }
    std::int32_t PutDouble(double v) override { return fault.Strikes() ? kFault : inner->PutDouble(v); }
    std::int32_t PutShort(std::uint16_t v) override { return fault.Strikes() ? kFault : inner->PutShort(v); }
    std::int32_t PutWideString(const char16_t* v, std::uint32_t n) override {
        return fault.Strikes() ? kFault : inner->PutWideString(v, n);
    }
    std::int32_t PutGUID(const GUID& v) override { return fault.Strikes() ? kFault : inner->PutGUID(v); }
    std::int32_t PutVariant(const VARIANT* v) override { return fault.Strikes() ? kFault : inner->PutVariant(v); }
    std::int32_t PutBeginObject(std::uint16_t v) override {
        return fault.Strikes() ? kFault : inner->PutBeginObject(v);
    }
    std::int32_t PutEndObject() override { return fault.Strikes() ? kFault : inner->PutEndObject(); }

    Fault fault;
    KivBase::ReturnPtrI<MemoryWriteStream> inner;
    std::uint32_t references = 1;
};

class FaultyReadStream final : public KivCOMShared::BlockReadStream {
public:
    FaultyReadStream(const Bytes& bytes, Fault when)
        : fault(when), inner(MemoryReadStream::Create(bytes.data(), bytes.size())) {}

    std::int32_t QueryInterface(const GUID& id, void** object) override { return inner->QueryInterface(id, object); }
    std::uint32_t AddRef() override { return ++references; }
    std::uint32_t Release() override { return --references; }
    std::int32_t GetLong(std::int32_t* v) override { return fault.Strikes() ? kFault : inner->GetLong(v); }
    std::int32_t GetDouble(double* v) override { return fault.Strikes() ? kFault : inner->GetDouble(v); }
    std::int32_t GetShort(std::uint16_t* v) override { return fault.Strikes() ? kFault : inner->GetShort(v); }
    std::int32_t GetStringLength(std::uint32_t* v) override {
        return fault.Strikes() ? kFault : inner->GetStringLength(v);
    }
    std::int32_t GetStringChars(std::uint32_t n, char16_t* v) override {
        return fault.Strikes() ? kFault : inner->GetStringChars(n, v);
    }
    std::int32_t GetGUID(GUID* v) override { return fault.Strikes() ? kFault : inner->GetGUID(v); }
    std::int32_t GetVariant(VARIANT* v) override { return fault.Strikes() ? kFault : inner->GetVariant(v); }
    std::int32_t GetObjectTag(std::uint16_t* v) override { return fault.Strikes() ? kFault : inner->GetObjectTag(v); }
    std::int32_t GetEndObject() override { return fault.Strikes() ? kFault : inner->GetEndObject(); }

    Fault fault;
    KivBase::ReturnPtrI<MemoryReadStream> inner;
    std::uint32_t references = 1;
};

TEST(StreamFaultsTest, EveryFailingWriteIsPassedOnWhenItFailsForGood) {
    FaultyWriteStream counting(Fault(1000000, true));
    ASSERT_EQ(0, TreeOfEveryKind()->SaveToStream(&counting, false));
    const int calls = counting.fault.GetCalls();
    EXPECT_EQ(47, calls);
    for (int k = 1; k <= calls; ++k) {
        const auto tree = TreeOfEveryKind();
        FaultyWriteStream stream(Fault(k, true));
        EXPECT_EQ(kFault, tree->SaveToStream(&stream, false)) << k;
        EXPECT_EQ(1u, stream.references) << k;
        // The next save, to a good stream, is whole.
        Bytes bytes;
        EXPECT_EQ("", SaveTreeToMemory(tree.Get(), bytes).sentence) << k;
        EXPECT_EQ(303u, bytes.size()) << k;
    }
}

TEST(StreamFaultsTest, AWriteThatFailsOnceIsPassedOnButForWordsOfAPackedHeaderThatOthersFollow) {
    std::vector<int> overlooked;
    for (int k = 1; k <= 47; ++k) {
        FaultyWriteStream stream(Fault(k, false));
        const std::int32_t code = TreeOfEveryKind()->SaveToStream(&stream, false);
        EXPECT_TRUE(code == kFault || code == 0) << k;
        if (code == 0) {
            overlooked.push_back(k);
        }
    }
    // The first six of the seven words of the map's header, and the first of two words of that of the map of tag 70000.
    EXPECT_EQ((std::vector<int>{6, 7, 8, 9, 10, 11, 42}), overlooked);
}

TEST(StreamFaultsTest, AnUnderlyingFailureOfOurOwnStreamsIsNeverLostSinceTheyKeepIt) {
    // Our streams answer their first error to everything: also where the packer would overlook a single one.
    const auto stream = MemoryWriteStream::Create();
    EXPECT_EQ(StorageNoOpenObject, stream->PutEndObject());
    EXPECT_EQ(StorageNoOpenObject, TreeOfEveryKind()->SaveToStream(stream.Get(), false));
    EXPECT_EQ(StorageNoOpenObject, stream->Finish().code);
}

TEST(StreamFaultsTest, EveryFailingReadIsPassedOn) {
    Bytes bytes;
    ASSERT_EQ("", SaveTreeToMemory(TreeOfEveryKind().Get(), bytes).sentence);
    FaultyReadStream counting(bytes, Fault(1000000, true));
    ASSERT_EQ(0, NewTree()->LoadFromStream(&counting));
    const int calls = counting.fault.GetCalls();
    EXPECT_EQ(49, calls);
    for (const bool forGood : {true, false}) {
        for (int k = 1; k <= calls; ++k) {
            const auto tree = NewTree();
            FaultyReadStream stream(bytes, Fault(k, forGood));
            EXPECT_EQ(kFault, tree->LoadFromStream(&stream)) << k;
            EXPECT_EQ(k, stream.fault.GetCalls()) << "nothing is read after a failure";
            EXPECT_EQ(1u, stream.references) << k;
            // The tree is usable afterwards.
            const auto good = MemoryReadStream::Create(bytes.data(), bytes.size());
            EXPECT_EQ(0, tree->LoadFromStream(good.Get())) << k;
            EXPECT_EQ(Describe(TreeOfEveryKind().Get()), Describe(tree.Get())) << k;
        }
    }
}

TEST(StreamFaultsTest, EveryTruncationOfTheItemsIsRefusedWithItsCode) {
    // The framing is right, the items stop early.
    Bytes whole;
    ASSERT_EQ("", SaveTreeToMemory(TreeOfEveryKind().Get(), whole).sentence);
    const Bytes items(whole.begin() + 28, whole.end() - 52);
    for (std::size_t size = 0; size < items.size(); ++size) {
        const Bytes bytes = Frame(Bytes(items.begin(), items.begin() + static_cast<std::ptrdiff_t>(size)), 47);
        const auto loaded = LoadTreeFromMemory(bytes.data(), bytes.size());
        ASSERT_LT(loaded.result.code, 0) << size;
        ASSERT_NE("", loaded.result.sentence) << size;
        ASSERT_EQ(nullptr, loaded.tree.Get()) << size;
    }
    const Bytes bytes = Frame(items, 47);
    EXPECT_EQ(whole, bytes);
}

TEST(StreamFaultsTest, NoByteOfTheItemsMakesALoadCrashOrHang) {
    // Each byte of the items takes every value, with right checksums around them.
    Bytes whole;
    ASSERT_EQ("", SaveTreeToMemory(TreeOfEveryKind().Get(), whole).sentence);
    Bytes items(whole.begin() + 28, whole.end() - 52);
    int loads = 0;
    for (std::uint8_t& byte : items) {
        const std::uint8_t good = byte;
        for (int value = 0; value < 256; ++value) {
            byte = static_cast<std::uint8_t>(value);
            const Bytes bytes = Frame(items, 47);
            const auto loaded = LoadTreeFromMemory(bytes.data(), bytes.size());
            ASSERT_EQ(loaded.result.Ok(), loaded.tree.Get() != nullptr);
            ASSERT_EQ(loaded.result.Ok(), loaded.result.sentence.empty());
            loads += loaded.result.Ok() ? 1 : 0;
        }
        byte = good;
    }
    // At least the unchanged ones load.
    EXPECT_GE(loads, static_cast<int>(items.size()));
}

}  // namespace
