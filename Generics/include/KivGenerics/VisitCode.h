#pragma once

#include <cstdint>

namespace KivGenerics {

/// What a visitor answers for the node it was shown.
enum VisitCode : std::int32_t {
    VisitContinue = 1,  ///< go on
    VisitStop = 2,      ///< abandon the whole walk at once
    /// From the visit before a composite's children: leave out its children and its second visit. Elsewhere as
    /// VisitContinue.
    VisitSkipChildren = 3,
    VisitRemove = 4,  ///< the parent removes the node, with all below it, after the visit returns
};

}  // namespace KivGenerics
