// A save into memory, where the heap does not let its bytes grow.

#include <cerrno>
#include <new>

#include <KivStorage/MemoryWriteStream.h>
#include <KivStorage/Result.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

long countdown = 0;  // calls until one fails; 0: none does
bool forGood = false;  // and all that come after
bool struck = false;

bool Strikes() {
    if (countdown == 0 || --countdown > 0) {
        return false;
    }
    countdown = forGood ? 1 : 0;
    struck = true;
    return true;
}

}  // namespace

// Stands before the system's, also for the shared libraries.
extern "C" void* realloc(void* block, std::size_t size) noexcept {
    using Function = void* (*)(void*, std::size_t);
    static const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "realloc"));
    if (Strikes()) {
        errno = ENOMEM;
        return nullptr;
    }
    return next(block, size);
}

namespace {

using namespace KivStorage;

constexpr std::int32_t kNumbers = 100000;  // eight blocks

/// The first failure, or success.
Result SaveNumbers(MemoryWriteStream& stream) {
    for (std::int32_t number = 0; number < kNumbers; ++number) {
        if (stream.PutLong(number) < 0) {
            return stream.GetError();
        }
    }
    return stream.Finish();
}

TEST(SavedBytesPosixTest, AnyFailureToGrowIsGotOverOrTold) {
    const auto whole = MemoryWriteStream::Create();
    ASSERT_TRUE(SaveNumbers(*whole).Ok());
    int saved = 0;
    int refused = 0;
    for (const bool lasting : {false, true}) {
        struck = true;
        for (long k = 1; struck; ++k) {
            struck = false;
            forGood = lasting;
            countdown = k;
            const auto stream = MemoryWriteStream::Create();
            const Result result = SaveNumbers(*stream);
            countdown = 0;
            if (result.Ok()) {
                ++saved;
                ASSERT_TRUE(stream->TakeBytes().ToVector() == whole->GetBytes().ToVector()) << k;
            } else {
                ++refused;
                EXPECT_EQ(StorageOutOfMemory, result.code) << k;
                EXPECT_EQ("There is not enough memory (memory). Free memory and try again.", result.sentence) << k;
            }
        }
    }
    forGood = false;
    EXPECT_GT(saved, 5);
    EXPECT_GT(refused, 2);
}

TEST(SavedBytesPosixTest, WhereTheyCannotBeCopiedBeforeTheEndNothingIsLost) {
    const auto whole = MemoryWriteStream::Create();
    ASSERT_TRUE(SaveNumbers(*whole).Ok());
    const auto stream = MemoryWriteStream::Create();
    for (std::int32_t number = 0; number < kNumbers; ++number) {
        if (number == kNumbers / 2) {
            countdown = 1;
            EXPECT_THROW(stream->TakeBytes(), std::bad_alloc);
            EXPECT_EQ(0, countdown);
        }
        ASSERT_EQ(0, stream->PutLong(number));
    }
    ASSERT_TRUE(stream->Finish().Ok());
    EXPECT_TRUE(stream->GetBytes().ToVector() == whole->GetBytes().ToVector());
}

}  // namespace
