#include "json/JsonParser.h"

#include <cstddef>
#include <iterator>

#include <nlohmann/json.hpp>

#include <KivBase/Utf.h>

#include "files/Failure.h"

namespace KivInspect {
namespace {

using nlohmann::json;

/// The bytes of a source one by one, and the line that they are in.
class Bytes {
public:
    explicit Bytes(Source& source) : source_(source) { Fill(); }

    bool AtEnd() const noexcept { return count_ == 0; }
    char Get() const noexcept { return buffer_[next_]; }
    void Advance() {
        line_ += buffer_[next_] == '\n' ? 1 : 0;
        if (++next_ == count_) {
            Fill();
        }
    }
    std::size_t GetLine() const noexcept { return line_; }

private:
    void Fill() {
        count_ = source_.Read(buffer_, sizeof buffer_);
        next_ = 0;
    }

    Source& source_;
    std::size_t count_ = 0;
    std::size_t next_ = 0;
    std::size_t line_ = 1;
    char buffer_[65536];
};

/// The iterator that the parser asks for; one without bytes is the end.
class ByteIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = char;

    explicit ByteIterator(Bytes* bytes = nullptr) noexcept : bytes_(bytes) {}

    char operator*() const noexcept { return bytes_->Get(); }
    ByteIterator& operator++() {
        bytes_->Advance();
        return *this;
    }
    ByteIterator operator++(int) {
        ++*this;
        return *this;
    }
    // The parser compares with the end alone.
    bool operator==(const ByteIterator&) const noexcept { return bytes_->AtEnd(); }
    bool operator!=(const ByteIterator&) const noexcept { return !bytes_->AtEnd(); }

private:
    Bytes* bytes_;
};

/// Passes on what the parser finds.
class Events final : public nlohmann::json_sax<json> {
public:
    explicit Events(JsonHandler& handler) : handler_(handler) {}

    bool null() override { return handler_.Null(), true; }
    bool boolean(bool value) override { return handler_.Boolean(value), true; }
    bool number_integer(number_integer_t value) override { return handler_.Integer(value), true; }
    bool number_unsigned(number_unsigned_t value) override {
        if (value <= static_cast<number_unsigned_t>(INT64_MAX)) {
            handler_.Integer(static_cast<std::int64_t>(value));
        } else {
            handler_.Unsigned(value);
        }
        return true;
    }
    bool number_float(number_float_t value, const string_t& digits) override {
        return handler_.Float(value, digits), true;
    }
    bool string(string_t& value) override { return handler_.String(value), true; }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*size*/) override { return handler_.StartObject(), true; }
    bool key(string_t& value) override { return handler_.Key(value), true; }
    bool end_object() override { return handler_.EndObject(), true; }
    bool start_array(std::size_t /*size*/) override { return handler_.StartArray(), true; }
    bool end_array() override { return handler_.EndArray(), true; }
    bool parse_error(std::size_t /*position*/, const std::string& token,
                     const nlohmann::detail::exception& error) override {
        // The number of the error and the place stand before the reason.
        const std::string text = error.what();
        const std::size_t reason = text.find(": ");
        const std::string said = reason != std::string::npos ? text.substr(reason + 2) : text + " " + token;
        // What it has read last need not be UTF-8.
        throw Failure(InspectMalformed, "this is no JSON: " + KivBase::ToUtf8(KivBase::FromUtf8(said)));
    }

private:
    JsonHandler& handler_;
};

}  // namespace

void ParseJson(Source& source, const std::string& place, JsonHandler& handler) {
    Bytes bytes(source);
    Events events(handler);
    try {
        json::sax_parse(ByteIterator(&bytes), ByteIterator(&bytes), &events);
    } catch (const Failure& failure) {
        throw Failure(failure.GetCode(), place + ", line " + std::to_string(bytes.GetLine()) + ": " + failure.what());
    }
}

}  // namespace KivInspect
