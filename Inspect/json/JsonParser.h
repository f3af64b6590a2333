#pragma once

#include <cstdint>
#include <string>

#include <KivInspect/Source.h>

namespace KivInspect {

/// What a JSON document consists of, in its order. Operations may throw Failure, which ends the parsing; the place is added.
class JsonHandler {
public:
    virtual ~JsonHandler() = default;

    virtual void Null() = 0;
    virtual void Boolean(bool value) = 0;
    virtual void Integer(std::int64_t value) = 0;
    /// A number above those of Integer.
    virtual void Unsigned(std::uint64_t value) = 0;
    /// Any other number, with the digits as they stand in the document.
    virtual void Float(double value, const std::string& digits) = 0;
    /// UTF-8, well formed.
    virtual void String(std::string& value) = 0;
    virtual void StartObject() = 0;
    virtual void Key(std::string& key) = 0;
    virtual void EndObject() = 0;
    virtual void StartArray() = 0;
    virtual void EndArray() = 0;

protected:
    JsonHandler() = default;
    JsonHandler(const JsonHandler&) = default;
    JsonHandler& operator=(const JsonHandler&) = default;
};

/// Shows a document to a handler, while it is read: in memory stands only what the handler keeps. Throws Failure with a sentence
/// that begins with `place` and the line.
void ParseJson(Source& source, const std::string& place, JsonHandler& handler);

}  // namespace KivInspect
