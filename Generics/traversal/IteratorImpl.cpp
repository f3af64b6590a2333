#include "traversal/IteratorImpl.h"

#include <algorithm>
#include <new>

#include <KivGenerics/Composite.h>

#include "core/NodeAccess.h"
#include "core/TreeImpl.h"

namespace KivGenerics {

Iterator::Iterator() = default;
Iterator::~Iterator() = default;

void IteratorImpl::Queue::DropFront() noexcept {
    ++front;
    constexpr std::size_t kWorthDropping = 64;
    if (front >= kWorthDropping && front * 2 >= nodes.size()) {
        nodes.erase(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(front));
        front = 0;
    }
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

// The children are appended before their parent is taken, so that a failure leaves the iterator where it was.
Node* IteratorImpl::Next() {
    if (queue_.IsEmpty()) {
        return nullptr;
    }
    Node* const node = queue_.nodes[queue_.front];
    if (IsCompositeType(node->GetType())) {
        AppendChildren(*static_cast<const Composite*>(node));
    }
    queue_.DropFront();
    current_ = node;
    return current_;
}

void IteratorImpl::AppendChildren(const Composite& composite) {
    std::vector<Node*>& nodes = queue_.nodes;
    const std::size_t size = nodes.size();
    try {
        for (Node* child = composite.GetNext(-1); child != nullptr; child = composite.GetNext(child->GetIndex())) {
            nodes.push_back(child);
        }
    } catch (...) {
        nodes.resize(size);
        throw;
    }
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
        iterator = new IteratorImpl(this, NodeAccess::GetTree(*this));
    } catch (const std::bad_alloc&) {
        iterator = nullptr;
    }
    return KivBase::ReturnPtr<Iterator, KivBase::DeleteC<Iterator>>(iterator);
}

}  // namespace KivGenerics
