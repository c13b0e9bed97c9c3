#pragma once

#include <utility>

// Holds an object that lives as long as the process: it is never destroyed, so that threads which still run when the
// process ends find it whole. For everything static whose destructor would do something.
template <class T>
class Immortal {
public:
    template <class... Arguments>
    explicit Immortal(Arguments&&... arguments) : object_(new T(std::forward<Arguments>(arguments)...)) {}

    T& operator*() const { return *object_; }
    T* operator->() const { return object_; }

private:
    T* const object_;
};
