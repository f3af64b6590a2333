#include "persistence/Archives.h"

namespace KivGenerics::Testing {

std::int32_t ScriptedArchive::ReadShort(std::uint16_t* value) {
    const std::int32_t result = Note("ReadShort");
    return result != 0 ? result : player.TakeShort(*value);
}

std::int32_t ScriptedArchive::ReadDouble(double* value) {
    const std::int32_t result = Note("ReadDouble");
    return result != 0 ? result : player.TakeDouble(*value);
}

std::int32_t ScriptedArchive::ReadGUID(GUID* value) {
    const std::int32_t result = Note("ReadGUID");
    return result != 0 ? result : player.TakeGuid(*value);
}

std::int32_t ScriptedArchive::ReadLong(std::int32_t* value) {
    const std::int32_t result = Note("ReadLong");
    return result != 0 ? result : player.TakeLong(*value);
}

std::int32_t ScriptedArchive::ReadInt64(std::int64_t* value) {
    const std::int32_t result = Note("ReadInt64");
    return result != 0 ? result : player.TakeInt64(*value);
}

std::int32_t ScriptedArchive::ReadWideString(KivBase::WString& text) {
    const std::int32_t result = Note("ReadWideString");
    return result != 0 ? result : player.TakeText(text);
}

std::int32_t ScriptedArchive::ReadVariant(VARIANT*) {
    std::uint16_t type = 0;
    const std::int32_t result = Note("ReadVariant");
    return result != 0 ? result : player.TakeVariant(type);
}

std::int32_t ScriptedArchive::ReadObjectTag(std::uint16_t expected, std::uint16_t* tag) {
    const std::int32_t result = Note("ReadObjectTag " + std::to_string(expected));
    return result != 0 ? result : player.Enter(expected, *tag);
}

std::int32_t ScriptedArchive::ReadExpectedObjectTag(std::uint16_t expected, std::uint16_t* tag) {
    std::int32_t result = Note("ReadExpectedObjectTag " + std::to_string(expected));
    if (result == 0) {
        result = player.Enter(expected, *tag);
    }
    return result == 1 ? static_cast<std::int32_t>(0x8004119A) : result;
}

std::int32_t ScriptedArchive::EndReadObject() {
    const std::int32_t result = Note("EndReadObject");
    return result != 0 ? result : player.Leave();
}

}  // namespace KivGenerics::Testing
