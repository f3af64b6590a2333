#pragma once

#include <cstdint>
#include <string>

#include <KivStorage/Result.h>

namespace KivStorage {

/// The result for a code: what it means, the place in brackets, what to do. Throws std::bad_alloc.
Result Fail(std::int32_t code, const std::string& place);

/// The same where no exception may pass: the sentence is empty when there is no memory for it.
Result FailQuietly(std::int32_t code, const char* place) noexcept;

}  // namespace KivStorage
