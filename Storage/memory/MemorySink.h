#pragma once

#include <memory>
#include <vector>

#include "format/ByteSink.h"

namespace KivStorage {

/// Keeps saved bytes in memory, where they came, until somebody wants them side by side: so they are copied once, however many
/// there are.
class MemorySink final : public ByteSink {
public:
    std::uint8_t* Lend(std::size_t count) override;
    Result Write(const std::uint8_t* bytes, std::size_t count) override;
    std::string GetPlace() const override;

    /// Everything written so far. Throws std::bad_alloc, and has lost nothing then.
    std::vector<std::uint8_t>& Join();

private:
    using Piece = std::unique_ptr<std::uint8_t[]>;
    /// Bytes in one of the pieces.
    struct Part {
        const std::uint8_t* bytes;
        std::size_t count;
    };

    void Keep(const std::uint8_t* bytes, std::size_t count);

    std::vector<Piece> pieces_;  // the last of them holds what is lent
    std::vector<Part> parts_;  // behind what is joined, in order
    std::size_t count_ = 0;  // bytes in them
    std::uint8_t* next_ = nullptr;  // where the next place to lend begins
    std::size_t room_ = 0;  // behind it
    std::vector<std::uint8_t> joined_;
};

}  // namespace KivStorage
