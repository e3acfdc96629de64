// How many channels a configuration has, for a host that knows no connection without channels.
#pragma once

namespace Lathe::Audio::DSP {
class IIOConfiguration;
}

namespace LatheExt::RTASPlugin {

struct SChannelCounts {
    int m_Inputs;
    int m_Outputs;

    bool operator==(const SChannelCounts&) const = default;
};

// A side without channels takes the number of the other one; two are taken where both have none.
SChannelCounts GetNormalizedCounts(const Lathe::Audio::DSP::IIOConfiguration& configuration);

} // namespace LatheExt::RTASPlugin
