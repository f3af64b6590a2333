#include <algorithm>
#include <cstring>
#include <vector>

#include <KivGenerics/ResultCode.h>
#include <KivStorage/Interfaces.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>

#include "persistence/COrvReadBlockArchive.h"
#include "persistence/COrvWriteBlockArchive.h"
#include "storage/Support.h"
#include "targets/HostileItems.h"
#include "targets/Input.h"
#include "targets/Require.h"
#include "targets/Targets.h"

namespace KivFuzz {
namespace {

using KivGenerics::COrvReadBlockArchive;
using KivGenerics::COrvWriteBlockArchive;
using KivStorage::MemoryReadStream;
using KivStorage::MemoryWriteStream;
using StorageTest::Variant;

/// The items that calls can write and read, by the number that the bytes choose them with.
enum class Kind : std::uint8_t { Long, Double, Short, Text, Guid, Variant, Begin, End };

/// An item that was written, and is to be read back.
struct Item {
    Kind kind = Kind::End;
    std::uint64_t number = 0;  // a double's bits, a tag, a length
    GUID id{};
    KivBase::WString text;
    std::uint16_t type = 0;
};

Kind TakeKind(Input& input) noexcept {
    return static_cast<Kind>(input.TakeByte() % 8);
}

/// A few units as they come, or many of one, for a text that crosses blocks.
KivBase::WString TakeText(Input& input) {
    const std::uint8_t length = input.TakeByte();
    if (length < 0xFF) {
        return input.TakeText(length);
    }
    return KivBase::WString(input.TakeNumber(2), static_cast<char16_t>(input.TakeShort()));
}

Item TakeItem(Input& input, Kind kind) {
    Item item;
    item.kind = kind;
    switch (kind) {
        case Kind::Long: item.number = static_cast<std::uint32_t>(input.TakeNumber(4)); break;
        case Kind::Double: item.number = input.TakeNumber(8); break;
        case Kind::Short:
        case Kind::Begin: item.number = input.TakeShort(); break;
        case Kind::Text: item.text = TakeText(input); break;
        case Kind::Guid: item.id = input.TakeId(); break;
        case Kind::Variant:
            item.type = input.TakeByte();
            item.number = input.TakeNumber(8);
            break;
        case Kind::End: break;
    }
    return item;
}

double ToDouble(std::uint64_t bits) noexcept {
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

std::int32_t Put(MemoryWriteStream& stream, const Item& item) {
    switch (item.kind) {
        case Kind::Long: return stream.PutLong(static_cast<std::int32_t>(static_cast<std::uint32_t>(item.number)));
        case Kind::Double: return stream.PutDouble(ToDouble(item.number));
        case Kind::Short: return stream.PutShort(static_cast<std::uint16_t>(item.number));
        case Kind::Text: return stream.PutWideString(item.text.data(), static_cast<std::uint32_t>(item.text.size()));
        case Kind::Guid: return stream.PutGUID(item.id);
        case Kind::Variant: return stream.PutVariant(Variant(item.type, item.number));
        case Kind::Begin: return stream.PutBeginObject(static_cast<std::uint16_t>(item.number));
        case Kind::End: return stream.PutEndObject();
    }
    return 0;
}

/// A stream that has failed answers its first error to everything.
class FirstError {
public:
    void Check(std::int32_t code) {
        Require(code_ >= 0 || code == code_, "A stream that has failed answers something else than its first error.");
        code_ = code;
    }
    bool Has() const noexcept { return code_ < 0; }

private:
    std::int32_t code_ = 0;
};

/// The stream's own interface, the one that every object has, or one that it has not.
GUID InterfaceFor(std::uint8_t choice, const GUID& own) noexcept {
    return choice < 0x80 ? own : choice < 0xC0 ? KivStorage::UnknownInterfaceId : GUID{};
}

/// What no caller should do.
std::int32_t MisuseWriter(MemoryWriteStream& stream, std::uint8_t choice) {
    void* object = nullptr;
    switch (choice % 5) {
        case 0: return stream.PutWideString(nullptr, 1U + choice);
        case 1: return stream.PutVariant(nullptr);
        case 2: return stream.Finish().code;
        case 3: stream.QueryInterface(InterfaceFor(choice, KivStorage::BlockWriteStreamId), &object); break;
        default: stream.QueryInterface(KivStorage::UnknownInterfaceId, nullptr); break;
    }
    if (object != nullptr) {
        stream.Release();
    }
    return stream.GetError().code;
}

/// Takes what is complete, as often as a host likes: one behind the other it is the whole.
void Take(MemoryWriteStream& stream, Bytes& taken) {
    const KivStorage::SavedBytes part = stream.TakeBytes();
    taken.insert(taken.end(), part.begin(), part.end());
    Require(stream.GetBytes().empty(), "What was taken is there still.");
}

/// The items that were taken. The bytes up to 0xFF say what is written; where nothing is misused the data are finished.
std::vector<Item> Write(MemoryWriteStream& stream, Input& input, Bytes& taken) {
    std::vector<Item> items;
    FirstError error;
    std::uint64_t open = 0;
    while (!input.IsEmpty()) {
        const std::uint8_t choice = input.TakeByte();
        if (choice == 0xFF) {
            break;
        }
        if (choice == 0xFE) {
            Take(stream, taken);
            continue;
        }
        if (choice >= 0xF0) {
            error.Check(MisuseWriter(stream, input.TakeByte()));
            continue;
        }
        Item item = TakeItem(input, static_cast<Kind>(choice % 8));
        const std::int32_t code = Put(stream, item);
        error.Check(code);
        if (code >= 0) {
            open += item.kind == Kind::Begin ? 1U : 0U;
            open -= item.kind == Kind::End ? 1U : 0U;
            items.push_back(std::move(item));
        }
    }
    for (; open > 0 && !error.Has(); --open) {
        error.Check(stream.PutEndObject());
        items.emplace_back();
    }
    stream.Finish();
    Take(stream, taken);
    return items;
}

/// One value or object more from the stream; whether it is the one that was written.
bool IsReadBack(MemoryReadStream& stream, const Item& item) {
    std::int32_t number = 0;
    double real = 0;
    std::uint16_t small = 0;
    std::uint32_t length = 0;
    GUID id{};
    switch (item.kind) {
        case Kind::Long: return stream.GetLong(&number) == 0 && static_cast<std::uint32_t>(number) == item.number;
        case Kind::Double: {
            std::uint64_t bits = 0;
            const std::int32_t code = stream.GetDouble(&real);
            std::memcpy(&bits, &real, sizeof bits);
            return code == 0 && bits == item.number;
        }
        case Kind::Short: return stream.GetShort(&small) == 0 && small == item.number;
        case Kind::Text: {
            if (stream.GetStringLength(&length) != 0 || length != item.text.size()) {
                return false;
            }
            KivBase::WString text(length + 1, u'\0');
            const std::int32_t code = stream.GetStringChars(length, &text[0]);
            text.resize(length);
            return code == 0 && text == item.text;
        }
        case Kind::Guid: return stream.GetGUID(&id) == 0 && std::memcmp(&id, &item.id, sizeof id) == 0;
        case Kind::Variant: {
            Variant variant;
            return stream.GetVariant(variant) == 0 && variant.GetType() == item.type;
        }
        case Kind::Begin: return stream.GetObjectTag(&small) == 0 && small == item.number;
        case Kind::End: return stream.GetEndObject() == 0;
    }
    return false;
}

void ReadBack(const Bytes& bytes, const std::vector<Item>& items) {
    KivStorage::ReadLimits limits;
    limits.nesting = 0xFFFFFFF0;
    limits.stringUnits = 0xFFFFFFFF;
    const auto stream = MemoryReadStream::Create(bytes.data(), bytes.size(), limits);
    for (const Item& item : items) {
        Require(IsReadBack(*stream, item), "What was written is read otherwise.");
    }
    Require(stream->Finish().Ok(), "The end of what was written is not found.");
}

std::int32_t MisuseReader(MemoryReadStream& stream, std::uint8_t choice) {
    char16_t unit = 0;
    void* object = nullptr;
    switch (choice % 16) {
        case 0: return stream.GetLong(nullptr);
        case 1: return stream.GetStringChars(1, &unit);
        case 2: return stream.GetStringChars(choice, nullptr);
        case 3: return stream.Finish().code;
        case 4: stream.QueryInterface(InterfaceFor(choice, KivStorage::BlockReadStreamId), &object); break;
        case 5: stream.QueryInterface(KivStorage::UnknownInterfaceId, nullptr); break;
        case 6: return stream.GetDouble(nullptr);
        case 7: return stream.GetShort(nullptr);
        case 8: return stream.GetStringLength(nullptr);
        case 9: return stream.GetGUID(nullptr);
        case 10: return stream.GetVariant(nullptr);
        case 11: return stream.GetObjectTag(nullptr);
        default: static_cast<void>(stream.GetPlace()); break;
    }
    if (object != nullptr) {
        stream.Release();
    }
    return stream.GetError().code;
}

std::int32_t Get(MemoryReadStream& stream, Kind kind) {
    std::int32_t number = 0;
    double real = 0;
    std::uint16_t small = 0;
    std::uint32_t length = 0;
    GUID id{};
    Variant variant;
    switch (kind) {
        case Kind::Long: return stream.GetLong(&number);
        case Kind::Double: return stream.GetDouble(&real);
        case Kind::Short: return stream.GetShort(&small);
        case Kind::Text: return stream.GetStringLength(&length);
        case Kind::Guid: return stream.GetGUID(&id);
        case Kind::Variant: return stream.GetVariant(variant);
        case Kind::Begin: return stream.GetObjectTag(&small);
        case Kind::End: return stream.GetEndObject();
    }
    return 0;
}

void ReadAnyhow(const Bytes& bytes, Input& input) {
    const auto stream = MemoryReadStream::Create(bytes.data(), bytes.size());
    FirstError error;
    while (!input.IsEmpty()) {
        const std::uint8_t choice = input.TakeByte();
        error.Check(choice >= 0xF0 ? MisuseReader(*stream, input.TakeByte())
                                   : Get(*stream, static_cast<Kind>(choice % 8)));
    }
}

/// The items, too, are what the bytes say: no stream of ours would write some of them.
void ReadItemsOfAnybody(Input& input) {
    Bytes items(std::min<std::size_t>(input.TakeByte(), input.GetCount()));
    for (std::uint8_t& byte : items) {
        byte = input.TakeByte();
    }
    ReadAnyhow(FrameItems(items), input);
}

std::int32_t Write(COrvWriteBlockArchive& archive, Input& input) {
    switch (TakeKind(input)) {
        case Kind::Long: return archive.WriteLong(input.TakeLong());
        case Kind::Double: return archive.WriteDouble(input.TakeDouble());
        case Kind::Short: return archive.WriteShort(input.TakeShort());
        case Kind::Text: return archive.WriteString(TakeText(input));
        case Kind::Guid:
            return input.TakeByte() % 2 == 0 ? archive.WriteGUID(input.TakeId())
                                             : archive.WriteInt64(input.TakeInt64());
        case Kind::Variant: return archive.WriteVariant(Variant(input.TakeByte(), input.TakeNumber(8)));
        case Kind::Begin: return archive.BeginObject(input.TakeShort());
        case Kind::End: return archive.EndObject();
    }
    return 0;
}

std::int32_t Read(COrvReadBlockArchive& archive, Input& input) {
    std::int32_t number = 0;
    std::int64_t large = 0;
    double real = 0;
    std::uint16_t small = 0;
    GUID id{};
    KivBase::WString text;
    Variant variant;
    const std::uint8_t choice = input.TakeByte();
    std::uint16_t* const tag = choice < 0xF0 ? &small : nullptr;
    switch (choice % 10) {
        case 0: return archive.ReadLong(&number);
        case 1: return archive.ReadInt64(&large);
        case 2: return archive.ReadDouble(&real);
        case 3: return archive.ReadShort(&small);
        case 4: return archive.ReadGUID(&id);
        case 5: return archive.ReadWideString(text);
        case 6: return archive.ReadVariant(variant);
        case 7: return archive.ReadObjectTag(choice < 0x80 ? std::uint16_t{0} : input.TakeShort(), tag);
        case 8: return archive.ReadExpectedObjectTag(input.TakeShort(), tag);
        default: return archive.EndReadObject();
    }
}

/// The library's own archives, over streams and, as their owners promise never to make them, over none.
void UseArchives(Input& input) {
    const auto out = MemoryWriteStream::Create();
    {
        COrvWriteBlockArchive archive(input.TakeByte() < 0xF0 ? out.Get() : nullptr);
        for (int left = input.TakeByte(); left > 0; --left) {
            Write(archive, input);
        }
    }
    out->Finish();
    const auto in = MemoryReadStream::Create(out->GetBytes().data(), out->GetBytes().size());
    COrvReadBlockArchive archive(input.TakeByte() < 0xF0 ? in.Get() : nullptr);
    while (!input.IsEmpty()) {
        Read(archive, input);
    }
}

}  // namespace

void RunCalls(const std::uint8_t* bytes, std::size_t count) {
    Input input(bytes, count);
    const std::uint8_t choice = input.TakeByte();
    if (choice % 2 == 1) {
        UseArchives(input);
        return;
    }
    if (choice % 4 == 2) {
        ReadItemsOfAnybody(input);
        return;
    }
    const auto out = MemoryWriteStream::Create();
    Bytes written;
    const std::vector<Item> items = Write(*out, input, written);
    if (out->GetError().Ok()) {
        ReadBack(written, items);
    }
    ReadAnyhow(written, input);
}

}  // namespace KivFuzz
