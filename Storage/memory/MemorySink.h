#pragma once

#include <KivStorage/SavedBytes.h>

#include "format/ByteSink.h"

namespace KivStorage {

/// Keeps saved bytes in memory. They are made ready where they stay.
class MemorySink final : public ByteSink {
public:
    std::uint8_t* Lend(std::size_t count) override;
    Result Write(const std::uint8_t* bytes, std::size_t count) override;
    std::string GetPlace() const override;

    /// Everything written so far.
    const SavedBytes& GetBytes() const noexcept { return saved_; }
    /// The same, of which nothing is left then. Nothing may be lent any more.
    SavedBytes TakeAll() noexcept;
    /// The same, copied, so that what is lent stays. Throws std::bad_alloc, and has lost nothing then.
    SavedBytes TakeSoFar();

private:
    bool NeedRoom(std::size_t count) noexcept;

    SavedBytes saved_;
    std::uint8_t* lent_ = nullptr;  // in the room behind what is saved
};

}  // namespace KivStorage
