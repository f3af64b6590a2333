#pragma once

#include <utility>

namespace KivBase {

/// A counted handle: it holds one reference on an object with AddRef and Release, and drops it when it goes.
///
/// Copying takes one more reference, moving none. Empty when it holds null.
/// Threads: different handles to one object may be taken and dropped from several threads; one handle may not.
template <class T>
class ReturnPtrI {
public:
    ReturnPtrI() noexcept = default;
    /// Takes over a reference that the caller has already taken: no AddRef here.
    explicit ReturnPtrI(T* object) noexcept : object_(object) {}
    ReturnPtrI(const ReturnPtrI& other) : object_(other.object_) {
        if (object_ != nullptr) {
            object_->AddRef();
        }
    }
    ReturnPtrI(ReturnPtrI&& other) noexcept : object_(other.Detach()) {}
    ReturnPtrI& operator=(const ReturnPtrI& other) {
        ReturnPtrI copy(other);
        std::swap(object_, copy.object_);
        return *this;
    }
    ReturnPtrI& operator=(ReturnPtrI&& other) noexcept {
        ReturnPtrI taken(std::move(other));
        std::swap(object_, taken.object_);
        return *this;
    }
    ~ReturnPtrI() { Reset(); }

    T* Get() const noexcept { return object_; }
    T* operator->() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

    /// Gives the reference to the caller, who must Release it.
    T* Detach() noexcept { return std::exchange(object_, nullptr); }
    /// Drops the reference; the handle is empty afterwards.
    void Reset() noexcept {
        if (T* const old = Detach()) {
            old->Release();
        }
    }

private:
    T* object_ = nullptr;
};

}  // namespace KivBase
