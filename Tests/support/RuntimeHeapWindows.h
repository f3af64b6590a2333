#pragma once

// On Windows a program's own operators `new` and `delete` serve that program alone: its libraries go on calling those of the
// C++ runtime's library. These in turn call the C runtime, through a table of addresses, in which a test can put others.

#include <cstring>

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

}  // namespace KivTests
