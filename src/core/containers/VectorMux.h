// Two vectors seen as one: the elements of the first, then those of the second. They own neither
// and can be re-aimed; both are set before anything is read.
#pragma once

#include "core/containers/Vector.h"

namespace Lathe::CoreUtilities {

template <class I>
class TConstVectorMux : public Containers::IConstVector<I> {
public:
    using Source = Containers::IConstVector<I>;

    TConstVectorMux() = default;
    TConstVectorMux(const Source& first, const Source& second)
        : m_First(&first), m_Second(&second) {}

    void Attach(const Source& first, const Source& second) LATHE_REALTIME {
        m_First = &first;
        m_Second = &second;
    }

    int GetCount() const LATHE_REALTIME override {
        return m_First->GetCount() + m_Second->GetCount();
    }
    const I& GetElement(int index) const LATHE_REALTIME override {
        const int firstCount = m_First->GetCount();
        return index < firstCount ? m_First->GetElement(index)
                                  : m_Second->GetElement(index - firstCount);
    }

private:
    const Source* m_First = nullptr;
    const Source* m_Second = nullptr;
};

template <class I>
class TVectorMux : public Containers::IVector<I> {
public:
    using Source = Containers::IVector<I>;

    TVectorMux() = default;
    TVectorMux(Source& first, Source& second) : m_First(&first), m_Second(&second) {}

    void Attach(Source& first, Source& second) LATHE_REALTIME {
        m_First = &first;
        m_Second = &second;
    }

    int GetCount() const LATHE_REALTIME override {
        return m_First->GetCount() + m_Second->GetCount();
    }
    const I& GetElement(int index) const LATHE_REALTIME override { return Find(index); }
    I& GetElement(int index) LATHE_REALTIME override { return Find(index); }

private:
    I& Find(int index) const LATHE_REALTIME {
        const int firstCount = m_First->GetCount();
        return index < firstCount ? m_First->GetElement(index)
                                  : m_Second->GetElement(index - firstCount);
    }

    Source* m_First = nullptr;
    Source* m_Second = nullptr;
};

template <class V>
class TConstValueVectorMux : public Containers::IConstValueVector<V> {
public:
    using Source = Containers::IConstValueVector<V>;

    TConstValueVectorMux() = default;
    TConstValueVectorMux(const Source& first, const Source& second)
        : m_First(&first), m_Second(&second) {}

    void Attach(const Source& first, const Source& second) LATHE_REALTIME {
        m_First = &first;
        m_Second = &second;
    }

    int GetCount() const LATHE_REALTIME override {
        return m_First->GetCount() + m_Second->GetCount();
    }
    V GetValue(int index) const LATHE_REALTIME override {
        const int firstCount = m_First->GetCount();
        return index < firstCount ? m_First->GetValue(index)
                                  : m_Second->GetValue(index - firstCount);
    }

private:
    const Source* m_First = nullptr;
    const Source* m_Second = nullptr;
};

} // namespace Lathe::CoreUtilities
