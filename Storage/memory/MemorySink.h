#pragma once

#include <vector>

#include "format/ByteSink.h"

namespace KivStorage {

/// Keeps saved bytes in memory.
class MemorySink final : public ByteSink {
public:
    Result Write(const std::uint8_t* bytes, std::size_t count) override;
    std::string GetPlace() const override;

    std::vector<std::uint8_t> bytes;
};

}  // namespace KivStorage
