#pragma once

#include <utility>

namespace KivBase {

/// The deleter of ReturnPtr for objects that were made with `new`.
template <class T>
struct DeleteC {
    void operator()(T* object) const noexcept { delete object; }
};

/// An owning handle: the object it holds goes when the handle does. Movable, not copyable; empty when it holds null.
template <class T, class Deleter>
class ReturnPtr {
public:
    ReturnPtr() noexcept = default;
    /// Takes the object over.
    explicit ReturnPtr(T* object) noexcept : object_(object) {}
    ReturnPtr(ReturnPtr&& other) noexcept : object_(other.Detach()) {}
    ReturnPtr(const ReturnPtr&) = delete;
    ReturnPtr& operator=(ReturnPtr&& other) noexcept {
        Reset(other.Detach());
        return *this;
    }
    ReturnPtr& operator=(const ReturnPtr&) = delete;
    ~ReturnPtr() { Reset(); }

    T* Get() const noexcept { return object_; }
    T* operator->() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

    /// Gives the object to the caller, who now owns it.
    T* Detach() noexcept { return std::exchange(object_, nullptr); }
    /// Deletes the held object and takes over another one, or none.
    void Reset(T* object = nullptr) noexcept {
        T* const old = std::exchange(object_, object);
        if (old != nullptr && old != object) {
            Deleter()(old);
        }
    }

private:
    T* object_ = nullptr;
};

}  // namespace KivBase
