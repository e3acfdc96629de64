// Vectors of parameter values: as all parameter values travel through filters.
#pragma once

#include "core/containers/DynamicVector.h"
#include "core/containers/Vector.h"
#include "core/containers/VectorMux.h"

#include <array>
#include <vector>

namespace Lathe::Audio::DSP {

using IConstParamsValues = Containers::IConstValueVector<double>;
using IParamsValues = Containers::IValueVector<double>;

// A fixed number of values, with bounds checks: reading beyond the count gives 0.0, writing
// outside it does nothing.
class CParamsValues : public IParamsValues {
public:
    // Copies the values; without any, all are 0.0.
    explicit CParamsValues(int count, const double* values = nullptr);

    int GetCount() const LATHE_REALTIME override { return static_cast<int>(m_Values.size()); }
    double GetValue(int index) const LATHE_REALTIME override {
        return IsInside(index) ? m_Values[static_cast<std::size_t>(index)] : 0.0;
    }
    void SetValue(int index, double value) LATHE_REALTIME override {
        if (IsInside(index))
            m_Values[static_cast<std::size_t>(index)] = value;
    }

private:
    bool IsInside(int index) const LATHE_REALTIME { return index >= 0 && index < GetCount(); }

    std::vector<double> m_Values;
};

// A growable vector without bounds checks.
class CDynamicParamsValues final : public IParamsValues {
public:
    explicit CDynamicParamsValues(int count = 0) { SetCount(count); }

    int GetCount() const LATHE_REALTIME override { return m_Values.GetCount(); }
    double GetValue(int index) const LATHE_REALTIME override { return m_Values[index]; }
    void SetValue(int index, double value) LATHE_REALTIME override { m_Values[index] = value; }

    // Keeps the values, new ones are 0.0; allocates only beyond the largest count so far.
    void SetCount(int count);

private:
    Core::TDynamicVector<double, Core::CStepGrowthStrategy, Core::TMemoryCopier> m_Values;
};

// False, and nothing is copied, when there are more or fewer values than that.
template <std::size_t Count>
bool CopyAll(const IConstParamsValues& values, std::array<double, Count>& to) LATHE_REALTIME {
    if (values.GetCount() != static_cast<int>(Count))
        return false;
    for (std::size_t i = 0; i < Count; ++i)
        to[i] = values.GetValue(static_cast<int>(i));
    return true;
}

using CConstParamsValuesMux = CoreUtilities::TConstValueVectorMux<double>;

} // namespace Lathe::Audio::DSP
