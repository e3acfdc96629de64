#include "dsp/filters/ResponseCurves.h"

#include "math/FunctionsLibrary.h"

namespace Lathe::Audio::DSP::Filters {

using DataModel::Objects::EParamType;
using Math::FunctionsLibrary::FromdB;

namespace {

CParamInfo DescribeResponseAxis(EResponse response, const char* linearGainUnit) {
    switch (response) {
    case EResponse::Gain:
        return CParamInfo(EParamType::Float, FromdB(-40.0), FromdB(40.0), FromdB(0.0), "Gain",
                          linearGainUnit, "", nullptr, nullptr);
    case EResponse::GaindB:
        return CParamInfo(EParamType::Float, -40.0, 40.0, 0.0, "Gain", "dB", "", nullptr, nullptr);
    default:
        return CParamInfo(EParamType::Float, 0.0, 1.0, 0.0, "Phase", "", "", nullptr, nullptr);
    }
}

} // namespace

const CParamInfo& GetFrequencyAxis() {
    static const CParamInfo axis(EParamType::Float, 20.0, 22000.0, 20.0, "Frequency", "Hz", "",
                                 nullptr, nullptr);
    return axis;
}

void DescribeResponse(CCurveInfo& info, const char* name, const CParamInfo& frequency,
                      EResponse response, const char* linearGainUnit) {
    info.SetName(name);
    info.SetXInfo(frequency);
    info.SetYInfo(DescribeResponseAxis(response, linearGainUnit));
}

} // namespace Lathe::Audio::DSP::Filters
