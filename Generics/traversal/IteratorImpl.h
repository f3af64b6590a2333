#pragma once

#include <cstddef>
#include <vector>

#include <KivBase/NoCopy.h>
#include <KivGenerics/Iterator.h>

namespace KivGenerics {

/// The one implementation of Iterator: a queue of the nodes still to come.
class IteratorImpl final : public Iterator, private KivBase::NoCopy {
public:
    bool HasNext() override;
    Node* Next() override;
    void RemoveCurrent() override;

    /// Throws std::bad_alloc.
    IteratorImpl(Node* start, TreeImpl* tree);

private:
    // One contiguous array; its entries before `front_` have been taken, and are dropped when they are the larger half,
    // so that taking one costs O(1) in the mean.
    struct Queue {
        std::vector<Node*> nodes;
        std::size_t front = 0;

        bool IsEmpty() const noexcept { return front == nodes.size(); }
        void DropFront() noexcept;
        void DropBack(std::size_t count) noexcept;
    };

    void AppendChildren(const Composite& composite);

    Queue queue_;
    Node* current_ = nullptr;
    TreeImpl* tree_;
};

}  // namespace KivGenerics
