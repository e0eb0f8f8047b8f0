#pragma once

#include <unknwn.h>
#include <utility>

namespace norvakavlor {

/// Holds one reference to a COM object, or none.
template <class T> class ComPointer {
public:
    ComPointer() = default;
    /// Adds its own reference.
    explicit ComPointer(T* object) : object_(object) {
        if (object_)
            object_->AddRef();
    }
    ComPointer(const ComPointer& other) : ComPointer(other.object_) {}
    ComPointer(ComPointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ~ComPointer() {
        if (object_)
            object_->Release();
    }
    ComPointer& operator=(ComPointer other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    T* get() const { return object_; }
    T* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

    /// Receives a new reference from a call: `factory->make(pointer.receive())`.
    T** receive() {
        *this = ComPointer();
        return &object_;
    }
    /// Gives the reference away.
    T* detach() { return std::exchange(object_, nullptr); }

    /// The same object by another interface; none if it lacks that.
    template <class Other> ComPointer<Other> as() const {
        ComPointer<Other> other;
        if (object_)
            object_->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other.receive()));
        return other;
    }

private:
    T* object_ = nullptr;
};

} // namespace norvakavlor
