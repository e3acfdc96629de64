#include "dsp/PluginsFilters/DualCairnEQ.h"

#include "dsp/FilterProductInfo.h"

namespace PluginsFilters {

CDualCairnEQ::CDualCairnEQ() : TMSLRFromStereoFilter("(1)", "(2)", false) {}

const DSP::IConstFilterProductInfo& CDualCairnEQ::GetProductInfo() const {
    static const DSP::CFilterProductInfo info("Marrow Sound", "Marrow's Cairn EQ (Dual)", "2.0", "",
                                              "Dual Channel 3 bands equalizer", 9, "");
    return info;
}

} // namespace PluginsFilters
