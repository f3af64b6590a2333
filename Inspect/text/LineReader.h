#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <KivInspect/Source.h>

namespace KivInspect {

/// Lines of a source, one after another. In memory stands one piece of the source and the line that is longest.
class LineReader {
public:
    explicit LineReader(Source& source) : source_(source) {}

    /// Goes to the next line; false at the end. Throws what the source throws.
    bool Next();
    /// The line, without its end; valid until Next.
    std::string_view GetLine() const noexcept { return line_; }
    /// The line's number, from 1.
    std::size_t GetNumber() const noexcept { return number_; }

private:
    bool Fill();

    Source& source_;
    std::string buffer_;
    std::size_t next_ = 0;  // where the next line begins
    std::string_view line_;
    std::size_t number_ = 0;
    bool ended_ = false;
};

}  // namespace KivInspect
