// The descriptions of an instance's input parameters: Bypass, then those of its filter.
#pragma once

#include "core/containers/VectorMux.h"
#include "dsp/Filter.h"
#include "dsp/FilterInfos.h"

namespace Lathe::Audio::Plugin {

// Parameter 0 is Bypass, and the filter's parameter i is parameter i + 1, for host, MIDI settings
// and presets alike.
class CPluginParamInfos : public CoreUtilities::TConstVectorMux<DSP::IConstParamInfo> {
public:
    // The filter's descriptions are not owned.
    explicit CPluginParamInfos(const DSP::IConstParamInfos& filterInfos);
    CPluginParamInfos(const CPluginParamInfos&) = delete;
    CPluginParamInfos& operator=(const CPluginParamInfos&) = delete;

    // Leaves Bypass alone, for when the filter dies.
    void ForgetFilter();

private:
    DSP::CParamInfos m_BypassParamInfos{1};
    DSP::CParamInfos m_NoParamInfos;
};

} // namespace Lathe::Audio::Plugin
