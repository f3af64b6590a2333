#pragma once

#include <cstdint>

#include <KivBase/Buffer.h>
#include <KivCOMShared/BlockReadStream.h>
#include <KivCOMShared/BlockWriteStream.h>
#include <KivCOMShared/COrvWriteArchive.h>

#include "targets/Input.h"

namespace KivFuzz {

/// Which call of a host's fails, and how.
class Fault {
public:
    /// Of the input: the number of the call, its result, and whether all that follow fail, too.
    explicit Fault(Input& input);

    /// Counts one call; 0, or the result that it is to have.
    std::int32_t Next() noexcept;
    std::int32_t GetCode() const noexcept { return code_; }
    bool IsForGood() const noexcept { return forGood_; }
    bool HasStruck() const noexcept { return calls_ > at_; }

private:
    std::uint32_t at_;
    std::int32_t code_;
    bool forGood_;
    std::uint32_t calls_ = 0;
};

/// Takes whatever it is given, but for the calls that fail.
class FailingWriteArchive final : public KivCOMShared::COrvWriteArchive {
public:
    explicit FailingWriteArchive(Fault& fault) noexcept : fault_(fault) {}

    std::int32_t WriteShort(std::uint16_t) override { return fault_.Next(); }
    std::int32_t WriteDouble(double) override { return fault_.Next(); }
    std::int32_t WriteGUID(const GUID&) override { return fault_.Next(); }
    std::int32_t WriteLong(std::int32_t) override { return fault_.Next(); }
    std::int32_t WriteInt64(std::int64_t) override { return fault_.Next(); }
    std::int32_t WriteWideString(const char16_t*, std::uint32_t) override { return fault_.Next(); }
    std::int32_t WriteVariant(const VARIANT*) override { return fault_.Next(); }
    std::int32_t BeginObject(std::uint16_t) override { return fault_.Next(); }
    std::int32_t EndObject() override { return fault_.Next(); }

private:
    Fault& fault_;
};

/// The same as a stream.
class FailingWriteStream final : public KivCOMShared::BlockWriteStream {
public:
    explicit FailingWriteStream(Fault& fault) noexcept : fault_(fault) {}

    std::int32_t QueryInterface(const GUID&, void**) override { return fault_.Next(); }
    std::uint32_t AddRef() override { return ++references_; }
    std::uint32_t Release() override { return --references_; }
    std::int32_t PutLong(std::int32_t) override { return fault_.Next(); }
    std::int32_t PutDouble(double) override { return fault_.Next(); }
    std::int32_t PutShort(std::uint16_t) override { return fault_.Next(); }
    std::int32_t PutWideString(const char16_t*, std::uint32_t) override { return fault_.Next(); }
    std::int32_t PutGUID(const GUID&) override { return fault_.Next(); }
    std::int32_t PutVariant(const VARIANT*) override { return fault_.Next(); }
    std::int32_t PutBeginObject(std::uint16_t) override { return fault_.Next(); }
    std::int32_t PutEndObject() override { return fault_.Next(); }

private:
    Fault& fault_;
    std::uint32_t references_ = 1;
};

/// Hands on what another stream reads, but for the calls that fail.
class FailingReadStream final : public KivCOMShared::BlockReadStream {
public:
    FailingReadStream(Fault& fault, KivCOMShared::BlockReadStream& inner) noexcept : fault_(fault), inner_(inner) {}

    std::int32_t QueryInterface(const GUID&, void**) override { return fault_.Next(); }
    std::uint32_t AddRef() override { return ++references_; }
    std::uint32_t Release() override { return --references_; }
    std::int32_t GetLong(std::int32_t* value) override { return Or(&BlockReadStream::GetLong, value); }
    std::int32_t GetDouble(double* value) override { return Or(&BlockReadStream::GetDouble, value); }
    std::int32_t GetShort(std::uint16_t* value) override { return Or(&BlockReadStream::GetShort, value); }
    std::int32_t GetStringLength(std::uint32_t* length) override {
        return Or(&BlockReadStream::GetStringLength, length);
    }
    std::int32_t GetStringChars(std::uint32_t length, char16_t* units) override {
        return Or(&BlockReadStream::GetStringChars, length, units);
    }
    std::int32_t GetGUID(GUID* value) override { return Or(&BlockReadStream::GetGUID, value); }
    std::int32_t GetVariant(VARIANT* value) override { return Or(&BlockReadStream::GetVariant, value); }
    std::int32_t GetObjectTag(std::uint16_t* tag) override { return Or(&BlockReadStream::GetObjectTag, tag); }
    std::int32_t GetEndObject() override { return Or(&BlockReadStream::GetEndObject); }

private:
    template <class Call, class... Arguments>
    std::int32_t Or(Call call, Arguments... arguments) {
        const std::int32_t result = fault_.Next();
        return result != 0 ? result : (inner_.*call)(arguments...);
    }

    Fault& fault_;
    KivCOMShared::BlockReadStream& inner_;
    std::uint32_t references_ = 1;
};

/// While it lives, memory of new forests runs out as the fault says: their buffers answer null, or are not made at all. One at a
/// time.
class FailingBuffers {
public:
    explicit FailingBuffers(Fault& fault) noexcept;
    ~FailingBuffers();
    FailingBuffers(const FailingBuffers&) = delete;
    FailingBuffers& operator=(const FailingBuffers&) = delete;

private:
    KivBase::BufferFactory former_;
};

}  // namespace KivFuzz
