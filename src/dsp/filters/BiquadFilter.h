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
#include "dsp/filters/BiquadCoefficients.h"
#include "dsp/filters/ChannelCursors.h"
#include "dsp/filters/SectionRamp.h"
#include "math/FunctionsComposition.h"

#include <vector>

namespace Lathe::Audio::DSP::Filters {

enum class ESectionFormula;

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

    // A block whose frames another walks through: the section's SetParams of the start, if it is
    // new, and SetRamp, then for some frames after the others either FilterSamples or the
    // coefficients and the history, then SetParams of the end, if it is new.

    // Moves on by some frames, at most SRampFrames::MaxFrames, together with the section of another
    // channel, which has the same formula and as many orders. Gives what the formula takes for the
    // frames behind the current one; the coefficients of the last have then to be set.
    void MovePair(CBiquadFilter& other, SRampFrames& to, int count, int rampOrders) LATHE_REALTIME;
    ESectionFormula GetFormula() const LATHE_REALTIME { return m_Formula; }
    void SetCoefficients(const SBiquadCoefficients& coefficients) LATHE_REALTIME {
        m_Coefficients = coefficients;
        m_CoefficientsChanged = true;
    }
    const SBiquadHistory& GetHistory(int channel) const LATHE_REALTIME {
        return m_History[static_cast<std::size_t>(channel)];
    }
    void SetHistory(int channel, const SBiquadHistory& history) LATHE_REALTIME {
        m_History[static_cast<std::size_t>(channel)] = history;
    }
    // The next samples of the only channel; the output may be the input. With no orders of ramp the
    // coefficients stay.
    void FilterSamples(const float* input, float* output, int count, int rampOrders) LATHE_REALTIME;

protected:
    CBiquadFilter(int channels, ESectionFormula formula);
    CBiquadFilter(const CBiquadFilter& other);

    void OnInit(const CFilterInitInfo& info) override;
    void OnReset() LATHE_REALTIME override;
    void ProcessBlock(const CFilterProcessData& data) LATHE_REALTIME override;

    // Turns the rates of one order (from 1) into an entry of the section's ramp, which moves
    // nothing when their number is another.
    virtual void SetRampOrder(int order, const IConstParamsValues& rates) LATHE_REALTIME = 0;

    // What the ramp begins with. What another section has computed already is taken from there; it
    // may be this one.
    void SetValues(const SSectionValues& values, const CBiquadFilter& known) LATHE_REALTIME;

    CChannelCursors m_Cursors;
    // A recomputation falls on the samples whose index has none of these bits: the ramp counts on
    // its being all of them.
    static constexpr unsigned m_RecomputeMask = 0;
    int m_InputChannels;
    int m_OutputChannels;
    CProcessInfo m_ProcessInfo;
    SBiquadCoefficients m_Coefficients = IdentityCoefficients;
    std::vector<SBiquadHistory> m_History;
    // Seconds; 0.0 when the rate is 0.
    double m_InvSampleRate = 0.0;
    CSectionRamp m_Ramp;
    // Of the last parameters, and of their rates by order: those that rest are asked for again at
    // each end of each block.
    std::array<CKeptGain, 1 + MaxRampOrders> m_KeptGains;

private:
    void WireOutputs();
    // Applies the start values. Returns the orders of the ramp.
    int StartBlock(const IConstFilterPropertiesVariations& variations) LATHE_REALTIME;
    void ProcessFrames(int samples, int rampOrders) LATHE_REALTIME;
    // Calls process(count, getCoefficients(i)) for the frames, in one part or several.
    template <class TProcess>
    void ForFrames(int samples, int rampOrders, TProcess process) LATHE_REALTIME;
    SMovingSection GetMoving() LATHE_REALTIME;
    // The coefficients of the next frames of a ramp, and of the frame behind them.
    void ComputeRamp(SBiquadCoefficients* to, int count, int rampOrders) LATHE_REALTIME;
    SBiquadCoefficients Compute(const SSectionValues& values, const Math::SSinCos& turn) const
        LATHE_REALTIME;
    bool UpdateResponse(Algorithm::CBiquadFrequencyResponse& response) LATHE_REALTIME;

    ESectionFormula m_Formula;
    CKeptTurn m_KeptTurn;
    Algorithm::CBiquadGain m_GainResponse;
    Math::CFunctionsComposition m_GainResponsedB;
    Algorithm::CBiquadPhaseShift m_PhaseResponse;
    // Set on every recomputation, cleared by UpdateOutputs.
    bool m_CoefficientsChanged = false;
    CoreUtilities::TCollection<Core::CDirty, Core::IDirty> m_OutputCurvesDirty{3};
    CoreUtilities::TPointersValueVector<Math::IFunction> m_OutputCurves{3};
};

} // namespace Lathe::Audio::DSP::Filters
