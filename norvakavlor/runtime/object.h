#pragma once

#include <cstdint>
#include <type_traits>
#include <utility>

namespace norvakavlor {

class ClassInfo;
template <class T> class Ref;
template <class T, class... Arguments> Ref<T> New(Arguments&&... arguments);

/// The base of every public class and of the collections that they hand out.
/// An object is made by New alone and lives as long as a Ref holds it. The count is not atomic: an object
/// belongs to one thread at a time, while different threads may use different objects.
class Object {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    /// The table of the object's own class.
    const ClassInfo& dynamicClass() const { return classInfo_(); }

    /// What tells this object from another one; an object that stands for another one gives that one's.
    virtual const void* identity() const { return this; }

    /// One word for whoever shows the object to the outside (its Automation wrapper), so that an object
    /// that is handed out twice is the same object there. Not owned.
    void* outside = nullptr;

private:
    template <class T> friend class Ref;
    template <class T, class... Arguments> friend Ref<T> New(Arguments&&... arguments);

    const ClassInfo& (*classInfo_)() = nullptr;
    uint32_t references_ = 0;
};

/// Holds one reference to an object, or none. Copies share the object.
template <class T> class Ref {
public:
    Ref() = default;
    Ref(std::nullptr_t) {}
    explicit Ref(T* object) : object_(object) { acquire(); }
    Ref(const Ref& other) : object_(other.object_) { acquire(); }
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <class U>
    requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other) : object_(other.get()) { acquire(); }
    ~Ref() { release(); }

    Ref& operator=(Ref other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const& { return *object_; }
    /// In `for (auto& item : *list->GetModules())` the result would be gone before the first round: name it.
    T& operator*() const&& = delete;
    explicit operator bool() const { return object_ != nullptr; }
    friend bool operator==(const Ref& left, const Ref& right) { return left.object_ == right.object_; }

private:
    void acquire() {
        if (object_)
            ++static_cast<Object*>(object_)->references_;
    }
    void release() {
        if (T* object = std::exchange(object_, nullptr)) {
            if (--static_cast<Object*>(object)->references_ == 0)
                delete object;
        }
    }

    T* object_ = nullptr;
};

/// Creates an object of a public class: `auto books = New<TextBooks>();`.
template <class T, class... Arguments> Ref<T> New(Arguments&&... arguments) {
    Ref<T> object(new T(std::forward<Arguments>(arguments)...));
    static_cast<Object&>(*object).classInfo_ = &T::classInfo;
    return object;
}

} // namespace norvakavlor
