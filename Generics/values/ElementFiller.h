#pragma once

#include <cstddef>
#include <utility>

#include <KivGenerics/SortedChunks.h>

namespace KivGenerics {

/// Takes new elements for a set, in memory of the same origin, and puts them in place of the old ones only when told to: what
/// fails on the way leaves the old ones alone. Elements that come in ascending order cost no search.
///
/// `expected` is the number of elements that will come, if it can be trusted.
template <class Elements>
class ElementFiller {
public:
    explicit ElementFiller(Elements& destination, std::size_t /*expected*/ = 0)
        : destination_(destination), fresh_(destination.key_comp(), destination.get_allocator()) {}

    void Add(typename Elements::value_type element) { fresh_.insert(fresh_.end(), std::move(element)); }
    void Finish() noexcept { destination_.swap(fresh_); }

private:
    Elements& destination_;
    Elements fresh_;
};

template <class Key, class Order>
class ElementFiller<SortedChunks<Key, Order>> {
    using Chunks = SortedChunks<Key, Order>;

public:
    explicit ElementFiller(Chunks& destination, std::size_t expected = 0)
        : destination_(destination), fresh_(destination.GetBuffer()), appender_(fresh_, expected) {}

    void Add(const Key& element) { appender_.Add(element); }
    void Finish() {
        appender_.Flush();
        destination_.Swap(fresh_);
    }

private:
    Chunks& destination_;
    Chunks fresh_;
    typename Chunks::Appender appender_;
};

}  // namespace KivGenerics
