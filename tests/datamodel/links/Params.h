// Parameters with ranges, for tests that join several of them.
#pragma once

#include "datamodel/Journal.h"
#include "datamodel/objects/capture/CaptureParam.h"

namespace Lathe::DataModel::Objects {

struct CRangedParam : CCaptureParam {
    CRangedParam(double min, double max, double value) {
        GetInfo().SetMax(max);
        GetInfo().SetMin(min);
        SetValue(value);
    }
};

// Three parameters to be joined in a ring, from 0 to their maxima.
struct SRing {
    explicit SRing(double a = 100, double b = 100, double c = 100)
        : m_A(0, a, 0), m_B(0, b, 0), m_C(0, c, 0) {}
    // A gesture at the first, and the events that each tells.
    std::string Move(double value) {
        m_A.Capture();
        m_A.SetValue(value);
        m_A.Release();
        return m_JournalA.Take() + ' ' + m_JournalB.Take() + ' ' + m_JournalC.Take();
    }

    CRangedParam m_A, m_B, m_C;
    CJournal m_JournalA{m_A}, m_JournalB{m_B}, m_JournalC{m_C};
};

} // namespace Lathe::DataModel::Objects
