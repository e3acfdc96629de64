#include "dsp/values/ParamsValues.h"

#include <algorithm>

namespace Lathe::Audio::DSP {

CParamsValues::CParamsValues(int count, const double* values)
    : m_Values(static_cast<std::size_t>(std::max(count, 0))) {
    if (values)
        std::copy_n(values, m_Values.size(), m_Values.begin());
}

void CDynamicParamsValues::SetCount(int count) {
    const int old = m_Values.GetCount();
    m_Values.SetCount(count);
    for (int i = old; i < count; ++i)
        m_Values[i] = 0.0;
}

} // namespace Lathe::Audio::DSP
