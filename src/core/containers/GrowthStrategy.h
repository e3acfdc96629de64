// How much room a growable vector takes.
#pragma once

namespace Lathe::Core {

// Grows by at least a step; shrinks once more than a step lies unused.
class CStepGrowthStrategy {
public:
    explicit CStepGrowthStrategy(int step = 1) : m_Step(step) {}

    // The wanted capacity for a count, given the present capacity.
    int GetCapacity(int count, int capacity) const {
        if (count > capacity)
            return count > capacity + m_Step ? count : capacity + m_Step;
        return count < capacity - m_Step ? count : capacity;
    }

private:
    int m_Step;
};

// Grows by half, in multiples of four; shrinks once a third lies unused.
class CExpGrowthStrategy {
public:
    int GetCapacity(int count, int capacity) const {
        if (count > capacity) {
            const int grown = capacity / 2 * 3 + capacity % 2 * 3 / 2;
            return RoundUp(count > grown ? count : grown);
        }
        // Through 64 bits: twice a large capacity does not fit an int.
        const auto twoThirds = static_cast<int>(static_cast<long long>(capacity) * 2 / 3);
        return count < twoThirds ? RoundUp(count) : capacity;
    }

private:
    static int RoundUp(int count) { return (count + 3) / 4 * 4; }
};

} // namespace Lathe::Core
