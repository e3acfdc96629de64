// A buffer whose size is a power of two, so that an index wraps by a mask.
#pragma once

#include <bit>
#include <cstddef>
#include <memory>

namespace Lathe::Containers {

template <class T>
class TCircularBuffer {
public:
    // Rounds up to the next power of two; 0 gives 1 and 1 gives 2. The contents are unspecified
    // after a change of size.
    void SetSize(int size) {
        const std::size_t rounded =
            size <= 0 ? 1 : std::bit_ceil(static_cast<std::size_t>(size < 2 ? 2 : size));
        if (rounded == m_Size)
            return;
        m_Data.reset(new T[rounded]);
        m_Size = rounded;
    }

    int GetSize() const { return static_cast<int>(m_Size); }
    int GetMask() const { return static_cast<int>(m_Size) - 1; }
    T* GetData() { return m_Data.get(); }
    const T* GetData() const { return m_Data.get(); }

    // Any index wraps into the buffer.
    T& operator[](int index) { return m_Data[Wrap(index)]; }
    const T& operator[](int index) const { return m_Data[Wrap(index)]; }

private:
    std::size_t Wrap(int index) const { return static_cast<std::size_t>(index) & (m_Size - 1); }

    std::unique_ptr<T[]> m_Data;
    std::size_t m_Size = 0;
};

} // namespace Lathe::Containers
