// The product's filter: two channels of the equaliser, taken as left and right or as mid and side,
// each with settings of its own.
#pragma once

#include "dsp/PluginsFilters/CairnEQ.h"
#include "dsp/adapters/FullStereoFromMonoFilter.h"
#include "dsp/adapters/MSLRFromStereoFilter.h"

namespace PluginsFilters {

// Driven through IFilter alone. Input 0 is "Stereo Mode", then come the six parameters of channel
// (1) and those of channel (2); the output curves are six of each.
class CDualCairnEQ : public DSP::TMSLRFromStereoFilter<DSP::TFullStereoFromMonoFilter<CCairnEQ>> {
public:
    CDualCairnEQ();

    CDualCairnEQ* Clone() const override { return new CDualCairnEQ(*this); }
    const DSP::IConstFilterProductInfo& GetProductInfo() const override;
};

} // namespace PluginsFilters
