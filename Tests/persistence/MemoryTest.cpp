// Loading into a forest whose buffer can serve no more.

#include <new>

#include <KivBase/Buffer.h>
#include <gtest/gtest.h>

#include "persistence/Archives.h"
#include "persistence/Streams.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

enum class Manner { Serve, AnswerNull, Throw };

/// While it lives, buffers of new forests serve as many allocations as are left, and then fail in a manner.
class LimitedBuffers {
public:
    LimitedBuffers() : former_(KivBase::SetBufferFactory(&Make)) { manner = Manner::Serve; }
    ~LimitedBuffers() { KivBase::SetBufferFactory(former_); }
    LimitedBuffers(const LimitedBuffers&) = delete;
    LimitedBuffers& operator=(const LimitedBuffers&) = delete;

    static Manner manner;
    static int left;

private:
    class Limited final : public KivBase::Buffer {
    public:
        explicit Limited(KivBase::Buffer* inner) : inner_(inner) {}
        ~Limited() override { delete inner_; }
        Limited(const Limited&) = delete;
        Limited& operator=(const Limited&) = delete;

        void* Allocate(std::size_t size, std::size_t alignment) override {
            if (manner == Manner::Serve || left-- > 0) {
                return inner_->Allocate(size, alignment);
            }
            if (manner == Manner::Throw) {
                throw std::bad_alloc();
            }
            return nullptr;
        }
        std::size_t BytesReserved() const override { return inner_->BytesReserved(); }
        std::size_t BytesInUse() const override { return inner_->BytesInUse(); }
        void Free(void* memory, std::size_t size, std::size_t alignment) noexcept override {
            inner_->Free(memory, size, alignment);
        }

    private:
        KivBase::Buffer* inner_;
    };

    static KivBase::Buffer* Make(int reserved1, int reserved2, std::int32_t blockSize, bool reserved3) {
        return new Limited(KivBase::CreateDefaultBuffer(reserved1, reserved2, blockSize, reserved3));
    }

    KivBase::BufferFactory former_;
};

Manner LimitedBuffers::manner = Manner::Serve;
int LimitedBuffers::left = 0;

constexpr auto kOutOfMemory = static_cast<std::int32_t>(0x8007000E);

const Calls kDocument = InEnvelope(
    {"Begin 0407", "Long 00010281", "Long 41000000", "Long 00000007", "Begin 0406", "Long 00000000", "End", "End"});

TEST(MemoryTest, ANodeThatABufferDoesNotServeEndsTheLoadAsOutOfMemory) {
    const LimitedBuffers buffers;
    for (int served = 0; served < 3; ++served) {
        const auto tree = CreateGenericTree(EnumOrvObjectType{});
        LimitedBuffers::manner = Manner::AnswerNull;
        LimitedBuffers::left = served;
        ScriptedArchive archive(kDocument);
        EXPECT_EQ(kOutOfMemory, tree->LoadFromArchive(&archive)) << served;
        LimitedBuffers::manner = Manner::Serve;
        EXPECT_EQ(static_cast<std::size_t>(served), Describe(*tree).size());
        EXPECT_EQ(0, Load(*tree, kDocument));
        EXPECT_EQ((std::vector<std::string>{": Map(tag 1, 2 children) t2", "0: Vector(0 children) t2",
                                            "1: Integer 7 t1"}),
                  Describe(*tree));
    }
}

TEST(MemoryTest, ABufferThatThrowsEndsTheLoadAndReleasesTheStream) {
    const LimitedBuffers buffers;
    for (int served = 0; served < 3; ++served) {
        const auto tree = CreateGenericTree(EnumOrvObjectType{});
        LimitedBuffers::manner = Manner::Throw;
        LimitedBuffers::left = served;
        ScriptedStream stream(kDocument);
        EXPECT_THROW(tree->LoadFromStream(&stream), std::bad_alloc) << served;
        LimitedBuffers::manner = Manner::Serve;
        EXPECT_TRUE(stream.references.AreBalanced());
        EXPECT_EQ(0, Load(*tree, kDocument));
        EXPECT_EQ(3U, Describe(*tree).size());
    }
}

/// A vector that says how many Integers it has, and those that follow.
Calls VectorOf(const std::string& header, int elements) {
    Calls calls = {"Begin 0407", "Long 00010100", "Begin 0406", header};
    calls.insert(calls.end(), static_cast<std::size_t>(elements), "Long 00000001");
    return InEnvelope(calls);
}

TEST(MemoryTest, ALoadThatEndsAmongElementsKeepsNoMemoryForTheOthers) {
    const auto whole = CreateGenericTree(EnumOrvObjectType{});
    ScriptedArchive all(VectorOf("Long 00228100", 34));
    whole->LoadFromArchive(&all);
    const auto tree = CreateGenericTree(EnumOrvObjectType{});
    ScriptedArchive fewer(VectorOf("Long 00408100", 33));
    EXPECT_GT(0, tree->LoadFromArchive(&fewer));
    // The last one was made, and found no value. There was room for 30 more in the vector's array.
    EXPECT_EQ(Describe(*whole).size(), Describe(*tree).size());
    EXPECT_EQ(whole->BufferQueryB(), tree->BufferQueryB());
}

TEST(MemoryTest, AnElementThatDoesNotFitLeavesASetAsItWas) {
    const LimitedBuffers buffers;
    for (const Manner manner : {Manner::AnswerNull, Manner::Throw}) {
        const auto tree = CreateGenericTree(EnumOrvObjectType{});
        Node* const set = tree->NewRoot(NodeTypeIntegerSet);
        const Calls old = {"Begin 040B", "Long 00000001", "Long 00000005", "End"};
        Reading first(old);
        EXPECT_EQ(0, set->ReadFromArchive(first.decoder, false));
        LimitedBuffers::manner = manner;
        LimitedBuffers::left = 0;
        Reading second({"Begin 040B", "Long 00000002", "Long 00000006", "Long 00000007", "End"});
        EXPECT_THROW(set->ReadFromArchive(second.decoder, false), std::bad_alloc);
        LimitedBuffers::manner = Manner::Serve;
        EXPECT_EQ(old, WriteOf(*set));
    }
}

}  // namespace
}  // namespace KivGenerics::Testing
