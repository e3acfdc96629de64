// The stock parameter: a double that stays in the range of its own description.
#pragma once

#include "datamodel/objects/ParamInfo.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/objects/capture/CaptureState.h"

namespace Lathe::DataModel::Objects {

// For one thread at a time. Starts at 0 with an empty Float description: whoever makes it fills
// the description and then sets the default.
class CCaptureParam : public TCaptureState<ICaptureParam> {
public:
    CCaptureParam();
    ~CCaptureParam() override;

    const CParamInfo& GetInfo() const override { return m_Info; }
    // A range that leaves the value outside moves it at once, with a value-changed event.
    CParamInfo& GetInfo() { return m_Info; }
    double GetValue() const override { return m_Value; }
    // Clamped to the range; a NaN gives the maximum, and so does any value when the range is
    // upside down. Not rounded, whatever the type.
    void SetValue(double value) override;
    void Capture() override { BeginCapture(); }
    void Release() override { EndCapture(); }
    // Fires on every SetValue, after the value-changed event if there is one.
    Core::IEventProvider& GetValueSetEvent() const { return m_ValueSet; }

private:
    double Clamp(double value) const;
    void Store(double value);
    void OnInfoChanged() { Store(Clamp(m_Value)); }

    CParamInfo m_Info;
    Core::TCommand<CCaptureParam> m_InfoChangedCommand;
    double m_Value = 0.0;
    mutable Core::CEventProvider m_ValueSet;
};

} // namespace Lathe::DataModel::Objects
