#include "containers/SemanticTags.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace KivGenerics {
namespace {

/// Tags from `first` to `last` ask for `slots` slots.
struct SlotRun {
    std::int32_t first;
    std::int32_t last;
    std::int32_t slots;
};

/// One row for each tag from `First` on: the default, but for the runs.
template <std::int32_t First, std::size_t Rows, std::size_t Runs>
constexpr std::array<std::int32_t, Rows> MakeTable(const SlotRun (&runs)[Runs]) {
    std::array<std::int32_t, Rows> table{};
    for (std::int32_t& row : table) {
        row = DefaultMapSlotCount;
    }
    for (const SlotRun& run : runs) {
        for (std::int32_t tag = run.first; tag <= run.last; ++tag) {
            table[static_cast<std::size_t>(tag - First)] = run.slots;
        }
    }
    return table;
}

constexpr SlotRun kRuns100[] = {
    {100, 100, 13}, {101, 101, 3}, {102, 102, 1},  {104, 105, 3},
    {106, 106, 4},  {107, 107, 1}, {110, 110, 14}, {111, 111, 2},
};

constexpr SlotRun kRuns4096[] = {
    {4097, 4097, 1},  {4099, 4099, 4}, {4100, 4100, 10}, {4107, 4107, 16}, {4108, 4108, 3},  {4109, 4109, 1},
    {4110, 4111, 3},  {4112, 4112, 4}, {4113, 4113, 1},  {4114, 4114, 12}, {4124, 4124, 3},  {4145, 4145, 3},
    {4146, 4146, 6},  {4147, 4147, 1}, {4148, 4148, 3},  {4149, 4149, 4},  {4150, 4150, 1},  {4152, 4152, 9},
    {4153, 4154, 4},  {4155, 4155, 2}, {4156, 4156, 1},  {4157, 4157, 2},  {4158, 4162, 1},  {4163, 4163, 7},
    {4164, 4164, 1},  {4176, 4176, 1}, {4177, 4177, 3},  {4178, 4178, 2},  {4179, 4180, 1},  {4195, 4195, 4},
    {4196, 4206, 1},  {4207, 4207, 6}, {4209, 4209, 1},  {4211, 4212, 1},  {4213, 4213, 25}, {4214, 4215, 1},
    {4216, 4216, 4},  {4218, 4218, 2}, {4219, 4219, 1},  {4222, 4222, 2},  {4224, 4224, 9},  {4226, 4226, 4},
    {4228, 4228, 12}, {4256, 4256, 2}, {4261, 4261, 2},  {4262, 4262, 5},  {4263, 4263, 1},  {4264, 4264, 15},
    {4265, 4265, 1},  {4267, 4267, 2}, {4268, 4269, 1},  {4270, 4270, 2},  {4271, 4272, 1},  {4273, 4273, 5},
    {4277, 4278, 1},  {4281, 4281, 3}, {4282, 4282, 2},  {4284, 4284, 5},  {4285, 4285, 2},  {4287, 4288, 1},
    {4295, 4295, 1},  {4297, 4298, 1}, {4299, 4299, 3},  {4336, 4336, 1},  {4338, 4338, 10}, {4340, 4340, 4},
    {4342, 4342, 5},  {4349, 4349, 2}, {4350, 4352, 1},  {4354, 4354, 2},  {4355, 4355, 1},  {4356, 4356, 2},
    {4357, 4358, 1},  {4359, 4359, 2}, {4360, 4360, 6},  {4362, 4362, 1},  {4363, 4363, 4},  {4364, 4364, 1},
    {4365, 4365, 4},  {4366, 4366, 6},
};

// kept-on-purpose: slot-counts-above-16
constexpr SlotRun kRuns28672[] = {
    {28673, 28673, 2},  {28674, 28674, 13}, {28675, 28675, 11}, {28676, 28676, 6},  {28679, 28679, 2},
    {28681, 28682, 3},  {28683, 28683, 1},  {28684, 28684, 13}, {28685, 28685, 4},  {28686, 28686, 3},
    {28687, 28687, 18}, {28688, 28688, 1},  {28689, 28689, 2},  {28691, 28691, 4},  {28694, 28694, 14},
    {28696, 28696, 4},  {28698, 28698, 1},  {28701, 28701, 2},  {28703, 28703, 1},  {28704, 28704, 5},
    {28706, 28706, 2},  {28707, 28707, 7},  {28711, 28711, 13}, {28713, 28713, 2},  {28714, 28714, 4},
    {28717, 28717, 2},  {28719, 28719, 2},  {28720, 28720, 5},  {28725, 28725, 5},  {28727, 28727, 43},
    {28728, 28728, 2},  {28730, 28731, 3},  {28732, 28732, 2},  {28733, 28733, 11}, {28734, 28734, 13},
    {28736, 28736, 3},  {28738, 28738, 1},
};

constexpr auto SlotTable100 = MakeTable<100, 15>(kRuns100);
constexpr auto SlotTable4096 = MakeTable<4096, 272>(kRuns4096);
constexpr auto SlotTable28672 = MakeTable<28672, 72>(kRuns28672);

static_assert(SlotTable100[0] == 13 && SlotTable100[10] == 14 && SlotTable100[14] == 8);
static_assert(SlotTable4096[0] == 8 && SlotTable4096[11] == 16 && SlotTable4096[168] == 15 && SlotTable4096[270] == 6);
static_assert(SlotTable28672[1] == 2 && SlotTable28672[55] == 43 && SlotTable28672[66] == 1);

constexpr bool IsBetween(std::int32_t tag, std::int32_t first, std::int32_t last) noexcept {
    return first <= tag && tag <= last;
}

}  // namespace

int GetSlotCountForSemanticTag(SemanticTag tag) noexcept {
    if (IsBetween(tag, 100, 114)) {
        return SlotTable100[static_cast<std::size_t>(tag - 100)];
    }
    if (IsBetween(tag, 4096, 4367)) {
        return SlotTable4096[static_cast<std::size_t>(tag & 0x1FF)];
    }
    // The range is six tags longer than its table, and stays so: hosts rely on which tags belong to it.
    // kept-on-purpose: tags-past-the-table
    if (IsBetween(tag, 28672, 28749)) {
        const auto row = static_cast<std::size_t>(tag & 0xFF);
        return row < SlotTable28672.size() ? SlotTable28672[row] : DefaultMapSlotCount;
    }
    switch (static_cast<std::int32_t>(tag)) {
        case 2:
        case 0x6100: return 4;
        case 0x6000: return 3;
        case 0x6200:
        case 0x6300: return 1;
        default: return DefaultMapSlotCount;
    }
}

bool TagWantsOverflow(SemanticTag tag) noexcept {
    switch (static_cast<std::int32_t>(tag)) {
        case 4099:
        case 4100:
        case 4106:
        case 4111:
        case 4114:
        case 4144:
        case 4145:
        case 4162: return true;
        default: return false;
    }
}

}  // namespace KivGenerics
