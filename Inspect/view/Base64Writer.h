#pragma once

#include <cstdint>
#include <string>

#include <KivInspect/Sink.h>

namespace KivInspect {

/// Writes bytes in base64 as they come.
class Base64Writer {
public:
    explicit Base64Writer(Sink& sink) : out_(sink) {}

    void Put(std::uint8_t byte) {
        word_ = word_ << 8 | byte;
        if (++count_ == 3) {
            Flush3();
        }
    }
    void Put(const std::string& bytes) {
        for (const char byte : bytes) {
            Put(static_cast<std::uint8_t>(byte));
        }
    }
    /// A number in groups of seven bits, the lowest first; all but the last have the top bit set.
    void PutNumber(std::uint32_t value) {
        for (; value >= 0x80; value >>= 7) {
            Put(static_cast<std::uint8_t>(value | 0x80));
        }
        Put(static_cast<std::uint8_t>(value));
    }
    /// Called once, at the end.
    void Finish() {
        const int rest = count_;
        while (rest > 0 && count_ > 0) {
            Put(0);
        }
        std::string& text = out_.GetText();
        if (rest > 0) {
            text.replace(text.size() - static_cast<std::size_t>(3 - rest), std::string::npos,
                         static_cast<std::size_t>(3 - rest), '=');
        }
        out_.Flush();
    }

private:
    void Flush3() {
        constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        // The last characters may have to be replaced, so they stay until more come.
        out_.FlushWhenFull();
        for (int shift = 18; shift >= 0; shift -= 6) {
            out_.GetText() += digits[word_ >> shift & 63];
        }
        word_ = 0;
        count_ = 0;
    }

    BufferedSink out_;
    std::uint32_t word_ = 0;
    int count_ = 0;
};

}  // namespace KivInspect
