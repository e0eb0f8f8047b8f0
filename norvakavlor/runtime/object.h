#pragma once

#include <cstdint>
#include <type_traits>
#include <utility>

namespace norvakavlor {

class [[gnu::visibility("default")]] Object;

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

    /// A word for whoever wraps the object for clients (its Automation wrapper), so that an object
    /// that is handed out twice is the same object there. Not owned. Null when nobody holds the object any
    /// more: its end uses the word then.
    void* wrapper = nullptr;

private:
    template <class T> friend class Ref;
    template <class T, class... Arguments> friend Ref<T> New(Arguments&&... arguments);

    /// Ends an object that nobody holds any more. Objects that its end sets free end after it, one after the
    /// other: a chain of any length needs no stack.
    static void end(Object* object) noexcept;

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
                Object::end(object);
        }
    }

    T* object_ = nullptr;
};

/// A reference that always holds an object: a null Ref in its place makes a new one. For collections that may
/// be set: `exam->Questions = other->Questions` shares, `exam->Questions = nullptr` begins an empty one. A
/// new object is made when it is first asked for: most lists of most questions stay empty.
template <class T> class NotNull {
public:
    NotNull() = default;
    NotNull(const NotNull& other) : object_(other.object()) {}
    NotNull(Ref<T> object) : object_(std::move(object)) {}
    ~NotNull() = default;
    NotNull& operator=(NotNull other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    operator const Ref<T>&() const { return object(); }
    T* get() const { return object().get(); }
    T* operator->() const { return get(); }
    T& operator*() const { return *get(); }
    friend bool operator==(const NotNull& left, const NotNull& right) {
        return left.object() == right.object();
    }

    /// The object for who only reads it; null while nobody has asked for it, so that it is as a new one.
    const T* ifMade() const { return object_.get(); }

private:
    const Ref<T>& object() const {
        if (!object_)
            object_ = New<T>();
        return object_;
    }

    mutable Ref<T> object_;
};

/// Creates an object of a public class: `auto books = New<TextBooks>();`.
template <class T, class... Arguments> Ref<T> New(Arguments&&... arguments) {
    Ref<T> object(new T(std::forward<Arguments>(arguments)...));
    static_cast<Object&>(*object).classInfo_ = &T::classInfo;
    return object;
}

} // namespace norvakavlor
