#pragma once

#include <cstdint>

#include <KivGenerics/Export.h>

namespace KivGenerics {

/// The modification guard of a tree: what every change asks first, inline, whichever node it goes through.
class ChangeGuard {
public:
    ChangeGuard(const ChangeGuard&) = delete;
    ChangeGuard& operator=(const ChangeGuard&) = delete;

    /// Throws ReadOnlyException on a read-only tree, else counts the change.
    void CheckReadOnly() {
        TestWritable();
        changeCount_ = static_cast<std::int32_t>(static_cast<std::uint32_t>(changeCount_) + 1U);
        temporalityStale_ = true;
    }

    /// The first half of the guard: nothing is counted.
    void TestWritable() const {
        if (readOnly_) {
            RefuseChange();
        }
    }

    /// Counts `more` changes of a tree that the guard has just let pass.
    void CountMore(std::uint32_t more) noexcept {
        changeCount_ = static_cast<std::int32_t>(static_cast<std::uint32_t>(changeCount_) + more);
    }

    /// A derived temporality was set by itself: it need not be what an update of the whole tree made it.
    void NoteOwnDerived() noexcept { temporalityUpdated_ = false; }

protected:
    ChangeGuard() = default;
    ~ChangeGuard() = default;

    std::int32_t changeCount_ = 0;
    bool readOnly_ = false;
    bool temporalityStale_ = true;
    bool temporalityUpdated_ = false;  // every derived temporality is what an update made it, unless stale

private:
    [[noreturn]] KIV_GENERICS_EXPORT static void RefuseChange();
};

}  // namespace KivGenerics
