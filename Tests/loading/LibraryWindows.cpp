#include "loading/Library.h"

#include <filesystem>

#include <gtest/gtest.h>
#include <windows.h>

namespace {

/// Beside the test program, where the system looks first.
std::wstring FileName() {
    return std::filesystem::path(KIV_GENERICS_LIBRARY).filename().wstring();
}

}  // namespace

Library::Library() : handle_(LoadLibraryW(FileName().c_str())) {
    if (handle_ == nullptr) {
        ADD_FAILURE() << "error " << GetLastError();
    }
}

void Library::Close() {
    if (handle_ != nullptr) {
        EXPECT_TRUE(FreeLibrary(static_cast<HMODULE>(handle_))) << "error " << GetLastError();
        handle_ = nullptr;
    }
}

void* Library::Find(const char* name) const {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

bool Library::IsLoaded() {
    return GetModuleHandleW(FileName().c_str()) != nullptr;
}
