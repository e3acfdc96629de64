#include "hosts/rtas/ChannelCounts.h"

#include "dsp/ProcessInfo.h"

namespace LatheExt::RTASPlugin {

SChannelCounts GetNormalizedCounts(const Lathe::Audio::DSP::IIOConfiguration& configuration) {
    const int inputs = configuration.GetInputs().GetCount();
    const int outputs = configuration.GetOutputs().GetCount();
    if (inputs == 0 && outputs == 0)
        return {2, 2};
    return {inputs > 0 ? inputs : outputs, outputs > 0 ? outputs : inputs};
}

} // namespace LatheExt::RTASPlugin
