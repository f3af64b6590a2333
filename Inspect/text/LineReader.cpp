#include "text/LineReader.h"

namespace KivInspect {

/// Reads another piece behind what has not been handed out; false at the end.
bool LineReader::Fill() {
    constexpr std::size_t piece = 65536;
    buffer_.erase(0, next_);
    next_ = 0;
    const std::size_t old = buffer_.size();
    buffer_.resize(old + piece);
    const std::size_t count = ended_ ? 0 : source_.Read(&buffer_[old], piece);
    buffer_.resize(old + count);
    ended_ = count == 0;
    return !ended_;
}

bool LineReader::Next() {
    std::size_t searched = next_;
    std::size_t end = buffer_.find('\n', searched);
    while (end == std::string::npos) {
        searched = buffer_.size() - next_;
        if (!Fill()) {
            break;
        }
        end = buffer_.find('\n', searched);
    }
    const bool hasEnd = end != std::string::npos;
    if (!hasEnd && next_ == buffer_.size()) {
        return false;
    }
    const std::size_t length = (hasEnd ? end : buffer_.size()) - next_;
    line_ = std::string_view(buffer_).substr(next_, length);
    next_ += length + (hasEnd ? 1 : 0);
    if (!line_.empty() && line_.back() == '\r') {
        line_.remove_suffix(1);
    }
    ++number_;
    return true;
}

}  // namespace KivInspect
