// Views of a range of another vector, or of its elements as another type. They own nothing; a view
// without a source has no elements.
#pragma once

#include "core/containers/Vector.h"

namespace Lathe::CoreUtilities {

// The range (first, count) of every view below: count -1 means "to the end". A range that reaches
// beyond its source is the caller's fault.
class CVectorRange {
public:
    void Set(int first, int count) LATHE_REALTIME {
        m_First = first;
        m_Count = count;
    }
    int GetIndex(int index) const LATHE_REALTIME { return m_First + index; }
    int GetCount(int sourceCount) const LATHE_REALTIME {
        return m_Count < 0 ? sourceCount - m_First : m_Count;
    }

private:
    int m_First = 0;
    int m_Count = -1;
};

// ISource is I itself, or a class that derives from it.
template <class I, class ISource = I>
class TConstVectorAdapter : public Containers::IConstVector<I> {
public:
    TConstVectorAdapter() = default;
    explicit TConstVectorAdapter(const Containers::IConstVector<ISource>& source, int first = 0,
                                 int count = -1) {
        Attach(source);
        SetRange(first, count);
    }

    void Attach(const Containers::IConstVector<ISource>& source) LATHE_REALTIME {
        m_Source = &source;
    }
    void SetRange(int first, int count) LATHE_REALTIME { m_Range.Set(first, count); }

    int GetCount() const LATHE_REALTIME override {
        return m_Source ? m_Range.GetCount(m_Source->GetCount()) : 0;
    }
    const I& GetElement(int index) const LATHE_REALTIME override {
        return m_Source->GetElement(m_Range.GetIndex(index));
    }

private:
    const Containers::IConstVector<ISource>* m_Source = nullptr;
    CVectorRange m_Range;
};

template <class I, class ISource = I>
class TVectorAdapter : public Containers::IVector<I> {
public:
    TVectorAdapter() = default;
    explicit TVectorAdapter(Containers::IVector<ISource>& source, int first = 0, int count = -1) {
        Attach(source);
        SetRange(first, count);
    }

    void Attach(Containers::IVector<ISource>& source) LATHE_REALTIME { m_Source = &source; }
    void SetRange(int first, int count) LATHE_REALTIME { m_Range.Set(first, count); }

    int GetCount() const LATHE_REALTIME override {
        return m_Source ? m_Range.GetCount(m_Source->GetCount()) : 0;
    }
    const I& GetElement(int index) const LATHE_REALTIME override {
        return m_Source->GetElement(m_Range.GetIndex(index));
    }
    I& GetElement(int index) LATHE_REALTIME override {
        return m_Source->GetElement(m_Range.GetIndex(index));
    }

private:
    Containers::IVector<ISource>* m_Source = nullptr;
    CVectorRange m_Range;
};

template <class V, class VSource = V>
class TConstValueVectorAdapter : public Containers::IConstValueVector<V> {
public:
    TConstValueVectorAdapter() = default;
    explicit TConstValueVectorAdapter(const Containers::IConstValueVector<VSource>& source,
                                      int first = 0, int count = -1) {
        Attach(source);
        SetRange(first, count);
    }

    void Attach(const Containers::IConstValueVector<VSource>& source) LATHE_REALTIME {
        m_Source = &source;
    }
    void SetRange(int first, int count) LATHE_REALTIME { m_Range.Set(first, count); }

    int GetCount() const LATHE_REALTIME override {
        return m_Source ? m_Range.GetCount(m_Source->GetCount()) : 0;
    }
    V GetValue(int index) const LATHE_REALTIME override {
        return m_Source->GetValue(m_Range.GetIndex(index));
    }

private:
    const Containers::IConstValueVector<VSource>* m_Source = nullptr;
    CVectorRange m_Range;
};

} // namespace Lathe::CoreUtilities
