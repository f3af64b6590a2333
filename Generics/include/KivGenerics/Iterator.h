#pragma once

#include <KivGenerics/Export.h>
#include <KivGenerics/Forward.h>

namespace KivGenerics {

/// A breadth-first walk over a node and everything below it, made by Node::GetIterator.
///
/// Nothing is filtered. The iterator holds plain pointers: of changes to the tree it takes only its own RemoveCurrent.
class KIV_GENERICS_EXPORT Iterator {
public:
    /// True while Next has a node to give.
    virtual bool HasNext() = 0;
    /// The next node, level by level, each level in index order, the start node first; null after the last one.
    /// Throws std::bad_alloc.
    virtual Node* Next() = 0;
    /// Removes the node that Next gave last, with everything below it; does nothing when there is none, or when it has
    /// been removed. Throws ReadOnlyException on a read-only tree.
    virtual void RemoveCurrent() = 0;
    virtual ~Iterator();

protected:
    Iterator();
};

}  // namespace KivGenerics
