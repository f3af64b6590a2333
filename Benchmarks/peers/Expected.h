#pragma once

#include <cstdint>
#include <vector>

#include "System.h"
#include "Workload.h"

namespace Peers {

/// What a system must find, in a tree or at some places: whoever answers otherwise has not done the work.
struct Expected {
    std::int64_t nodes = 0;  ///< what this library counts: leaves, vectors and maps, with the root
    std::int64_t sum = 0;  ///< without the lengths of GUIDs
    std::int64_t guids = 0;
    std::int64_t elements = 0;  ///< of sets

    std::int64_t SumFor(const System& system) const { return sum + guids * system.GuidLength(); }
};

Expected Expect(const Workload& workload);

/// How many of the places are elements of their sets.
Expected ExpectContained(const Workload& workload, const std::vector<Place>& places);

/// What the records hold at the places.
Expected ExpectLookup(const std::vector<Place>& places);

/// The same after System::Set has been there; places of numbers only.
Expected ExpectAfterSet(const std::vector<Place>& places);

}  // namespace Peers
