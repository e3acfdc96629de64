// How much room a growable vector takes. A capacity that would not fit an int stops at the largest.
#pragma once

#include <algorithm>
#include <limits>

namespace Lathe::Core {

inline int SaturateCapacity(long long capacity) {
    return static_cast<int>(
        std::min(capacity, static_cast<long long>(std::numeric_limits<int>::max())));
}

// Grows by at least a step; shrinks once more than a step lies unused.
class CStepGrowthStrategy {
public:
    explicit CStepGrowthStrategy(int step = 1) : m_Step(step) {}

    // The wanted capacity for a count, given the present capacity.
    int GetCapacity(int count, int capacity) const {
        if (count > capacity)
            return std::max(count, SaturateCapacity(static_cast<long long>(capacity) + m_Step));
        return count < capacity - m_Step ? count : capacity;
    }

private:
    int m_Step;
};

// Grows by half, in multiples of four; shrinks once a third lies unused.
class CExpGrowthStrategy {
public:
    int GetCapacity(int count, int capacity) const {
        const long long wide = capacity; // Its multiples may not fit an int.
        if (count > capacity)
            return RoundUp(std::max<long long>(count, wide * 3 / 2));
        return count < wide * 2 / 3 ? RoundUp(count) : capacity;
    }

private:
    static int RoundUp(long long count) { return SaturateCapacity((count + 3) / 4 * 4); }
};

} // namespace Lathe::Core
