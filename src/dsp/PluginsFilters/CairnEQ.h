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
#include "math/KeptResult.h"

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

    // For a cascade that runs this channel beside another. The variations may be those of an
    // enclosing filter, of whose parameters this channel's begin with firstParam. What a twin has
    // computed already, for itself in the same block, is taken from there.
    void StartCascade(DSP::Kernel::SCascadeChannel& channel,
                      const DSP::IConstFilterPropertiesVariations* variations, int samples,
                      int firstParam = 0, const CCairnEQ* twin = nullptr) LATHE_REALTIME;
    void EndCascade(const CCairnEQ* twin = nullptr) LATHE_REALTIME;

protected:
    void OnInputParamsChanged(const DSP::IConstParamsValues& values) LATHE_REALTIME override;
    void OnSilence(int samples) LATHE_REALTIME override;
    void OnReset() LATHE_REALTIME override;
    void OnResetOutputCurves() LATHE_REALTIME override;
    void ProcessStreams(const DSP::IConstAudioStreams& inputs, DSP::IAudioStreams& outputs,
                        int samples, const DSP::IConstFilterPropertiesVariations* variations)
        LATHE_REALTIME override;

private:
    // Orders of ramp that the stages have room for.
    static constexpr int MaxRampOrders = DSP::Filters::MaxRampOrders;
    static_assert(DSP::Filters::CGain::MaxRampOrders == MaxRampOrders);

    // The frequencies of the shelves by that of the peak: half a bandwidth below and above it.
    struct SShelfRatios {
        double m_Low = 1.0;
        double m_High = 1.0;
    };
    static SShelfRatios GetShelfRatios(double bandwidth) LATHE_REALTIME;

    // The parameters at one end of a block, or their rates.
    struct SUserValues {
        // Whether any parameter of a stage is new.
        template <class TStage>
        bool IsDirty() const LATHE_REALTIME;

        double m_Values[6] = {};
        SShelfRatios m_Ratios;
        // As bits, the parameters that are new there.
        unsigned m_Dirty = 0;
    };
    // What changes in a block, read once for all stages from whatever views it comes through.
    struct SBlock {
        SUserValues m_Start;
        SUserValues m_End;
        SUserValues m_Rates[MaxRampOrders];
        int m_Orders = 0;
        int m_Samples = 0;
    };

    struct SGainStage;
    struct SPeakStage;
    struct SLowShelfStage;
    struct SHighShelfStage;

    void WireOutputs();
    void WireResponses() LATHE_REALTIME;
    void ReadBlock(const DSP::IConstFilterPropertiesVariations& variations, int firstParam,
                   int samples, const CCairnEQ& known) LATHE_REALTIME;
    // Calls visit(stage, pointer to its member).
    template <class TVisit>
    static void ForStages(TVisit visit) LATHE_REALTIME;
    // Of the block, as the stage's own rates.
    template <class TStage>
    auto TranslateRates(TStage stage, int order) const LATHE_REALTIME;
    template <class TStage, class TFilter>
    void StartStage(TStage stage, TFilter& filter, const TFilter& known) LATHE_REALTIME;
    // The block as the stage's own variations.
    template <class TStage>
    const DSP::IConstFilterPropertiesVariations& Translate(TStage stage) LATHE_REALTIME;

    // Shared by all channels; held from construction, so that the audio thread never builds it.
    const DSP::CProcessInfo& m_ProcessInfo;
    DSP::Filters::CGain m_Gain{1};
    DSP::Filters::CLowShelfFilter m_LowShelf{1};
    DSP::Filters::CPeakFilter m_Peak{1};
    DSP::Filters::CHighShelfFilter m_HighShelf{1};
    // Scratch: the variations of the stage being run.
    DSP::CFilterPropertiesVariations m_StageVariations;
    // Of the block being run, or of the last one that changed something.
    SBlock m_Block;
    // A block starts where the last one ended, and the bandwidth mostly rests.
    Math::TKeptResult<SShelfRatios, &GetShelfRatios> m_KeptRatios;

    CoreUtilities::TPointersValueVector<Math::IFunction> m_OutputCurves{6};
    Math::TFunctionsOperation<&Math::FunctionsLibrary::Product> m_GainResponse;
    Math::CFunctionsComposition m_GainResponsedB;
    Math::TFunctionsOperation<&Math::FunctionsLibrary::Sum> m_PhaseResponse;
    CoreUtilities::TCollection<Core::CDirty, Core::IDirty> m_OutputCurvesDirty{6};
    // Since the last OnResetOutputCurves.
    bool m_ParamsChanged = false;
};

} // namespace PluginsFilters
