#pragma once

namespace KivGenerics {

/// Counts one user of the library's logging and sets it up for the first. Throws what the host's logging throws when it
/// cannot start; the user is not counted then. Threads: any.
void StartUp();

/// Gives one StartUp back; the last one takes the logging down.
void ShutDown() noexcept;

/// The handle that the module entry was given; null before the library is loaded.
void* GetModuleHandleOfLibrary() noexcept;

}  // namespace KivGenerics
