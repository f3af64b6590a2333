#pragma once

#include <cstdint>

#include <KivInspect/Source.h>

#include "files/Failure.h"

namespace KivInspect {

/// Another source, of which no more than a limit of bytes is taken: more is a failure.
class LimitedSource final : public Source {
public:
    LimitedSource(Source& source, std::uint64_t limit) noexcept : source_(source), left_(limit) {}

    std::size_t Read(char* bytes, std::size_t size) override {
        const std::size_t count = source_.Read(bytes, size);
        if (count > left_) {
            throw Failure(InspectTooManyBytes,
                          "there are more bytes than the limit. If the data can be trusted, raise the limit.");
        }
        left_ -= count;
        return count;
    }

private:
    Source& source_;
    std::uint64_t left_;
};

}  // namespace KivInspect
