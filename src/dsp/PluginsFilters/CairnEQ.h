// One channel of the equaliser: a pre-gain, a peak band and two shelves, driven by six parameters
// in the user's terms. The shelves sit half a bandwidth below and above the peak.
#pragma once

#include "core/containers/ValueVector.h"
#include "dsp/BaseCoreDSPFilter.h"
#include "dsp/filters/Gain.h"
#include "dsp/filters/PeakFilter.h"
#include "dsp/filters/ShelfFilter.h"
#include "dsp/kernel/Cascade.h"
#include "dsp/properties/FilterPropertiesVariations.h"
#include "math/FunctionsComposition.h"
#include "math/FunctionsOperation.h"

namespace PluginsFilters {

namespace Core = Lathe::Core;
namespace CoreUtilities = Lathe::CoreUtilities;
namespace DSP = Lathe::Audio::DSP;
namespace Math = Lathe::Math;

// Signal order: pre-gain, peak, low shelf, high shelf; only the first stage reads the input, the
// others work in place on the output.
class CCairnEQ final : public DSP::CBaseCoreDSPFilter {
public:
    CCairnEQ();
    CCairnEQ(const CCairnEQ& other);
    CCairnEQ& operator=(const CCairnEQ&) = delete;

    CCairnEQ* Clone() const override { return new CCairnEQ(*this); }
    const DSP::IConstFilterProductInfo& GetProductInfo() const override;
    const DSP::IProcessInfo& GetProcessInfo() const LATHE_REALTIME override;
    void Init(double sampleRate, const DSP::CFilterInitInfo& info) override;
    bool UpdateOutputs() LATHE_REALTIME override;
    // Gain, gain in dB, gain in dB of low, mid and high, phase in turns.
    const DSP::IConstCurves& GetOutputCurves() const LATHE_REALTIME override {
        return m_OutputCurves;
    }
    DSP::IDirtyFlags& GetOutputCurvesDirty() LATHE_REALTIME override { return m_OutputCurvesDirty; }

    // For a cascade that runs this channel beside another.
    void StartCascade(DSP::Kernel::SCascadeChannel& channel,
                      const DSP::IConstFilterPropertiesVariations* variations, int samples)
        LATHE_REALTIME;
    void EndCascade() LATHE_REALTIME;

protected:
    void OnInputParamsChanged(const DSP::IConstParamsValues& values) LATHE_REALTIME override;
    void OnSilence(int samples) LATHE_REALTIME override;
    void OnReset() LATHE_REALTIME override;
    void OnResetOutputCurves() LATHE_REALTIME override;
    void ProcessStreams(const DSP::IConstAudioStreams& inputs, DSP::IAudioStreams& outputs,
                        int samples, const DSP::IConstFilterPropertiesVariations* variations)
        LATHE_REALTIME override;

private:
    // The parameters at one end of a block.
    struct SUserValues {
        SUserValues() = default;
        // What is the same at the known end is taken from there.
        SUserValues(const DSP::IConstParamsValues& values, const SUserValues& known) LATHE_REALTIME;
        SUserValues(const DSP::IConstFilterProperties& properties, const SUserValues& known)
            LATHE_REALTIME;

        double m_Values[6] = {};
        // The frequencies of the shelves by that of the peak: half a bandwidth below and above it.
        double m_LowRatio = 1.0;
        double m_HighRatio = 1.0;
        // As bits, the parameters that are new there.
        unsigned m_Dirty = 0;
    };
    struct SChanges;
    struct SStage;

    void WireOutputs();
    void WireResponses() LATHE_REALTIME;
    void NoteChanges(const SChanges& changes) LATHE_REALTIME;
    const DSP::IConstFilterPropertiesVariations& Translate(const SChanges& changes,
                                                           const SStage& stage, int samples)
        LATHE_REALTIME;

    // Shared by all channels; held from construction, so that the audio thread never builds it.
    const DSP::CProcessInfo& m_ProcessInfo;
    DSP::Filters::CGain m_Gain{1};
    DSP::Filters::CLowShelfFilter m_LowShelf{1};
    DSP::Filters::CPeakFilter m_Peak{1};
    DSP::Filters::CHighShelfFilter m_HighShelf{1};
    // Scratch: the variations of the stage being run.
    DSP::CFilterPropertiesVariations m_StageVariations;
    DSP::CDynamicParamsValues m_StageParams{3};
    // Where the last block that changed something ended.
    SUserValues m_LastEnd;

    CoreUtilities::TPointersValueVector<Math::IFunction> m_OutputCurves{6};
    Math::TFunctionsOperation<&Math::FunctionsLibrary::Product> m_GainResponse;
    Math::CFunctionsComposition m_GainResponsedB;
    Math::TFunctionsOperation<&Math::FunctionsLibrary::Sum> m_PhaseResponse;
    CoreUtilities::TCollection<Core::CDirty, Core::IDirty> m_OutputCurvesDirty{6};
    // Since the last OnResetOutputCurves.
    bool m_ParamsChanged = false;
};

} // namespace PluginsFilters
