// One parameter of the instance as the host moves it and hears of it.
//
// Knob turned in the editor, or moved by MIDI: SetValue, the host hears of it and answers at once
// through SetFromHost, which finds nothing new; then the value-changed event. Automation played by
// the host: SetFromHost, then the value-changed event.
#pragma once

#include "core/threads/MTEventProvider.h"
#include "datamodel/objects/ParamInfo.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/objects/capture/CaptureState.h"

#include <atomic>

class CProcess;

namespace Lathe::Audio::Plugin {
class IMIDICCSetting;
}

namespace LatheExt::RTASPlugin {

using Lathe::DataModel::Objects::CParamInfo;
using Lathe::DataModel::Objects::ICaptureParam;
using Lathe::DataModel::Objects::IConstParamInfo;

// The parameter's MIDI setting maps its values to the host's integers, so that a controller and
// automation share one range and one curve. Any thread; the last store wins.
class CRTASParamAdapter
    : public Lathe::DataModel::TCaptureState<ICaptureParam, Lathe::System::CMTEventProvider> {
public:
    // Before anything else, and before other threads see the adapter: copies the description, takes
    // its default as value. The process and the setting are not owned.
    void Setup(CProcess* process, const IConstParamInfo& info,
               const Lathe::Audio::Plugin::IMIDICCSetting& setting, int controlNumber);

    const CParamInfo& GetInfo() const override { return m_Info; }
    // The library's, from 1.
    int GetControlNumber() const { return m_ControlNumber; }

    double GetValue() const LATHE_REALTIME override {
        return m_Value.load(std::memory_order_relaxed);
    }
    // The host hears of it. Neither an equal value nor a NaN is a change.
    void SetValue(double value) LATHE_REALTIME override;
    // The host's session stays unchanged, but its control shows the value.
    void SetValueQuietly(double value) LATHE_REALTIME;
    // Does nothing when the present value already is that integer.
    void SetFromHost(long value) LATHE_REALTIME;
    void Capture() override;
    void Release() override;

    long ToHost(double value) const LATHE_REALTIME;
    double FromHost(long value) const LATHE_REALTIME;

private:
    using Tell = void (CProcess::*)(long control, long value);
    void Replace(double value, Tell tell) LATHE_REALTIME;

    int m_ControlNumber = 0;
    CProcess* m_Process = nullptr;
    CParamInfo m_Info;
    const Lathe::Audio::Plugin::IMIDICCSetting* m_Setting = nullptr;
    std::atomic<double> m_Value{0.0};
};

} // namespace LatheExt::RTASPlugin
