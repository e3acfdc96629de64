// The descriptions of frequency response curves, as filters declare them.
#pragma once

#include "dsp/FilterInfos.h"

namespace Lathe::Audio::DSP::Filters {

enum class EResponse { Gain, GaindB, Phase };

// 20 to 22000 Hz, with linear positions.
const CParamInfo& GetFrequencyAxis();

// The Y axis is a linear gain from -40 to 40 dB, a gain in dB over the same range, or a phase in
// turns. The unit is that of a linear gain, which some filters call "dB" too.
void DescribeResponse(CCurveInfo& info, const char* name, const CParamInfo& frequency,
                      EResponse response, const char* linearGainUnit = "");

} // namespace Lathe::Audio::DSP::Filters
