#pragma once

// On Windows a program's own operators `new` and `delete` serve that program alone: its libraries go on calling those of the
// C++ runtime's library. These in turn call the C runtime, through a table of addresses, in which a test can put others.

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include <malloc.h>
#include <windows.h>

namespace KivTests {

/// The place where `importer` keeps the address of a function that it imports from the C runtime; null when it imports none
/// of this name.
inline ULONGLONG* FindImport(HMODULE importer, const char* function) {
    auto* const base = reinterpret_cast<BYTE*>(importer);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    const auto& folder = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + folder.VirtualAddress);
    for (; library->Name != 0; ++library) {
        const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA64*>(base + library->OriginalFirstThunk);
        auto* addresses = reinterpret_cast<IMAGE_THUNK_DATA64*>(base + library->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
            if (IMAGE_SNAP_BY_ORDINAL64(names->u1.Ordinal)) {
                continue;
            }
            const auto* const name = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char*>(name->Name), function) == 0) {
                return &addresses->u1.Function;
            }
        }
    }
    return nullptr;
}

/// Lets the C++ runtime's library, and with it the `new` and `delete` of every module, call `replacement` for the C runtime's
/// `function`. False when that cannot be done.
template <class Function>
bool ReplaceInRuntime(const char* function, Function* replacement) {
    const HMODULE runtime = GetModuleHandleW(L"libstdc++-6.dll");
    ULONGLONG* const place = runtime != nullptr ? FindImport(runtime, function) : nullptr;
    DWORD before = 0;
    if (place == nullptr || !VirtualProtect(place, sizeof *place, PAGE_READWRITE, &before)) {
        return false;
    }
    *place = reinterpret_cast<ULONGLONG>(replacement);
    return VirtualProtect(place, sizeof *place, before, &before) != 0;
}

/// What a test program is asked and told of every block that an operator `new` takes and an operator `delete` gives back.
struct HeapWatch {
    bool (*refuses)() noexcept;
    void (*taken)() noexcept;
    void (*given)() noexcept;
};

inline HeapWatch heapWatch;

inline void* Watched(void* block) noexcept {
    if (block != nullptr) {
        heapWatch.taken();
    }
    return block;
}

inline void* TakeBlock(std::size_t size) noexcept {
    return heapWatch.refuses() ? nullptr : Watched(std::malloc(size));
}

inline void* TakeZeros(std::size_t count, std::size_t size) noexcept {
    return heapWatch.refuses() ? nullptr : Watched(std::calloc(count, size));
}

inline void* TakeAligned(std::size_t size, std::size_t alignment) noexcept {
    return heapWatch.refuses() ? nullptr : Watched(_aligned_malloc(size, alignment));
}

inline void GiveBlock(void* block) noexcept {
    if (block != nullptr) {
        heapWatch.given();
        std::free(block);
    }
}

inline void GiveAligned(void* block) noexcept {
    if (block != nullptr) {
        heapWatch.given();
        _aligned_free(block);
    }
}

/// Watches the heap from now on. Throws when that cannot be done: the tests would then fail nothing and count nothing.
inline bool WatchHeap(const HeapWatch& watch) {
    heapWatch = watch;
    if (ReplaceInRuntime("malloc", TakeBlock) && ReplaceInRuntime("calloc", TakeZeros) &&
        ReplaceInRuntime("_aligned_malloc", TakeAligned) && ReplaceInRuntime("free", GiveBlock) &&
        ReplaceInRuntime("_aligned_free", GiveAligned)) {
        return true;
    }
    throw std::runtime_error("the runtime's heap cannot be watched");
}

}  // namespace KivTests
