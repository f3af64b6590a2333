#include <KivBase/ReturnPtr.h>

#include <memory>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

class Counted {
public:
    explicit Counted(int number) : value(number) { ++live; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    virtual ~Counted() { --live; }
    static int live;
    int value;
};
int Counted::live = 0;

using Handle = KivBase::ReturnPtr<Counted, KivBase::DeleteC<Counted>>;

TEST(ReturnPtrTest, IsEmptyWhenDefaultConstructed) {
    const Handle handle;
    EXPECT_EQ(nullptr, handle.Get());
    EXPECT_FALSE(handle);
}

TEST(ReturnPtrTest, DeletesItsObjectWhenItGoes) {
    {
        const Handle handle(new Counted(4));
        EXPECT_TRUE(handle);
        EXPECT_EQ(4, handle->value);
        EXPECT_EQ(4, (*handle).value);
        EXPECT_EQ(1, Counted::live);
    }
    EXPECT_EQ(0, Counted::live);
}

TEST(ReturnPtrTest, MovingPassesTheObjectOn) {
    const auto from = std::make_unique<Handle>(new Counted(1));
    Counted* const object = from->Get();
    const Handle to(std::move(*from));
    EXPECT_EQ(object, to.Get());
    EXPECT_EQ(nullptr, from->Get());
    EXPECT_EQ(1, Counted::live);
}

TEST(ReturnPtrTest, AssigningDeletesTheOldObject) {
    Handle to(new Counted(1));
    const auto from = std::make_unique<Handle>(new Counted(2));
    to = std::move(*from);
    EXPECT_EQ(1, Counted::live);
    EXPECT_EQ(2, to->value);
    EXPECT_EQ(nullptr, from->Get());
    to = Handle();
    EXPECT_EQ(0, Counted::live);
    EXPECT_FALSE(to);
}

TEST(ReturnPtrTest, AssigningAHandleToItselfKeepsTheObject) {
    Handle handle(new Counted(3));
    Handle& same = handle;
    handle = std::move(same);
    ASSERT_TRUE(handle);
    EXPECT_EQ(3, handle->value);
    EXPECT_EQ(1, Counted::live);
}

TEST(ReturnPtrTest, DetachGivesTheObjectToTheCaller) {
    Handle handle(new Counted(3));
    Counted* const object = handle.Detach();
    EXPECT_FALSE(handle);
    EXPECT_EQ(nullptr, handle.Detach());
    EXPECT_EQ(1, Counted::live);
    delete object;
    EXPECT_EQ(0, Counted::live);
}

TEST(ReturnPtrTest, ResetReplacesTheObject) {
    Handle handle(new Counted(3));
    handle.Reset(new Counted(4));
    EXPECT_EQ(4, handle->value);
    EXPECT_EQ(1, Counted::live);
    handle.Reset(handle.Get());
    EXPECT_EQ(4, handle->value);
    EXPECT_EQ(1, Counted::live);
    handle.Reset();
    EXPECT_FALSE(handle);
    EXPECT_EQ(0, Counted::live);
}

struct RecordingDeleter {
    void operator()(int* object) const { *object = -1; }
};

TEST(ReturnPtrTest, CallsItsDeleterForObjectsAlone) {
    int value = 8;
    {
        const KivBase::ReturnPtr<int, RecordingDeleter> empty;
        const KivBase::ReturnPtr<int, RecordingDeleter> handle(&value);
        EXPECT_EQ(8, value);
    }
    EXPECT_EQ(-1, value);
}

TEST(ReturnPtrTest, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<Handle>);
    EXPECT_FALSE(std::is_copy_assignable_v<Handle>);
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<Handle>);
    EXPECT_TRUE(std::is_nothrow_move_assignable_v<Handle>);
    EXPECT_FALSE((std::is_convertible_v<Counted*, Handle>));
}

}  // namespace
}  // namespace KivPlatform::Testing
