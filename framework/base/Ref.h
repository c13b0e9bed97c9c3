#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

// Thrown when a member of a nil object is touched. The program never catches it: the framework does, at the edge of
// every event and of every thread.
class NilObjectException : public std::runtime_error {
public:
    explicit NilObjectException(const std::string& reason = "nil object") : std::runtime_error(reason) {}
};

// Base of everything that is shared by reference counting. Make one with New<T>().
class Object : public std::enable_shared_from_this<Object> {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;
};

// A counted reference, which may be nil. Reaching through a nil reference throws NilObjectException. The count is safe
// to change from any thread; the object behind it is as safe as its class says.
template <class T>
class Ref {
public:
    Ref() = default;
    Ref(std::nullptr_t) {}
    explicit Ref(std::shared_ptr<T> object) : object_(std::move(object)) {}
    template <class U>
    requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other) : object_(other.Shared()) {}

    T* operator->() const { return Checked(); }
    T& operator*() const { return *Checked(); }

    bool IsNil() const { return object_ == nullptr; }
    T* Get() const { return object_.get(); }
    const std::shared_ptr<T>& Shared() const { return object_; }

    // Identity, not equality of content.
    template <class U>
    bool operator==(const Ref<U>& other) const {
        return static_cast<const void*>(object_.get()) == static_cast<const void*>(other.Get());
    }
    bool operator==(std::nullptr_t) const { return IsNil(); }

private:
    T* Checked() const {
        if (!object_)
            throw NilObjectException();
        return object_.get();
    }

    std::shared_ptr<T> object_;
};

template <class T, class... Arguments>
Ref<T> New(Arguments&&... arguments) {
    return Ref<T>(std::make_shared<T>(std::forward<Arguments>(arguments)...));
}

// The object itself. A nil one is a nil object failure that tells this reason.
template <class T>
Ref<T> Required(const Ref<T>& object, const std::string& reason) {
    if (object.IsNil())
        throw NilObjectException(reason);
    return object;
}

// A counted reference to the object that runs the calling method.
template <class T>
Ref<T> Self(T* self) {
    return Ref<T>(std::static_pointer_cast<T>(self->shared_from_this()));
}

// A reference that does not hold its object, for the way back from a part to its whole. Nil once the object has gone.
template <class T>
class WeakRef {
public:
    WeakRef() = default;
    WeakRef(const Ref<T>& object) : object_(object.Shared()) {}

    Ref<T> Held() const { return Ref<T>(object_.lock()); }
    Ref<T> operator->() const { return Held(); }

private:
    std::weak_ptr<T> object_;
};
