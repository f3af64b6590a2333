#include <KivBase/Guid.h>
#include <KivBase/Message.h>
#include <KivBase/Utf.h>

#include <cstring>

KivBase::Message::~Message() = default;

// This host's texts are ASCII; anything else shows as a question mark.
std::string KivBase::ToUtf8(const char16_t* units, std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i) {
        bytes += units[i] < 0x80 ? static_cast<char>(units[i]) : '?';
    }
    return bytes;
}

KivBase::WString KivBase::FromUtf8(std::string_view bytes) {
    WString units;
    for (const char c : bytes) {
        units += static_cast<unsigned char>(c) < 0x80 ? static_cast<char16_t>(c) : u'?';
    }
    return units;
}

// The record as four words, in the order of memory but for the halves of the second word; on a little-endian machine
// that is how they lie there.
int KivBase::CompareGUID(const GUID& left, const GUID& right) noexcept {
    std::uint32_t a[4];
    std::uint32_t b[4];
    std::memcpy(a, &left, sizeof a);
    std::memcpy(b, &right, sizeof b);
    for (int i = 0; i < 4; ++i) {
        if (a[i] != b[i]) {
            return a[i] < b[i] ? -1 : 1;
        }
    }
    return 0;
}
