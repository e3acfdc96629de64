// The link that moves a parameter to the value of another one on a straight line over time.
#pragma once

#include "datamodel/links/CaptureObjectTimeLink.h"
#include "datamodel/objects/capture/CaptureObject.h"

namespace Lathe::DataModel::Objects {

class CCaptureParamTimeLink final
    : public TCaptureObjectTimeLink<IConstCaptureParam, ICaptureParam> {
public:
    // 250 ms long, with a tick every 50 ms. The provider is not owned and outlives the link; it
    // runs the ticks on the thread of the source. Ticks of the stopwatch are nanoseconds.
    CCaptureParamTimeLink(
        System::ITimerProvider* timerProvider, IConstCaptureParam* source, ICaptureParam* target,
        System::CPreciseCPUWatch::TickSource getNow = &System::CPreciseCPUWatch::GetNow);
    ~CCaptureParamTimeLink() override {
        StopTimer();
        Disconnect();
    }

protected:
    bool StartStep() override;
    bool Step(double ratio) override;

private:
    // Whether the target, if any, differs from the end.
    bool IsAway() const;

    double m_StartValue = 0.0;
    double m_EndValue = 0.0;
};

} // namespace Lathe::DataModel::Objects
