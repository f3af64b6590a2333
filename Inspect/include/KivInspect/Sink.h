#pragma once

#include <string>
#include <string_view>

namespace KivInspect {

/// Where written bytes go.
class Sink {
public:
    virtual ~Sink() = default;

    /// Takes the next bytes. Throws an exception derived from std::exception, with a sentence for people, when it cannot;
    /// whoever writes lets it pass.
    virtual void Write(std::string_view bytes) = 0;

protected:
    Sink() = default;
    Sink(const Sink&) = default;
    Sink& operator=(const Sink&) = default;
};

/// Keeps what is written in memory.
class StringSink final : public Sink {
public:
    void Write(std::string_view bytes) override { text_ += bytes; }

    const std::string& GetText() const noexcept { return text_; }

private:
    std::string text_;
};

/// Collects small pieces and hands them to a sink in large ones.
class BufferedSink {
public:
    explicit BufferedSink(Sink& sink) : sink_(sink) { text_.reserve(2 * Limit); }

    /// Where pieces are appended.
    std::string& GetText() noexcept { return text_; }
    /// Hands over what has come together once it is enough; called now and then, between pieces.
    void FlushWhenFull() {
        if (text_.size() >= Limit) {
            Flush();
        }
    }
    /// Hands over everything; called at the end, or what is left is lost.
    void Flush() {
        sink_.Write(text_);
        text_.clear();
    }

private:
    static constexpr std::size_t Limit = 65536;

    Sink& sink_;
    std::string text_;
};

}  // namespace KivInspect
