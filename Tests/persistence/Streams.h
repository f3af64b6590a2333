#pragma once

#include <optional>
#include <string>
#include <utility>

#include <KivCOMShared/BlockReadStream.h>
#include <KivCOMShared/BlockWriteStream.h>

#include "persistence/Calls.h"

namespace KivGenerics::Testing {

/// How often references were taken on a stream of these tests, and given back.
struct References {
    std::uint32_t count = 1;
    int added = 0;
    int released = 0;

    std::uint32_t Add() {
        ++added;
        return ++count;
    }
    std::uint32_t Release() {
        ++released;
        return --count;
    }
    /// True when there was at least one, and all have come back.
    bool AreBalanced() const { return added > 0 && added == released && count == 1; }
};

/// Notes what is put into it: "PutLong 0000002A".
class RecordingStream final : public KivCOMShared::BlockWriteStream {
public:
    std::int32_t QueryInterface(const GUID&, void**) override { return Note("QueryInterface"); }
    std::uint32_t AddRef() override { return references.Add(); }
    std::uint32_t Release() override { return references.Release(); }
    std::int32_t PutLong(std::int32_t value) override {
        return Note("Put" + LongCall(static_cast<std::uint32_t>(value)));
    }
    std::int32_t PutDouble(double value) override { return Note("Put" + DoubleCall(value)); }
    std::int32_t PutShort(std::uint16_t value) override { return Note("Put" + ShortCall(value)); }
    std::int32_t PutWideString(const char16_t* units, std::uint32_t length) override {
        return Note("Put" + TextCall(units, length));
    }
    std::int32_t PutGUID(const GUID& value) override { return Note("Put" + GuidCall(value)); }
    std::int32_t PutVariant(const VARIANT* value) override {
        variant = value;
        return Note("PutVariant");
    }
    std::int32_t PutBeginObject(std::uint16_t tag) override { return Note("Put" + BeginCall(tag)); }
    std::int32_t PutEndObject() override { return Note("PutEnd"); }

    /// What was put, failing calls included.
    Calls calls;
    CallCounter counter;
    References references;
    const VARIANT* variant = nullptr;  // the one that was put last

private:
    std::int32_t Note(std::string call) {
        calls.push_back(std::move(call));
        return counter.Next();
    }
};

/// Plays a sequence of calls, and notes which operations took them: "GetLong", "GetStringChars 5".
class ScriptedStream final : public KivCOMShared::BlockReadStream {
public:
    explicit ScriptedStream(Calls script) : player(std::move(script)) {}

    std::int32_t QueryInterface(const GUID&, void**) override { return Note("QueryInterface"); }
    std::uint32_t AddRef() override { return references.Add(); }
    std::uint32_t Release() override { return references.Release(); }
    std::int32_t GetLong(std::int32_t* value) override;
    std::int32_t GetDouble(double* value) override;
    std::int32_t GetShort(std::uint16_t* value) override;
    std::int32_t GetStringLength(std::uint32_t* length) override;
    std::int32_t GetStringChars(std::uint32_t length, char16_t* buffer) override;
    std::int32_t GetGUID(GUID* value) override;
    std::int32_t GetVariant(VARIANT* value) override;
    std::int32_t GetObjectTag(std::uint16_t* tag) override;
    std::int32_t GetEndObject() override;

    CallPlayer player;
    Calls operations;
    CallCounter counter;
    References references;
    VARIANT* variant = nullptr;  // the place that was filled last
    /// What it says of a text's length, if not the truth.
    std::optional<std::uint32_t> claimedLength;
    /// True when it also fills the unit after the text.
    bool overruns = false;
    /// True when the last buffer for a text came filled with zeros.
    bool bufferWasZero = false;

private:
    std::int32_t Note(std::string operation) {
        operations.push_back(std::move(operation));
        return counter.Next();
    }

    KivBase::WString text_;  // between its length and its units
};

}  // namespace KivGenerics::Testing
