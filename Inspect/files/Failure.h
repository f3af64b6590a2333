#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include <KivInspect/InspectCode.h>
#include <KivStorage/Result.h>

namespace KivInspect {

/// What a reader throws inside, to end at its public operation as a result.
class Failure : public std::runtime_error {
public:
    Failure(std::int32_t code, const std::string& sentence) : std::runtime_error(sentence), code_(code) {}

    std::int32_t GetCode() const noexcept { return code_; }

private:
    std::int32_t code_;
};

/// Runs a step, and makes a result of what it throws.
template <class Step>
KivStorage::Result Guarded(Step step) {
    try {
        step();
        return {};
    } catch (const Failure& failure) {
        return {failure.GetCode(), failure.what()};
    } catch (const std::bad_alloc&) {
        return {KivStorage::StorageOutOfMemory, "There is not enough memory. Free memory and try again."};
    } catch (const std::exception& exception) {
        return {InspectReadFailed, exception.what()};
    }
}

}  // namespace KivInspect
