#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <KivBase/Guid.h>
#include <KivBase/WString.h>

namespace KivInspect {

/// Reads a line from its beginning to its end. What does not stand there as expected throws Failure with a sentence.
class Scan {
public:
    explicit Scan(std::string_view line) noexcept : line_(line), rest_(line) {}

    bool AtEnd() const noexcept { return rest_.empty(); }
    /// The column of the next character, from 1, in bytes.
    std::size_t GetColumn() const noexcept { return line_.size() - rest_.size() + 1; }
    char Peek() const noexcept { return rest_.empty() ? '\0' : rest_.front(); }
    /// Takes these characters if they stand here.
    bool Take(std::string_view text) noexcept {
        if (rest_.substr(0, text.size()) != text) {
            return false;
        }
        rest_.remove_prefix(text.size());
        return true;
    }
    /// Takes these characters, which must stand here.
    void Expect(std::string_view text);
    /// Takes the characters up to the next space, comma, brace or end.
    std::string_view TakeWord() noexcept;

    std::int32_t TakeInteger() { return TakeNumber<std::int32_t>("a number of 32 bits"); }
    std::int64_t TakeInteger64() { return TakeNumber<std::int64_t>("a number of 64 bits"); }
    bool TakeBoolean();
    double TakeDouble();
    GUID TakeGuid();
    /// A text in quotes, of at most `limit` units.
    KivBase::WString TakeQuoted(std::size_t limit);

private:
    template <class Number>
    Number TakeNumber(const char* expected);
    [[noreturn]] void Refuse(const std::string& expected) const;
    std::uint64_t TakeHex(int digits);
    void TakeEscape(KivBase::WString& text);
    void TakeUtf8(KivBase::WString& text);

    std::string_view line_;
    std::string_view rest_;
};

}  // namespace KivInspect
