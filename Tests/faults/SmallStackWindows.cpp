#include "faults/SmallStack.h"

#include <gtest/gtest.h>
#include <windows.h>

void RunOnSmallStack(std::function<void()> work) {
    const auto start = [](void* argument) -> DWORD {
        (*static_cast<std::function<void()>*>(argument))();
        return 0;
    };
    const HANDLE thread =
        CreateThread(nullptr, SIZE_T{1} << 20, start, &work, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    ASSERT_NE(thread, nullptr) << "error " << GetLastError();
    EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    CloseHandle(thread);
}
