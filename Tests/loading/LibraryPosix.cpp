#include "loading/Library.h"

#include <dlfcn.h>

#include <gtest/gtest.h>

Library::Library() : handle_(dlopen(KIV_GENERICS_LIBRARY, RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) {
        ADD_FAILURE() << dlerror();
    }
}

void Library::Close() {
    if (handle_ != nullptr) {
        EXPECT_EQ(dlclose(handle_), 0) << dlerror();
        handle_ = nullptr;
    }
}

void* Library::Find(const char* name) const {
    return dlsym(handle_, name);
}

bool Library::IsLoaded() {
    void* const handle = dlopen(KIV_GENERICS_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) {
        dlclose(handle);
    }
    return handle != nullptr;
}
