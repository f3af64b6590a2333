// Compiled into the module whose load and unload it reports.

#include <KivBase/ModuleEntry.h>

namespace {

// There is no module handle here: an address inside the module stands for it.
int insideThisModule = 0;

__attribute__((constructor)) void Attach() {
    KivBase::ModuleAttach(&insideThisModule);
}

__attribute__((destructor)) void Detach() {
    KivBase::ModuleDetach();
}

}  // namespace
