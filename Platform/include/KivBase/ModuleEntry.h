#pragma once

namespace KivBase {

/// What a module does when it is loaded into a process and unloaded from it.
///
/// The platform's module entry is compiled into the module and calls these two, which the module defines. They must not
/// throw: no one is there to catch. `module` is the module's handle where the system has one, else an address inside it.
void ModuleAttach(void* module) noexcept;
void ModuleDetach() noexcept;

}  // namespace KivBase
