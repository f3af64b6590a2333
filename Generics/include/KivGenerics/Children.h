#pragma once

#include <cstddef>
#include <iterator>

#include <KivGenerics/Composite.h>

namespace KivGenerics {

/// The children of a composite in index order: `for (Node* child : Children(composite))`.
///
/// Null and leaves have none. The next child is looked up by index when the loop goes on, so the current child may be
/// replaced or changed; removing children of a vector inside the loop skips the one that moved up.
class Children {
public:
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Node*;
        using difference_type = std::ptrdiff_t;
        using pointer = Node* const*;
        using reference = Node*;

        Iterator() noexcept = default;
        Iterator(const Composite* composite, Node* child) noexcept : composite_(composite) { Take(child); }

        Node* operator*() const noexcept { return child_; }
        Iterator& operator++() {
            Take(composite_->GetNext(index_));
            return *this;
        }
        Iterator operator++(int) {
            Iterator old = *this;
            ++*this;
            return old;
        }
        friend bool operator==(const Iterator& left, const Iterator& right) noexcept {
            return left.child_ == right.child_;
        }
        friend bool operator!=(const Iterator& left, const Iterator& right) noexcept { return !(left == right); }

    private:
        void Take(Node* child) noexcept {
            child_ = child;
            index_ = child != nullptr ? child->GetIndex() : -1;
        }

        const Composite* composite_ = nullptr;
        Node* child_ = nullptr;
        int index_ = -1;
    };

    explicit Children(const Node* node) noexcept
        : composite_(node != nullptr && IsCompositeType(node->GetType()) ? static_cast<const Composite*>(node)
                                                                         : nullptr) {}

    Iterator begin() const {
        return composite_ != nullptr ? Iterator(composite_, composite_->GetNext(-1)) : Iterator();
    }
    Iterator end() const noexcept { return Iterator(); }

private:
    const Composite* composite_;
};

}  // namespace KivGenerics
