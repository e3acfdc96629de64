// Vectors by interface: of objects, reached by reference, and of values. Nothing is bounds-checked
// unless an implementation says so.
#pragma once

#include "core/Realtime.h"

namespace Lathe::Containers {

class IConstCount {
public:
    virtual int GetCount() const LATHE_REALTIME = 0;
    virtual ~IConstCount() = default;
};

class ICount : public virtual IConstCount {
public:
    virtual void SetCount(int count) = 0;
};

template <class I>
class IConstVector : public virtual IConstCount {
public:
    virtual const I& GetElement(int index) const LATHE_REALTIME = 0;
};

template <class I>
class IVector : public virtual IConstVector<I> {
public:
    using IConstVector<I>::GetElement;
    virtual I& GetElement(int index) LATHE_REALTIME = 0;
};

template <class V>
class IConstValueVector : public virtual IConstCount {
public:
    virtual V GetValue(int index) const LATHE_REALTIME = 0;
};

template <class V>
class IValueVector : public virtual IConstValueVector<V> {
public:
    // No call of the audio thread as such: storing a text or an object copies it. Vectors of
    // numbers say otherwise.
    virtual void SetValue(int index, V value) = 0;
};

} // namespace Lathe::Containers
