// The stock parameter for values that one thread writes and others read, such as a meter.
#pragma once

#include "core/threads/MTEventProvider.h"
#include "datamodel/objects/ParamInfo.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/objects/capture/CaptureState.h"

#include <atomic>

namespace Lathe::DataModel::Objects {

// Any thread reads and captures. Events run on the thread of the change.
class CMTCaptureParam : public TCaptureState<ICaptureParam, System::CMTEventProvider> {
public:
    // 0 with an empty Float description.
    CMTCaptureParam() = default;
    explicit CMTCaptureParam(const IConstParamInfo& info) { SetInfo(info); }

    // Copies the description and sets the value to its default. Before other threads see the
    // parameter.
    void SetInfo(const IConstParamInfo& info);
    const CParamInfo& GetInfo() const override { return m_Info; }

    double GetValue() const LATHE_REALTIME override {
        return m_Value.load(std::memory_order_relaxed);
    }
    // Limited to the range; the maximum when the range is upside down. A NaN changes nothing.
    void SetValue(double value) LATHE_REALTIME override;
    void Capture() override { BeginCapture(); }
    void Release() override { EndCapture(); }

private:
    CParamInfo m_Info;
    std::atomic<double> m_Value{0.0};
};

} // namespace Lathe::DataModel::Objects
