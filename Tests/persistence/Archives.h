#pragma once

#include <functional>
#include <string>
#include <utility>

#include <KivCOMShared/COrvReadArchive.h>
#include <KivCOMShared/COrvSizeArchive.h>
#include <KivCOMShared/COrvWriteArchive.h>

#include "persistence/ArchiveDecoder.h"
#include "persistence/Calls.h"

namespace KivGenerics::Testing {

/// Notes what is written into it.
class RecordingArchive final : public KivCOMShared::COrvWriteArchive {
public:
    std::int32_t WriteShort(std::uint16_t value) override { return Note(ShortCall(value)); }
    std::int32_t WriteDouble(double value) override { return Note(DoubleCall(value)); }
    std::int32_t WriteGUID(const GUID& value) override { return Note(GuidCall(value)); }
    std::int32_t WriteLong(std::int32_t value) override { return Note(LongCall(static_cast<std::uint32_t>(value))); }
    std::int32_t WriteInt64(std::int64_t value) override { return Note(Int64Call(static_cast<std::uint64_t>(value))); }
    std::int32_t WriteWideString(const char16_t* units, std::uint32_t length) override {
        return Note(TextCall(units, length));
    }
    std::int32_t WriteVariant(const VARIANT*) override { return Note("Variant"); }
    std::int32_t BeginObject(std::uint16_t tag) override { return Note(BeginCall(tag)); }
    std::int32_t EndObject() override { return Note("End"); }

    /// What was written, failing calls included.
    Calls calls;
    CallCounter counter;
    /// Called at every call, if there is one.
    std::function<void()> watch;

private:
    std::int32_t Note(std::string call) {
        calls.push_back(std::move(call));
        if (watch) {
            watch();
        }
        return counter.Next();
    }
};

/// Plays a sequence of calls, and notes which operations took them: "ReadLong", "ReadObjectTag 0".
class ScriptedArchive final : public KivCOMShared::COrvReadArchive {
public:
    explicit ScriptedArchive(Calls script) : player(std::move(script)) {}

    std::int32_t ReadShort(std::uint16_t* value) override;
    std::int32_t ReadDouble(double* value) override;
    std::int32_t ReadGUID(GUID* value) override;
    std::int32_t ReadLong(std::int32_t* value) override;
    std::int32_t ReadInt64(std::int64_t* value) override;
    std::int32_t ReadWideString(KivBase::WString& text) override;
    std::int32_t ReadVariant(VARIANT* value) override;
    std::int32_t ReadObjectTag(std::uint16_t expected, std::uint16_t* tag) override;
    std::int32_t ReadExpectedObjectTag(std::uint16_t expected, std::uint16_t* tag) override;
    std::int32_t EndReadObject() override;

    CallPlayer player;
    Calls operations;
    CallCounter counter;

private:
    std::int32_t Note(std::string operation) {
        operations.push_back(std::move(operation));
        return counter.Next();
    }
};

/// What a node reads itself from: a script and the decoder over it.
struct Reading {
    explicit Reading(Calls script) : archive(std::move(script)) {}

    ScriptedArchive archive;
    ArchiveDecoder decoder{&archive};
};

/// Notes what it is told: "Sizes 0 0 0 1 1", and the total of the texts.
class RecordingSizer final : public KivCOMShared::COrvSizeArchive {
public:
    void AddSizes(std::int32_t shorts, std::int32_t doubles, std::int32_t guids, std::int32_t longs,
                  std::int32_t objects) override {
        calls.push_back("Sizes " + std::to_string(shorts) + " " + std::to_string(doubles) + " " +
                        std::to_string(guids) + " " + std::to_string(longs) + " " + std::to_string(objects));
    }

    Calls calls;
};

}  // namespace KivGenerics::Testing
