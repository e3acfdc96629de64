// Iteration over containers that have no index, such as hash maps. An iterator starts at the first
// item and dies with any change of its container.
#pragma once

namespace Lathe::Containers {

template <class I>
class IConstIterator {
public:
    virtual bool IsDone() const = 0;
    virtual void Next() = 0;
    // Only while it is not done.
    virtual const I& GetElement() const = 0;
    virtual ~IConstIterator() = default;
};

template <class I>
class IIterator : public virtual IConstIterator<I> {
public:
    using IConstIterator<I>::GetElement;
    virtual I& GetElement() = 0;
};

// Previous of the first item leaves it done, as Next of the last one does.
template <class I>
class I2WaysIterator : public virtual IIterator<I> {
public:
    virtual void Previous() = 0;
};

template <class V>
class IConstValueIterator {
public:
    virtual bool IsDone() const = 0;
    virtual void Next() = 0;
    virtual V GetValue() const = 0;
    virtual ~IConstValueIterator() = default;
};

} // namespace Lathe::Containers
