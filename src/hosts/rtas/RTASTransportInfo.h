// The host's time line for the filter, for one block.
#pragma once

#include "dsp/TransportInfo.h"

class CHostTransport;

namespace LatheExt::RTASPlugin {

// Lives on the audio thread's stack. What costs the host a call and stays for the block is asked
// for once, whether the host answers or not.
class CRTASTransportInfo : public Lathe::Audio::DSP::ITransportInfo {
public:
    // The transport is not owned and may be null: everything is 0 or false then. The sample rate is
    // in hertz.
    CRTASTransportInfo(CHostTransport* transport, double sampleRate) LATHE_REALTIME
        : m_HostTransport(transport),
          m_SampleRate(sampleRate) {}

    double GetTempo() const LATHE_REALTIME override;
    int GetTimeSignatureNumerator() const LATHE_REALTIME override;
    int GetTimeSignatureDenominator() const LATHE_REALTIME override;
    bool IsPlaying() const LATHE_REALTIME override;
    bool IsLooping() const LATHE_REALTIME override;
    // The host doesn't tell.
    bool IsRecording() const LATHE_REALTIME override { return false; }
    long long GetSamplePosition() const LATHE_REALTIME override;
    double GetTimePosition() const LATHE_REALTIME override;
    double GetQuarterNotePosition() const LATHE_REALTIME override;
    double GetBarStart() const LATHE_REALTIME override;
    double GetLoopStart() const LATHE_REALTIME override;
    double GetLoopEnd() const LATHE_REALTIME override;
    // The host's time line has no frames.
    int GetFrameRate() const LATHE_REALTIME override { return 0; }
    double GetFrameOffset() const LATHE_REALTIME override { return 0.0; }

private:
    struct SMeter {
        long m_Numerator = 0;
        long m_Denominator = 0;
    };

    SMeter FetchMeter() const LATHE_REALTIME;
    bool FetchSamplePosition(long long& samples) const LATHE_REALTIME;
    void FetchLoop() const LATHE_REALTIME;
    double FetchBarStart() const LATHE_REALTIME;

    CHostTransport* m_HostTransport;
    mutable bool m_LoopRead = false;
    mutable bool m_BarStartRead = false;
    mutable double m_BarStart = 0.0;
    mutable bool m_Looping = false;
    mutable double m_LoopStart = 0.0;
    mutable double m_LoopEnd = 0.0;
    double m_SampleRate;
};

} // namespace LatheExt::RTASPlugin
