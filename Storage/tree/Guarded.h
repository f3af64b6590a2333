#pragma once

#include <exception>
#include <new>

#include "format/Failure.h"

namespace KivStorage {

/// Runs a step that answers a Result, and makes a result of what it throws.
template <class Step>
Result Guarded(Step step) noexcept {
    try {
        return step();
    } catch (const std::bad_alloc&) {
        return FailQuietly(StorageOutOfMemory, "");
    } catch (const std::exception& exception) {
        // What the library throws, it throws with a text.
        return FailQuietly(StorageTreeRefused, exception.what());
    } catch (...) {
        return FailQuietly(StorageTreeRefused, "");
    }
}

}  // namespace KivStorage
