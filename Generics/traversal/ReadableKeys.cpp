#include "traversal/ReadableKeys.h"

namespace KivGenerics {
namespace {

/// Tags from `first` to `last` have the messages from `message` on. The first row that fits holds.
struct MessageRange {
    std::uint32_t first;
    std::uint32_t last;
    std::uint32_t message;
};

// The ranges overlap in their messages, and stay so: hosts have numbered their texts by this table.
// kept-on-purpose: readable-key-overlap
constexpr MessageRange kRanges[] = {
    {0x6000, 0x6000, 0x6C00},  //
    {0x6100, 0x6100, 0x6C80},  //
    {0x6200, 0x6200, 0x6CFF},  //
    {0x6300, 0x6300, 0x6D00},  //
    {0, 99, 0x6000},           //
    {100, 4095, 0x6010},       //
    {4096, 24575, 0x6030},     //
    {28672, 28730, 0x101},     //
    {28731, 0x7FFFFFFF, 0x3C8 + (28731 - 58)},
};
static_assert(sizeof kRanges / sizeof kRanges[0] == 9 && kRanges[8].message == 0x73C9);

}  // namespace

std::uint32_t GetMessageNumber(SemanticTag tag) noexcept {
    const auto number = static_cast<std::uint32_t>(tag);
    for (const MessageRange& range : kRanges) {
        if (range.first <= number && number <= range.last) {
            return range.message + (number - range.first);
        }
    }
    return 0;
}

}  // namespace KivGenerics
