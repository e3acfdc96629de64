// The mid/side adapter with its parameter "Stereo Mode".
#pragma once

#include "datamodel/objects/text/EnumToText.h"
#include "dsp/adapters/MidSideFromStereoFilterBase.h"

namespace Lathe::Audio::DSP {

template <class S>
class TMSLRFromStereoFilter : public TMidSideFromStereoFilterBase<S> {
public:
    TMSLRFromStereoFilter(const char* leftLabel, const char* rightLabel, bool modeLast)
        : TMidSideFromStereoFilterBase<S>(leftLabel, rightLabel, modeLast) {
        this->m_ModeInfo[0] =
            CParamInfo(DataModel::Objects::EParamType::Boolean, 0.0, 1.0, 0.0, "Stereo Mode", "",
                       "Left-Right or Mid-Side",
                       new DataModel::Objects::CEnumToText("Stereo;Mid-Side", 0), nullptr);
    }

    TMSLRFromStereoFilter* Clone() const override { return new TMSLRFromStereoFilter(*this); }
};

} // namespace Lathe::Audio::DSP
