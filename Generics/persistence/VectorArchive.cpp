// How vectors are written, read and sized.

#include <algorithm>
#include <cstddef>

#include <KivCOMShared/COrvSizeArchive.h>
#include <KivGenerics/Vector.h>

#include "core/LeafKinds.h"
#include "core/LeafRun.h"
#include "persistence/BytePacker.h"
#include "persistence/ReadChild.h"
#include "persistence/WriteNode.h"

namespace KivGenerics {
namespace {

// With transient elements none is left out, whatever the count in the header left out. Where all are known to have the
// vector's derived temporality, none is looked at, for the vector is not written otherwise: a great vector is read from memory
// once then, and not once more to count.
// kept-on-purpose: vector-writes-every-element
WrittenChildren GetWritten(const ArchiveWriter& out, bool withTransient) {
    return {withTransient || out.AreVectorsUniform(), TemporalityPersistent};
}

int CountInHeader(Vector& vector, const ArchiveWriter& out, bool withTransient) {
    return out.AreVectorsUniform() ? static_cast<int>(NodeAccess::GetChildren(vector).size())
                                   : vector.GetSize(GetLimit(withTransient));
}

/// Begins a vector whose count does not fit into a word with the type byte.
[[gnu::noinline]] std::int32_t BeginLongVector(const Vector& vector, const ArchiveWriter& out, int count) {
    const std::int32_t result = out.BeginObject(GetObjectTag(vector, kLongVector));
    if (result < 0) {
        return result;
    }
    BytePacker packer(out);
    packer.Put<4>(static_cast<std::uint32_t>(count));
    packer.Put<1>(GetTypeByte(*NodeAccess::GetChildren(vector).front()));
    return packer.Flush();
}

/// A vector whose elements are being written.
struct OpenVector {
    Node* const* next;
    Node* const* end;
};

// One type byte, the first element's, describes them all: Add keeps elements to one kind. `out` is a copy of `writer` that stays
// in registers; what is called gets `writer`.
// kept-on-purpose: vector-type-byte
[[gnu::always_inline]] inline std::int32_t BeginVector(Vector& vector, const ArchiveWriter& out,
                                                       const ArchiveWriter& writer, bool withTransient,
                                                       OpenVector& open) {
    PrefetchBehind(vector);
    const auto& elements = NodeAccess::GetChildren(vector);
    open = {elements.data(), elements.data() + elements.size()};
    const int count = CountInHeader(vector, out, withTransient);
    if (count >= kLongCount) {
        return BeginLongVector(vector, writer, count);
    }
    const std::int32_t result = out.BeginObject(GetObjectTag(vector, NodeTypeVector));
    if (result < 0) {
        return result;
    }
    const std::uint32_t typeByte = count > 0 ? GetTypeByte(*elements.front()) : 0;
    return out.WriteLong(static_cast<std::int32_t>(static_cast<std::uint32_t>(count) << 16 | typeByte << 8));
}

bool MayAppend(const Vector& vector, NodeType type) {
    return vector.IsEmpty() || vector.GetNV(0)->GetType() == type;
}

/// Reads leaves into the room that the vector and the present block have, at most `count`, which is less by them then. A function of
/// its own, so that the loop has the processor's registers to itself.
template <class Leaf, class Values>
[[gnu::noinline]] std::int32_t ReadRun(Vector& vector, Values values, std::uint32_t& count,
                                       EnumOrvGenericsTemporality temporality) {
    TreeImpl& tree = *NodeAccess::GetTree(vector);
    const auto& elements = NodeAccess::GetChildren(vector);
    const std::size_t room = (std::min)(elements.capacity() - elements.size(), std::size_t{count});
    const std::size_t most = LeafRun<Leaf>::Count(tree, room);
    if (most == 0) {
        return ResultSuccess;
    }
    constexpr std::uint32_t kChanges = 2;  // being made, and its temporality
    NodeAccess::NoteTemporalityOfNew(vector, temporality);
    NodeAccess::NoteChild(vector);
    LeafRun<Leaf> run(tree, vector, most, temporality, kChanges);
    count -= static_cast<std::uint32_t>(most);
    auto index = static_cast<int>(elements.size());
    for (const int end = index + static_cast<int>(most); index != end; ++index) {
        Leaf* const leaf = run.Make(index);
        NodeAccess::AppendInRoom(vector, leaf);
        const std::int32_t result = ReadValue(*leaf, values);
        if (result < 0) {
            return result;
        }
    }
    return ResultSuccess;
}

/// Reads leaves of one class into a vector that holds nothing else. They are appended as they come: the count only counts.
template <class Leaf, class Values>
std::int32_t ReadLeaves(Vector& vector, ArchiveDecoder& decoder, Values values, std::uint32_t count,
                        EnumOrvGenericsTemporality temporality) {
    std::int32_t result = ResultSuccess;
    while (result >= 0 && count > 0) {
        NodeAccess::NeedRoom(vector);
        const std::uint32_t before = count;
        if constexpr (TreeImpl::IsPlain<Leaf>) {
            result = ReadRun<Leaf>(vector, values, count, temporality);
        }
        if (count == before) {
            result = ReadNew(NodeAccess::Append<Leaf>(vector), temporality, decoder, false);
            --count;
        }
    }
    return result < 0 ? result : ResultSuccess;
}

std::int32_t ReadNodes(Vector& vector, ArchiveDecoder& decoder, std::uint32_t count, const LeafKind& kind) {
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::int32_t result = ReadChild(decoder, kind.type, kind.temporality, false,
                                              [&](NodeType type, SemanticTag tag) { return vector.Add(type, tag); });
        if (result < 0) {
            return result;
        }
    }
    return ResultSuccess;
}

std::int32_t SkipNodes(ArchiveDecoder& decoder, std::uint32_t count, int extraWords) {
    std::int32_t result = ResultSuccess;
    for (std::uint32_t i = 0; extraWords > 0 && result >= 0 && i < count; ++i) {
        result = SkipWords(decoder, extraWords);
    }
    return result;
}

/// Reads elements that have no objects of their own: leaves, as a rule.
std::int32_t ReadInline(Vector& vector, ArchiveDecoder& decoder, std::uint32_t count, const LeafKind& kind) {
    if (!IsKnownType(kind.type)) {
        return SkipNodes(decoder, count, kind.extraWords);
    }
    return ForScalarKind(
        MayAppend(vector, kind.type) ? kind.type : NodeTypeMap,
        [&](auto leaf) {
            return WithValues(decoder, [&](auto values) {
                return ReadLeaves<typename decltype(leaf)::Leaf>(vector, decoder, values, count, kind.temporality);
            });
        },
        [&] { return ReadNodes(vector, decoder, count, kind); });
}

std::int32_t ReadObjects(Vector& vector, ArchiveDecoder& decoder, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        std::uint16_t objectTag = 0;
        std::int32_t result = decoder.ReadObjectTag(&objectTag);
        if (result != ResultSuccess) {
            return result < 0 ? result : ArchiveTypeMismatch;
        }
        const ObjectKind kind = DecodeObjectTag(objectTag);
        if (kind.type == NodeTypeMap) {
            result = ReadNewMap(decoder, kind.temporality, kind.longCount,
                                [&](SemanticTag tag) { return vector.Add<Map>(tag); });
        } else if (kind.type == NodeTypeVector && MayAppend(vector, kind.type)) {
            result = ReadNew(NodeAccess::Append<Vector>(vector), kind.temporality, decoder, kind.longCount);
        } else {
            result = ReadChild(decoder, kind.type, kind.temporality, kind.longCount,
                               [&](NodeType type, SemanticTag tag) { return vector.Add(type, tag); });
        }
        if (result >= 0) {
            result = decoder.EndReadObject();
        }
        if (result < 0) {
            return result;
        }
    }
    return ResultSuccess;
}

}  // namespace

// Vectors in vectors are gone into without a call for each of a few levels: a processor does not foresee the way back from deep
// calls.
std::int32_t WriteVector(Vector& vector, const ArchiveWriter& writer, bool withTransient) {
    constexpr int kMostOpen = 8;
    const ArchiveWriter out = writer;
    const WrittenChildren written = GetWritten(out, withTransient);
    OpenVector vectors[kMostOpen];
    OpenVector* open = vectors;
    std::int32_t result = BeginVector(vector, out, writer, withTransient, *open);
    while (result >= 0) {
        Node* const* next = open->next;
        Node* const* const end = open->end;
        result = written.areAll ? WriteLeaves<Touch::First>(next, end, AllChildren(), out, withTransient)
                                : WriteLeaves<Touch::First>(next, end, written, out, withTransient);
        if (result < 0) {
            break;
        }
        if (next == end) {
            result = out.EndObject();
            if (open == vectors) {
                break;
            }
            --open;
            continue;
        }
        open->next = next + 1;
        Node& composite = **next;
        if (!written.Has(composite)) {
            continue;
        }
        const bool isOpened = composite.GetType() == NodeTypeVector && open != vectors + kMostOpen - 1;
        result = isOpened ? BeginVector(static_cast<Vector&>(composite), out, writer, withTransient, *++open)
                          : WriteComposite(composite, writer, withTransient);
    }
    return result;
}

std::int32_t Vector::WriteToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient) {
    return WriteVector(*this, archive, withTransient);
}

std::int32_t Vector::ReadFromArchive(ArchiveDecoder& decoder, bool longCount) {
    const ArchiveDecoder::Level level(decoder);
    if (level.IsTooDeep()) {
        return ArchiveNestingTooDeep;
    }
    // A short count and the code stand in four bytes.
    std::uint32_t count = decoder.GetBytes(4);
    std::uint32_t code = count & 0xFFFF;
    if (longCount && !decoder.HasFailed()) {
        code = decoder.GetBytes(2);
    } else {
        count >>= 16;
    }
    if (decoder.HasFailed()) {
        return decoder.GetStatus();
    }
    decoder.Realign();
    return code != 0 ? ReadInline(*this, decoder, count, DecodeTypeCode(code >> 8 | (code & 0xFF) << 8))
                     : ReadObjects(*this, decoder, count);
}

std::int32_t Vector::SizeDefnArchive(KivCOMShared::COrvSizeArchive* sizer, bool withTransient) {
    sizer->AddSizes(0, 0, 0, 1, 1);
    const WrittenChildren written{withTransient, TemporalityPersistent};
    for (Node* const child : children_) {
        if (written.Has(*child)) {
            const std::int32_t result = child->SizeDefnArchive(sizer, withTransient);
            if (result < 0) {
                return result;
            }
        }
    }
    return ResultSuccess;
}

}  // namespace KivGenerics
