#include "traversal/IteratorImpl.h"

#include <algorithm>
#include <new>

#include <KivGenerics/Composite.h>

#include "core/TreeImpl.h"

namespace KivGenerics {

Iterator::Iterator() = default;
Iterator::~Iterator() = default;

Node* IteratorImpl::Queue::Take() {
    Node* const node = nodes[front++];
    constexpr std::size_t kWorthDropping = 64;
    if (front >= kWorthDropping && front * 2 >= nodes.size()) {
        nodes.erase(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(front));
        front = 0;
    }
    return node;
}

void IteratorImpl::Queue::DropBack(std::size_t count) noexcept {
    nodes.resize(nodes.size() - (std::min)(count, nodes.size() - front));
}

IteratorImpl::IteratorImpl(Node* start, TreeImpl* tree) : tree_(tree) {
    if (start != nullptr) {
        queue_.nodes.push_back(start);
    }
}

bool IteratorImpl::HasNext() {
    return !queue_.IsEmpty();
}

Node* IteratorImpl::Next() {
    if (queue_.IsEmpty()) {
        return nullptr;
    }
    current_ = queue_.Take();
    if (IsCompositeType(current_->GetType())) {
        const auto* const composite = static_cast<const Composite*>(current_);
        for (Node* child = composite->GetNext(-1); child != nullptr; child = composite->GetNext(child->GetIndex())) {
            queue_.nodes.push_back(child);
        }
    }
    return current_;
}

void IteratorImpl::RemoveCurrent() {
    if (current_ == nullptr) {
        return;
    }
    tree_->TestWritable();
    int children = 0;
    if (IsCompositeType(current_->GetType())) {
        children = static_cast<Composite*>(current_)->GetSize(TemporalityTemporary);
    }
    current_->Remove();
    // The children are the last entries of the queue: Next appended them when it came to their parent.
    queue_.DropBack(static_cast<std::size_t>(children));
    current_ = nullptr;
}

KivBase::ReturnPtr<Iterator, KivBase::DeleteC<Iterator>> Node::GetIterator() {
    Iterator* iterator = nullptr;
    try {
        iterator = new IteratorImpl(this, tree_);
    } catch (const std::bad_alloc&) {
        iterator = nullptr;
    }
    return KivBase::ReturnPtr<Iterator, KivBase::DeleteC<Iterator>>(iterator);
}

}  // namespace KivGenerics
