#include "persistence/Streams.h"

#include <algorithm>

namespace KivGenerics::Testing {

std::int32_t ScriptedStream::GetLong(std::int32_t* value) {
    const std::int32_t result = Note("GetLong");
    return result != 0 ? result : player.TakeLong(*value);
}

std::int32_t ScriptedStream::GetDouble(double* value) {
    const std::int32_t result = Note("GetDouble");
    return result != 0 ? result : player.TakeDouble(*value);
}

std::int32_t ScriptedStream::GetShort(std::uint16_t* value) {
    const std::int32_t result = Note("GetShort");
    return result != 0 ? result : player.TakeShort(*value);
}

std::int32_t ScriptedStream::GetStringLength(std::uint32_t* length) {
    std::int32_t result = Note("GetStringLength");
    if (result == 0) {
        result = player.TakeText(text_);
    }
    *length = claimedLength.value_or(static_cast<std::uint32_t>(text_.size()));
    return result;
}

std::int32_t ScriptedStream::GetStringChars(std::uint32_t length, char16_t* buffer) {
    const std::int32_t result = Note("GetStringChars " + std::to_string(length));
    bufferWasZero = std::all_of(buffer, buffer + length + 1, [](char16_t unit) { return unit == 0; });
    std::copy(text_.begin(), text_.end(), buffer);
    if (overruns) {
        buffer[length] = u'!';
    }
    return result;
}

std::int32_t ScriptedStream::GetGUID(GUID* value) {
    const std::int32_t result = Note("GetGUID");
    return result != 0 ? result : player.TakeGuid(*value);
}

std::int32_t ScriptedStream::GetVariant(VARIANT* value) {
    std::uint16_t type = 0;
    variant = value;
    const std::int32_t result = Note("GetVariant");
    return result != 0 ? result : player.TakeVariant(type);
}

std::int32_t ScriptedStream::GetObjectTag(std::uint16_t* tag) {
    const std::int32_t result = Note("GetObjectTag");
    return result != 0 ? result : player.Enter(0, *tag);
}

std::int32_t ScriptedStream::GetEndObject() {
    const std::int32_t result = Note("GetEndObject");
    return result != 0 ? result : player.Leave();
}

}  // namespace KivGenerics::Testing
