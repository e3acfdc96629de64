// The common base of the second-order sections: state in double around a float signal path,
// coefficients shared by all channels, and a ramp that is exact at every sample.
//
// A block with changes: the start values are applied, each later sample runs on coefficients
// computed anew from values that move by adding and multiplying alone, and the end values are
// applied at last, free of the ramp's rounding. A block without changes recomputes nothing.
#pragma once

#include "core/containers/ValueVector.h"
#include "dsp/BaseCoreDSPFilter.h"
#include "dsp/algorithm/BiquadFrequencyResponse.h"
#include "dsp/filters/ChannelCursors.h"
#include "math/FunctionsComposition.h"

#include <vector>

namespace Lathe::Audio::DSP::Filters {

// y = b1 x1 + b2 x2 + b0 x + a1 y1 + a2 y2: the feedback coefficients are the negated ones of the
// textbooks.
struct SBiquadCoefficients {
    double m_b0 = 1.0;
    double m_b1 = 0.0;
    double m_b2 = 0.0;
    double m_a1 = 0.0;
    double m_a2 = 0.0;
};

// The two previous inputs and outputs of a channel.
struct SBiquadHistory {
    double m_x1 = 0.0;
    double m_x2 = 0.0;
    double m_y1 = 0.0;
    double m_y2 = 0.0;
};

class CBiquadFilter : public CBaseCoreDSPFilter {
public:
    CBiquadFilter& operator=(const CBiquadFilter&) = delete;

    const IProcessInfo& GetProcessInfo() const LATHE_REALTIME override { return m_ProcessInfo; }
    bool UpdateOutputs() LATHE_REALTIME override;
    // Linear gain, gain in dB, phase.
    const IConstCurves& GetOutputCurves() const LATHE_REALTIME override { return m_OutputCurves; }
    IDirtyFlags& GetOutputCurvesDirty() LATHE_REALTIME override { return m_OutputCurvesDirty; }

    // The section's parameters; ignored before Init and when their number is another.
    void OnInputParamsChanged(const IConstParamsValues& values) LATHE_REALTIME override = 0;
    // No samples keep the history.
    void OnSilence(int samples) LATHE_REALTIME override;

    const SBiquadCoefficients& GetCoefficients() const LATHE_REALTIME { return m_Coefficients; }

protected:
    explicit CBiquadFilter(int channels);
    CBiquadFilter(const CBiquadFilter& other);

    // The first room is the current value, the others are ramp orders.
    static constexpr int MaxRampOrders = 2;

    void OnInit(const CFilterInitInfo& info) override;
    void OnReset() LATHE_REALTIME override;
    void ProcessBlock(const CFilterProcessData& data) LATHE_REALTIME override;

    // Turns the rates of one order (from 1) into an entry of the section's ramp, which moves
    // nothing when their number is another.
    virtual void SetRampOrder(int order, const IConstParamsValues& rates) LATHE_REALTIME = 0;
    // The section loop of a block that ramps: ProcessRamped with the section's own ramp.
    virtual void ProcessRampedFrames(int samples, int rampOrders) LATHE_REALTIME = 0;

    // For the array of a section's values, with Step(rates), and the function from its current
    // values to coefficients; see BiquadRamp.h.
    template <class TRamp, class TComputeCoefficients>
    void ProcessRamped(TRamp& ramp, int samples, int rampOrders,
                       TComputeCoefficients computeCoefficients) LATHE_REALTIME;

    void SetCoefficients(const SBiquadCoefficients& coefficients) LATHE_REALTIME {
        m_Coefficients = coefficients;
        m_CoefficientsChanged = true;
    }

    CChannelCursors m_Cursors;
    // A recomputation falls on the samples whose index has none of these bits: on all of them.
    unsigned m_RecomputeMask = 0;
    int m_InputChannels;
    int m_OutputChannels;
    CProcessInfo m_ProcessInfo;
    SBiquadCoefficients m_Coefficients;
    std::vector<SBiquadHistory> m_History;
    // Seconds; 0.0 when the rate is 0.
    double m_InvSampleRate = 0.0;

private:
    void WireOutputs();
    void ProcessSteadyFrames(int samples) LATHE_REALTIME;
    // The next frames, each with coefficients of its own.
    void ProcessMovingFrames(const SBiquadCoefficients* coefficients, int samples) LATHE_REALTIME;
    template <class TGetCoefficients>
    void ProcessFrames(int samples, TGetCoefficients getCoefficients) LATHE_REALTIME;
    bool UpdateResponse(Algorithm::CBiquadFrequencyResponse& response) LATHE_REALTIME;

    Algorithm::CBiquadGain m_GainResponse;
    Math::CFunctionsComposition m_GainResponsedB;
    Algorithm::CBiquadPhaseShift m_PhaseResponse;
    // Set on every recomputation, cleared by UpdateOutputs.
    bool m_CoefficientsChanged = false;
    CoreUtilities::TCollection<Core::CDirty, Core::IDirty> m_OutputCurvesDirty{3};
    CoreUtilities::TPointersValueVector<Math::IFunction> m_OutputCurves{3};
};

} // namespace Lathe::Audio::DSP::Filters
