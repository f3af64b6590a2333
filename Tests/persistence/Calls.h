#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include <KivBase/Guid.h>
#include <KivBase/WString.h>

namespace KivGenerics::Testing {

/// What is written into an archive, or played from one: a call a line, numbers in hexadecimal.
///
///     Begin 0007          an object opens, with its tag
///     Long 0000002A       32 bits
///     Short 002A, Int64 000000000000002A
///     Double 3FF0000000000000
///     Guid 00112233-4455-6677-8899AABBCCDDEEFF
///     Text "a\u0000b"     units outside the printable ASCII, quotes and backslashes escaped
///     Variant 0003        the type's number
///     End                 the object ends
using Calls = std::vector<std::string>;

std::string ShortCall(std::uint16_t value);
std::string LongCall(std::uint32_t value);
std::string Int64Call(std::uint64_t value);
std::string DoubleCall(double value);
std::string GuidCall(const GUID& value);
std::string TextCall(const char16_t* units, std::size_t length);
std::string VariantCall(std::uint16_t type);
std::string BeginCall(std::uint16_t tag);

/// One sequence after another.
Calls operator+(Calls left, const Calls& right);
/// The same calls several times.
Calls Repeat(int times, const Calls& calls);

/// What a throwing archive or stream of these tests throws.
class HostError : public std::runtime_error {
public:
    HostError() : std::runtime_error("the host's own") {}
};

/// Counts the calls of an archive or stream, and makes some of them fail.
class CallCounter {
public:
    /// From now on the k-th call, counted from 1, answers `code`, and, if wished, every later one.
    void FailAt(int k, std::int32_t code, bool forGood = false);
    /// The k-th call throws HostError.
    void ThrowAt(int k);
    /// Counts one call; its result.
    std::int32_t Next();
    int GetCount() const noexcept { return count_; }

private:
    int count_ = 0;
    int failAt_ = 0;
    std::int32_t code_ = 0;
    bool forGood_ = false;
    int throwAt_ = 0;
};

/// What a player answers where the script has nothing more, and where it has something else.
inline constexpr auto kScriptIsOver = static_cast<std::int32_t>(0x80048001);
inline constexpr auto kOtherCall = static_cast<std::int32_t>(0x80048002);

/// Plays a sequence of calls back, strictly by kind. Leaving an object skips what of it was not read.
class CallPlayer {
public:
    explicit CallPlayer(Calls calls) : calls_(std::move(calls)) {}

    std::int32_t TakeShort(std::uint16_t& value);
    std::int32_t TakeLong(std::int32_t& value);
    std::int32_t TakeInt64(std::int64_t& value);
    std::int32_t TakeDouble(double& value);
    std::int32_t TakeGuid(GUID& value);
    std::int32_t TakeText(KivBase::WString& text);
    std::int32_t TakeVariant(std::uint16_t& type);
    /// 1, and nothing taken, where no object follows or, `expected` not being 0, another one.
    std::int32_t Enter(std::uint16_t expected, std::uint16_t& tag);
    std::int32_t Leave();

    /// True when everything has been taken.
    bool IsOver() const noexcept { return next_ == calls_.size(); }
    std::size_t GetPosition() const noexcept { return next_; }

private:
    bool StartsWith(const char* name) const;
    std::int32_t Take(const char* name, std::string& rest);
    std::int32_t TakeNumber(const char* name, std::uint64_t& number);

    Calls calls_;
    std::size_t next_ = 0;
    int depth_ = 0;
};

}  // namespace KivGenerics::Testing
