#include "dsp/ProcessInfo.h"

namespace Lathe::Audio::DSP {

CProcessInfo::CProcessInfo(int inputs, int outputs, const CInputInfo* inputInfos,
                           const COutputInfo* outputInfos)
    : CIOConfiguration("Main") {
    m_Inputs.SetCount(inputs);
    m_Outputs.SetCount(outputs);
    for (int i = 0; inputInfos && i < inputs; ++i)
        m_Inputs[i].SetName(inputInfos[i].GetName());
    for (int i = 0; outputInfos && i < outputs; ++i)
        m_Outputs[i].SetName(outputInfos[i].GetName());
}

} // namespace Lathe::Audio::DSP
