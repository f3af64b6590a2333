#pragma once

#include <string>

namespace Peers {

/// Ends the process with exit code 1 after printing the sentence: a benchmark that goes wrong has no figures.
[[noreturn]] void Fail(const std::string& sentence);

}  // namespace Peers
