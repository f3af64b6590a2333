#include <KivCOMShared/BlockReadStream.h>
#include <KivGenerics/Exception.h>
#include <KivGenerics/ResultCode.h>

#include "targets/Input.h"
#include "targets/Targets.h"
#include "targets/TreeUse.h"

namespace KivFuzz {
namespace {

constexpr std::int32_t kAtEnd = static_cast<std::int32_t>(0x80000001);

/// A stream that takes its values from the bytes as they come: it knows no types, no objects and no checksums. The tag 0xFFFF
/// is that no object follows; a text's length takes one byte, or, behind 0xFF, four more.
class RawStream final : public KivCOMShared::BlockReadStream {
public:
    explicit RawStream(Input input) noexcept : input_(input) {}

    std::int32_t QueryInterface(const GUID&, void**) override { return KivGenerics::ResultNotImplemented; }
    std::uint32_t AddRef() override { return ++references_; }
    std::uint32_t Release() override { return --references_; }
    std::int32_t GetLong(std::int32_t* value) override { return Take(*value, input_.TakeLong()); }
    std::int32_t GetDouble(double* value) override { return Take(*value, input_.TakeDouble()); }
    std::int32_t GetShort(std::uint16_t* value) override { return Take(*value, input_.TakeShort()); }
    std::int32_t GetStringLength(std::uint32_t* length) override {
        const std::uint8_t first = input_.TakeByte();
        return Take(*length, first < 0xFF ? first : static_cast<std::uint32_t>(input_.TakeNumber(4)));
    }
    std::int32_t GetStringChars(std::uint32_t length, char16_t* buffer) override {
        if (input_.GetCount() / 2 < length) {
            return kAtEnd;
        }
        for (std::uint32_t i = 0; i < length; ++i) {
            buffer[i] = static_cast<char16_t>(input_.TakeShort());
        }
        return 0;
    }
    std::int32_t GetGUID(GUID* value) override { return Take(*value, input_.TakeId()); }
    std::int32_t GetVariant(VARIANT*) override { return KivGenerics::ResultNotImplemented; }
    std::int32_t GetObjectTag(std::uint16_t* tag) override {
        const std::int32_t result = Take(*tag, input_.TakeShort());
        return *tag == 0xFFFF ? KivGenerics::ResultNoObject : result;
    }
    std::int32_t GetEndObject() override { return 0; }

private:
    /// The last value may lack bytes; after it every call fails, so that no load goes on for ever.
    template <class T>
    std::int32_t Take(T& to, T value) noexcept {
        to = value;
        const bool failed = atEnd_;
        atEnd_ = input_.IsEmpty();
        return failed ? kAtEnd : 0;
    }

    Input input_;
    bool atEnd_ = false;
    std::uint32_t references_ = 1;
};

}  // namespace

void RunStream(const std::uint8_t* bytes, std::size_t count) {
    RawStream stream(Input(bytes, count));
    const auto tree = KivGenerics::CreateGenericTree(KivGenerics::EnumOrvObjectType(0));
    try {
        tree->LoadFromStream(&stream);
    } catch (const KivGenerics::Exception&) {
        // A tree may refuse what it is told to hold. What was read up to there stays, and must be sound.
    }
    UseTree(*tree);
}

}  // namespace KivFuzz
