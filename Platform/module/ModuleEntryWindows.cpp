// Compiled into the module whose load and unload it reports.

#include <KivBase/ModuleEntry.h>
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        KivBase::ModuleAttach(module);
    } else if (reason == DLL_PROCESS_DETACH) {
        KivBase::ModuleDetach();
    }
    return TRUE;
}
