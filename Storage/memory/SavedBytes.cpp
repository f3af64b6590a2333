#include <KivStorage/SavedBytes.h>

#include <cstdlib>
#include <utility>

namespace KivStorage {

void SavedBytes::Free::operator()(std::uint8_t* bytes) const noexcept {
    std::free(bytes);
}

SavedBytes::SavedBytes(SavedBytes&& other) noexcept
    : bytes_(std::move(other.bytes_)), size_(std::exchange(other.size_, 0)), room_(std::exchange(other.room_, 0)) {}

SavedBytes& SavedBytes::operator=(SavedBytes&& other) noexcept {
    bytes_ = std::move(other.bytes_);
    size_ = std::exchange(other.size_, 0);
    room_ = std::exchange(other.room_, 0);
    return *this;
}

SavedBytes::~SavedBytes() = default;

bool SavedBytes::Reserve(std::size_t count) noexcept {
    void* const grown = std::realloc(bytes_.get(), count);
    if (grown == nullptr) {
        return false;
    }
    static_cast<void>(bytes_.release());  // realloc has freed it or grown it in place
    bytes_.reset(static_cast<std::uint8_t*>(grown));
    room_ = count;
    return true;
}

}  // namespace KivStorage
