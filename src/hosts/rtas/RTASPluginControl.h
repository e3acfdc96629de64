// The library's control of one parameter.
#pragma once

#include "platform/rtas/PluginControl.h"

#include <atomic>

namespace LatheExt::RTASPlugin {

class CRTASParamAdapter;

// Takes names, texts and conversions from the adapter, which is not owned, and holds the value that
// the library knows.
class CRTASPluginControl : public CPluginControl {
public:
    CRTASPluginControl(CRTASParamAdapter* adapter, bool isOutput);

    long GetControlNumber() const override;
    long GetValue() const LATHE_REALTIME override;
    void SetValue(long value) LATHE_REALTIME override;
    long GetNumberOfSteps() const override;
    // The present value for a text that can't be read.
    long ConvertStringToValue(const char* text) const override;
    bool IsAutomatable() const override { return true; }
    // With "OUT:" before the name of an output where there is room for more than 12 characters.
    void GetNameOfLength(char* text, long length) const override;
    bool IsContinuous() const override;
    void GetValueString(char* text, long length, long value) const override;

private:
    CRTASParamAdapter* m_Adapter;
    bool m_IsOutput;
    // In the units of the parameter.
    std::atomic<double> m_Value;
};

} // namespace LatheExt::RTASPlugin
