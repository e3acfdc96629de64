#include "datamodel/overtime/CaptureOverTime.h"

#include "core/SaturatingCast.h"
#include "core/threads/TimerProvider.h"
#include "datamodel/objects/ParamInfo.h"
#include "datamodel/overtime/CaptureSurfaceFromCurveOverTime.h"
#include "datamodel/overtime/CurveFromParamOverTime.h"

#include <algorithm>
#include <cmath>

namespace Lathe::DataModel::Objects {

namespace {

constexpr double MillisecondsPerSecond = 1e3;
constexpr double NanosecondsPerSecond = 1e9;

} // namespace

template <class TKind>
TCaptureOverTime<TKind>::TCaptureOverTime(const CSource* source,
                                          System::ITimerProvider* timerProvider,
                                          System::CPreciseCPUWatch::TickSource getNow)
    : m_TimerProvider(timerProvider),
      m_TickCommand(*this, &TCaptureOverTime::OnTick),
      m_Watch(getNow) {
    if (source)
        Connect(*source);
    SetRefreshTime(TKind::DefaultRefreshTime);
    SetDuration(DefaultDuration);
    m_Watch.Start();
}

template <class TKind>
TCaptureOverTime<TKind>::~TCaptureOverTime() {
    m_TimerProvider->RemoveTimer(&m_TickCommand, false);
}

template <class TKind>
void TCaptureOverTime<TKind>::Connect(const CSource& source) {
    m_Source = &source;
    TKind::TakeInfo(source.GetInfo(), m_Info, m_History);
}

template <class TKind>
void TCaptureOverTime<TKind>::SetDuration(int milliseconds) {
    const double duration = std::max(milliseconds, 0);
    m_History.SetDuration(duration / MillisecondsPerSecond);
    m_History.SetPointsCount(static_cast<unsigned>(duration / m_RefreshTime));
    m_Info.SetXInfo(CParamInfo(EParamType::Float, -duration / MillisecondsPerSecond, 0.0, 0.0,
                               "time", "s", nullptr));
    if constexpr (TKind::DurationFiresValueChanged)
        this->NotifyValueChanged();
}

template <class TKind>
int TCaptureOverTime<TKind>::GetDuration() const {
    // Rounded: the seconds may lie a little below what they stand for.
    return Core::TruncateToInt(std::round(m_History.GetDuration() * MillisecondsPerSecond));
}

template <class TKind>
void TCaptureOverTime<TKind>::SetRefreshTime(int milliseconds) {
    milliseconds = std::max(milliseconds, 1);
    m_RefreshTime = milliseconds;
    m_TimerProvider->RemoveTimer(&m_TickCommand, false);
    m_TimerProvider->AddTimer(milliseconds, &m_TickCommand);
    m_History.SetPointsCount(static_cast<unsigned>(GetDuration() / milliseconds));
}

template <class TKind>
int TCaptureOverTime<TKind>::GetRefreshTime() const {
    return Core::TruncateToInt(m_RefreshTime);
}

template <class TKind>
void TCaptureOverTime<TKind>::OnTick() {
    if (!m_Running || !m_Source)
        return;
    const double now = static_cast<double>(m_Watch.GetElapsedTicks()) / NanosecondsPerSecond;
    m_History.AddPoint(now, m_Source->GetValue());
    this->NotifyValueChanged();
}

template class TCaptureOverTime<SCurveFromParam>;
template class TCaptureOverTime<SSurfaceFromCurve>;

} // namespace Lathe::DataModel::Objects
