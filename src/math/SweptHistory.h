// What functions over a history of samples have in common: a ring of samples with their times, and
// the way from a time in the past to the two samples around it.
#pragma once

#include "core/Realtime.h"
#include "core/containers/DynamicVector.h"
#include "core/ownership/Ownership.h"
#include "math/Function.h"

#include <utility>

namespace Lathe::Math {

// No ring is larger, whatever number of points is asked for: at one point each millisecond, this is
// a quarter of an hour.
inline constexpr unsigned MaxSweptPoints = 1U << 20U;

// Null in a ring's entry that holds no sample.
using CSweptCurve = Core::TOwnershipWithClone<const IFunction>;

// I is the function that the subclass is, TSample a double or a CSweptCurve. Times are in seconds:
// those of the samples on any clock, those that are looked up counted back from the newest sample.
// For one thread; a copy is deep.
template <class I, class TSample>
class TSweptHistory : public I {
public:
    bool Serialize(Serialization::IWriteDataStream& output) const override;
    // A stored ring that isn't sound leaves an empty history without room for points, and the
    // default 0.
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

    double GetDuration() const { return m_Duration; }
    // The length of the window, in seconds. Only a note: the owner sets the number of points too.
    void SetDuration(double seconds);
    // Forgets all samples and makes room for at least so many: for the next power of two, and not
    // more than MaxSweptPoints. There is no room before the first call.
    void SetPointsCount(unsigned count);

protected:
    // The entries of the ring around a time, and how far the time lies from the one towards the
    // other.
    struct SSegment {
        int m_Before; // Negative: the time lies outside the history.
        int m_After;
        double m_Fraction;
    };

    explicit TSweptHistory(TSample defaultValue) : m_DefaultValue(std::move(defaultValue)) {}

    // True for a time above the newest one, if there is room.
    bool Accepts(double time) const;
    // Takes the place of the oldest sample in a full ring. Only what Accepts has accepted.
    void Append(double time, TSample sample);
    SSegment Find(double time) const LATHE_REALTIME;

    // What `evaluate` makes of the samples around the time, as a straight line from the one to the
    // other, or of the default.
    template <class TEvaluate>
    double Interpolate(double time, const TEvaluate& evaluate) const LATHE_REALTIME {
        const SSegment segment = Find(time);
        if (segment.m_Before < 0)
            return evaluate(m_DefaultValue);
        const double before = evaluate(m_Values[segment.m_Before]);
        if (segment.m_Before == segment.m_After)
            return before;
        return segment.m_Fraction * (evaluate(m_Values[segment.m_After]) - before) + before;
    }

    TSample m_DefaultValue;

private:
    template <class T>
    using TRing = Core::TDynamicVector<T, Core::CStepGrowthStrategy, Core::TEqualOperatorCopier>;

    // Any index wraps into the ring.
    int Wrap(int index) const LATHE_REALTIME {
        return static_cast<int>(static_cast<unsigned>(index) & m_Mask);
    }
    double GetTime(int index) const LATHE_REALTIME { return m_Times[Wrap(index)]; }
    bool IsSound() const;

    TRing<TSample> m_Values;
    TRing<double> m_Times;
    int m_CurrentIndex = -1;
    unsigned m_Mask = 0;
    int m_PointsCount = 0;
    double m_Duration = 0.0;
    double m_PointsPerSecond = 0.0;
};

extern template class TSweptHistory<IFunction, double>;
extern template class TSweptHistory<IBinaryFunction, CSweptCurve>;

} // namespace Lathe::Math
