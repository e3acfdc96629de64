#include "math/SweptHistory.h"

#include "core/Differs.h"
#include "core/SaturatingCast.h"
#include "math/Constant.h"
#include "math/FunctionChild.h"
#include "serialization/CollectionSerializers.h"
#include "serialization/StreamValue.h"
#include "serialization/TypedObject.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace Lathe::Math {

namespace {

using namespace Serialization;

constexpr int Version = 1;
constexpr const char* DefaultValueKey = "defaultValue";

// The default of either kind of sample, and the forms in which it is stored.

void SetZero(double& value) {
    value = 0.0;
}
void SetZero(CSweptCurve& curve) {
    curve.Set(new CConstantFunction(0.0), true);
}

bool WriteDefault(IWriteDataStream& output, double value) {
    return WriteValue(output, DefaultValueKey, value);
}
bool WriteDefault(IWriteDataStream& output, const CSweptCurve& curve) {
    return output.WriteObject(DefaultValueKey, CTypeSerializer(curve.Get()));
}

bool ReadDefault(const IReadDataStream& input, double& value) {
    return ReadValue(input, DefaultValueKey, value);
}
bool ReadDefault(const IReadDataStream& input, CSweptCurve& curve) {
    TFunctionReader<IFunction> reader(curve);
    const bool read = input.ReadObject(DefaultValueKey, reader);
    if (!curve)
        SetZero(curve); // A stored null reads well.
    return read;
}

// An entry of a ring as an object of the stream.

CConstantValue MakeWriter(double value) {
    return CConstantValue(value);
}
CTypeSerializer MakeWriter(const CSweptCurve& curve) {
    return CTypeSerializer(curve.Get());
}

class CNumberReader : public IDeSerialize {
public:
    explicit CNumberReader(double& number) : m_Number(number) {}
    bool DeSerialize(const IReadDataStream& input) override {
        return ReadValueOrDefault(input, "value", m_Number, 0.0);
    }

private:
    double& m_Number;
};

CNumberReader MakeReader(double& value) {
    return CNumberReader(value);
}
TFunctionReader<IFunction> MakeReader(CSweptCurve& curve) {
    return TFunctionReader<IFunction>(curve);
}

// New entries are 0 or null; the samples of those that go are freed.
template <class TRing>
void Resize(TRing& ring, int count) {
    const int old = ring.GetCount();
    const auto clear = [&ring](int first, int end) {
        for (int i = first; i < end; ++i)
            ring[i] = {};
    };
    clear(count, old);
    ring.SetCount(count, true);
    clear(old, count);
}

// The ring as the vector that the serialisers write and fill.
template <class TRing>
class TStoredRing {
public:
    explicit TStoredRing(TRing& ring) : m_Ring(ring) {}

    int GetCount() const { return m_Ring.GetCount(); }
    void SetCount(int count) { Resize(m_Ring, count); }
    auto GetElement(int index) const { return MakeWriter(m_Ring[index]); }
    auto GetElement(int index) { return MakeReader(m_Ring[index]); }

private:
    TRing& m_Ring;
};

template <class TRing>
bool WriteRing(IWriteDataStream& output, const char* name, const char* entryName,
               const TRing& ring) {
    const TStoredRing<const TRing> stored(ring);
    return output.WriteObject(name, TVectorSerializer(stored, entryName));
}

template <class TRing>
bool ReadRing(const IReadDataStream& input, const char* name, const char* entryName, TRing& ring) {
    if (!input.IsIncremental())
        Resize(ring, 0);
    TStoredRing<TRing> stored(ring);
    TDynamicVectorDeSerializer reader(stored, entryName);
    return ReadObjectOrKeep(input, name, reader);
}

} // namespace

template <class I, class TSample>
bool TSweptHistory<I, TSample>::Serialize(IWriteDataStream& output) const {
    bool result = WriteValue(output, "version", Version);
    result &= WriteRing(output, "values", "value", m_Values);
    result &= WriteRing(output, "times", "time", m_Times);
    result &= WriteValue(output, "currentIndex", m_CurrentIndex);
    result &= WriteValue(output, "mask", static_cast<int>(m_Mask));
    result &= WriteValue(output, "pointsCount", m_PointsCount);
    result &= WriteValue(output, "duration", m_Duration);
    result &= WriteValue(output, "pointsPerSecond", m_PointsPerSecond);
    return WriteDefault(output, m_DefaultValue) && result;
}

template <class I, class TSample>
bool TSweptHistory<I, TSample>::DeSerialize(const IReadDataStream& input) {
    int version = Version;
    bool result = ReadValueOrDefault(input, "version", version, Version);
    result &= ReadRing(input, "values", "value", m_Values);
    result &= ReadRing(input, "times", "time", m_Times);
    result &= ReadValueOrDefault(input, "currentIndex", m_CurrentIndex, 0);
    int mask = static_cast<int>(m_Mask);
    result &= ReadValueOrDefault(input, "mask", mask, 0);
    m_Mask = static_cast<unsigned>(mask);
    result &= ReadValueOrDefault(input, "pointsCount", m_PointsCount, 0);
    result &= ReadValueOrDefault(input, "duration", m_Duration, 0.0);
    result &= ReadValueOrDefault(input, "pointsPerSecond", m_PointsPerSecond, 0.0);
    if (!ReadDefault(input, m_DefaultValue) && !input.IsIncremental()) {
        SetZero(m_DefaultValue);
        result = false;
    }
    if (!IsSound()) {
        Resize(m_Values, 0);
        Resize(m_Times, 0);
        m_CurrentIndex = 0;
        m_Mask = 0;
        m_PointsCount = 0;
        SetZero(m_DefaultValue);
    }
    return result || input.IsIncremental();
}

// Whether every index that the numbers lead to lies in the ring.
template <class I, class TSample>
bool TSweptHistory<I, TSample>::IsSound() const {
    const auto size = static_cast<unsigned>(m_Times.GetCount());
    return m_Values.GetCount() == m_Times.GetCount() && size == m_Mask + 1 && size >= 2 &&
           size <= MaxSweptPoints && std::has_single_bit(size) && m_PointsCount >= 0 &&
           m_PointsCount <= m_Times.GetCount() && m_CurrentIndex < m_Times.GetCount() &&
           m_CurrentIndex >= (m_PointsCount > 0 ? 0 : -1);
}

template <class I, class TSample>
void TSweptHistory<I, TSample>::SetDuration(double seconds) {
    if (Core::Differs(seconds, m_Duration))
        m_Duration = seconds;
}

template <class I, class TSample>
void TSweptHistory<I, TSample>::SetPointsCount(unsigned count) {
    const unsigned size = count == 1 ? 2 : std::bit_ceil(std::min(count, MaxSweptPoints));
    Resize(m_Values, 0);
    Resize(m_Times, 0);
    Resize(m_Values, static_cast<int>(size));
    Resize(m_Times, static_cast<int>(size));
    m_Mask = size - 1;
    m_CurrentIndex = -1;
    m_PointsCount = 0;
}

template <class I, class TSample>
bool TSweptHistory<I, TSample>::Accepts(double time) const {
    if (m_Times.GetCount() == 0 || !std::isfinite(time))
        return false;
    return m_PointsCount == 0 || time > m_Times[m_CurrentIndex];
}

template <class I, class TSample>
void TSweptHistory<I, TSample>::Append(double time, TSample sample) {
    m_CurrentIndex = Wrap(m_CurrentIndex + 1);
    m_PointsCount = std::min(m_PointsCount + 1, m_Times.GetCount());
    m_Values[m_CurrentIndex] = std::move(sample);
    m_Times[m_CurrentIndex] = time;
    if (m_PointsCount >= 2)
        m_PointsPerSecond =
            (m_PointsCount - 1) / (time - GetTime(m_CurrentIndex + 1 - m_PointsCount));
}

template <class I, class TSample>
typename TSweptHistory<I, TSample>::SSegment TSweptHistory<I, TSample>::Find(double time) const {
    constexpr SSegment outside{-1, -1, 0.0};
    const SSegment newest{m_CurrentIndex, m_CurrentIndex, 0.0};
    if (m_PointsCount == 0)
        return outside;
    if (time >= 0.0)
        return newest;
    if (m_PointsCount == 1)
        return outside;
    const int oldest = m_CurrentIndex + 1 - m_PointsCount;
    const double wanted = time + m_Times[m_CurrentIndex];
    // Even samples make the guess right; a stored density can be anything, so that it is limited.
    const int back = std::min(Core::TruncateToInt(time * m_PointsPerSecond + 0.5), 0);
    int i = std::max(m_CurrentIndex + back, oldest);
    while (i < m_CurrentIndex - 1 && wanted > GetTime(i))
        ++i;
    while (wanted < GetTime(i)) {
        if (--i < oldest)
            return outside;
    }
    if (i == m_CurrentIndex)
        return newest; // So near to now that the clock can't tell.
    const double before = GetTime(i);
    return {Wrap(i), Wrap(i + 1), (wanted - before) / (GetTime(i + 1) - before)};
}

template class TSweptHistory<IFunction, double>;
template class TSweptHistory<IBinaryFunction, CSweptCurve>;

} // namespace Lathe::Math
