#include <KivCOMShared/COrvReadArchive.h>
#include <KivGenerics/Exception.h>
#include <KivGenerics/ResultCode.h>

#include "targets/Input.h"
#include "targets/Targets.h"
#include "targets/TreeUse.h"

namespace KivFuzz {
namespace {

/// An archive that answers as the bytes say: most often success, else any result. It fills in a value even when it fails.
class AnyArchive final : public KivCOMShared::COrvReadArchive {
public:
    explicit AnyArchive(Input input) noexcept : input_(input) {}

    std::int32_t ReadShort(std::uint16_t* value) override { return Answer(*value, input_.TakeShort()); }
    std::int32_t ReadDouble(double* value) override { return Answer(*value, input_.TakeDouble()); }
    std::int32_t ReadGUID(GUID* value) override { return Answer(*value, input_.TakeId()); }
    std::int32_t ReadLong(std::int32_t* value) override { return Answer(*value, input_.TakeLong()); }
    std::int32_t ReadInt64(std::int64_t* value) override { return Answer(*value, input_.TakeInt64()); }
    std::int32_t ReadWideString(KivBase::WString& text) override {
        text = input_.TakeText(input_.TakeByte());
        return Result();
    }
    std::int32_t ReadVariant(VARIANT*) override { return Result(); }
    std::int32_t ReadObjectTag(std::uint16_t, std::uint16_t* tag) override { return Answer(*tag, input_.TakeShort()); }
    std::int32_t ReadExpectedObjectTag(std::uint16_t, std::uint16_t* tag) override {
        return Answer(*tag, input_.TakeShort());
    }
    std::int32_t EndReadObject() override { return Result(); }

private:
    template <class T>
    std::int32_t Answer(T& to, T value) noexcept {
        to = value;
        return Result();
    }

    /// Fails at the end of the bytes, so that no load goes on for ever.
    std::int32_t Result() noexcept {
        if (input_.IsEmpty()) {
            return KivGenerics::ResultUnexpected;
        }
        switch (const std::uint8_t choice = input_.TakeByte()) {
            case 0xFF: return input_.TakeLong();
            case 0xFE: return KivGenerics::ResultNoObject;
            case 0xFD: return KivGenerics::ArchiveTypeMismatch;
            case 0xFC: return 0x7FFFFFFF;
            default: return choice < 0xF0 ? 0 : choice;
        }
    }

    Input input_;
};

}  // namespace

void RunArchive(const std::uint8_t* bytes, std::size_t count) {
    AnyArchive archive(Input(bytes, count));
    const auto tree = KivGenerics::CreateGenericTree(KivGenerics::EnumOrvObjectType(0));
    try {
        tree->LoadFromArchive(&archive);
    } catch (const KivGenerics::Exception&) {
        // A tree may refuse what it is told to hold. What was read up to there stays, and must be sound.
    }
    UseTree(*tree);
    CheckRoundTrip(*tree, count % 2 == 0);
}

}  // namespace KivFuzz
