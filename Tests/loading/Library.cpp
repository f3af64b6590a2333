#include "loading/Library.h"

#include <gtest/gtest.h>

void Library::Call(const char* name) const {
    void* const symbol = Find(name);
    ASSERT_NE(symbol, nullptr) << name;
    char object = 0;
    reinterpret_cast<void (*)(void*)>(symbol)(&object);
}

void Library::AssignInitializer() const {
    void* const symbol = Find("_ZN11KivGenerics11InitializeraSERKS0_");
    ASSERT_NE(symbol, nullptr);
    char left = 0;
    const char right = 0;
    EXPECT_EQ(reinterpret_cast<void* (*)(void*, const void*)>(symbol)(&left, &right), &left);
}
