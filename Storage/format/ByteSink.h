#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <KivStorage/Result.h>

namespace KivStorage {

/// Where saved bytes go.
class ByteSink {
public:
    virtual ~ByteSink() = default;
    /// A place of the sink's own in which `count` bytes can be made ready: they need not be copied when they are written from
    /// there. Null where it has none; what it lent last is the writer's until the next call.
    virtual std::uint8_t* Lend(std::size_t) { return nullptr; }
    /// All of them or a failure.
    virtual Result Write(const std::uint8_t* bytes, std::size_t count) = 0;
    /// How messages name the place: `file "name"`.
    virtual std::string GetPlace() const = 0;

protected:
    ByteSink() = default;
    ByteSink(const ByteSink&) = default;
    ByteSink& operator=(const ByteSink&) = default;
};

/// Where saved bytes come from.
class ByteSource {
public:
    virtual ~ByteSource() = default;
    /// Fewer than asked for, in `got`, at the end only.
    virtual Result Read(std::uint8_t* bytes, std::size_t count, std::size_t& got) = 0;
    /// Reads the next `count` bytes where they stand in the source's own memory, as long as it lives: they need not be copied. What
    /// it lends next stands right behind them. Null, and nothing is read, where it has none or fewer.
    virtual const std::uint8_t* Lend(std::size_t) { return nullptr; }
    /// How many bytes there are in all, as far as known.
    virtual std::uint64_t GetSize() const = 0;
    /// How messages name the place: `file "name"`.
    virtual std::string GetPlace() const = 0;

protected:
    ByteSource() = default;
    ByteSource(const ByteSource&) = default;
    ByteSource& operator=(const ByteSource&) = default;
};

}  // namespace KivStorage
