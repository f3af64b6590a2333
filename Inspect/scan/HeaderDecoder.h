#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KivInspect {

/// What a byte or several of a composite's packed header say.
enum class HeaderFieldKind {
    Tag,           ///< a map's semantic tag
    Count,         ///< how many children there are
    Index,         ///< a child's index; it is a composite
    TypedIndex,    ///< a child's index, of which the kind follows
    Kind,          ///< a child's kind and temporality
    ElementsKind,  ///< the same for all elements of a vector
    Padding,       ///< fills up the last word
};

struct HeaderField {
    HeaderFieldKind kind = HeaderFieldKind::Padding;
    std::uint32_t value = 0;
};

/// A child as the header of its parent announces it: 0 for an object of its own, else the type byte in the upper half and the
/// number of extra words in the lower.
struct TypeCode {
    std::uint16_t code = 0;

    bool IsObject() const noexcept { return code == 0; }
    int GetKind() const noexcept { return code >> 8 & 63; }
    int GetTemporality() const noexcept { return code >> 14; }
    int GetExtraWords() const noexcept { return code & 0xFF; }
};

/// Children at consecutive indexes that are announced alike.
struct KeyRun {
    std::uint32_t first = 0;
    std::uint32_t count = 0;
    TypeCode type;
};

/// Puts a composite's packed header together, byte by byte. Dense maps take no memory for each child.
class HeaderDecoder {
public:
    void BeginMap(bool longCount);
    void BeginVector(bool longCount);

    /// Takes the next byte; true when it completes a field.
    bool Take(std::uint8_t byte);
    const HeaderField& GetField() const noexcept { return field_; }
    /// Whether the header is complete; what follows in its last word is padding.
    bool IsComplete() const noexcept { return step_ == Step::Done; }

    std::uint32_t GetTag() const noexcept { return tag_; }
    std::uint32_t GetCount() const noexcept { return count_; }
    /// The children, in the order in which they follow.
    const std::vector<KeyRun>& GetRuns() const noexcept { return runs_; }

private:
    enum class Step { Tag, Count, Index, Kind, ElementCount, ElementsKind, Done };

    void Begin(Step step, bool longCount);
    int SizeOf(std::uint8_t first) const noexcept;
    void Complete();
    void CompleteIndex();
    void AddKey(std::uint16_t typeCode);

    Step step_ = Step::Done;
    bool longCount_ = false;
    int size_ = 0;  // of the present field
    int left_ = 0;  // bytes that it still needs
    std::uint32_t value_ = 0;
    std::uint32_t index_ = 0;
    std::uint32_t keysLeft_ = 0;
    std::uint32_t tag_ = 0;
    std::uint32_t count_ = 0;
    HeaderField field_;
    std::vector<KeyRun> runs_;
};

}  // namespace KivInspect
