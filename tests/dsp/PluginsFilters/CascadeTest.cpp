// Proves that the versions of the cascade give the bits of the stages run one after the other,
// whatever the signal, the settings, the blocks and the processor's treatment of denormals; and
// that they run where they may, and only there.

#include "dsp/kernel/Cascade.h"

#include "dsp/FilterTestSupport.h"
#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "dsp/kernel/CascadeVersions.h"

#include <bit>
#include <cstdlib>
#include <limits>
#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace Lathe::Audio::DSP::Kernel {

using namespace Testing;
using PluginsFilters::CDualCairnEQ;

namespace {

// Rounds of random blocks; more on demand.
int GetRounds() {
    const char* given = std::getenv("CAIRN_CASCADE_ROUNDS");
    return given ? std::atoi(given) : 40;
}

// The versions that this processor runs, and null for stage by stage. Says which it doesn't run.
std::vector<const SCascadeVersion*> GetRoads() {
    std::vector<const SCascadeVersion*> roads = {nullptr};
    for (const SCascadeVersion& version : GetCascadeVersions()) {
        if (version.m_IsSupported)
            roads.push_back(&version);
        else
            std::printf("[  SKIPPED ] %s: not on this processor\n", version.m_Name);
    }
    return roads;
}

class CRoadScope {
public:
    explicit CRoadScope(const SCascadeVersion* version) { SetCascadeVersion(version); }
    ~CRoadScope() { SetCascadeVersion(m_Before); }
    CRoadScope(const CRoadScope&) = delete;
    CRoadScope& operator=(const CRoadScope&) = delete;

private:
    const SCascadeVersion* m_Before = GetCascadeVersion();
};

// Denormal results and operands as a host may have them treated.
class CDenormalScope {
public:
#if defined(__SSE2__)
    explicit CDenormalScope(unsigned bits) {
        _mm_setcsr(_mm_getcsr() | bits);
    }
    ~CDenormalScope() {
        _mm_setcsr(m_Before);
    }

private:
    unsigned m_Before = _mm_getcsr();
#else
    explicit CDenormalScope(unsigned) {}
#endif
};

// What happens in one block.
struct SBlock {
    enum ELayout { Apart, InPlace, Strided, Crossed, Shared, Shifted };

    CSignals m_Input;
    std::vector<std::pair<int, double>> m_Moves;
    // What is new at the start already, of a ramp.
    std::vector<std::pair<int, double>> m_Jumps;
    double m_SecondRate = 0.0;
    ELayout m_Layout = Apart;
    bool m_IsRamp = false;
    bool m_IsSilence = false;
    bool m_ResetsBefore = false;

    int GetSamples() const { return static_cast<int>(m_Input[0].size()); }
};

class CScenario {
public:
    SBlock MakeBlock() {
        SBlock block;
        const int sizes[] = {Pick(9), 16 * Pick(9), 64, Pick(300), 255 + Pick(4), Pick(1200)};
        const int samples = sizes[Pick(6)];
        block.m_Input = {MakeSignal(samples), MakeSignal(samples)};
        if (Chance(0.1))
            block.m_Input[1] = block.m_Input[0];
        constexpr SBlock::ELayout layouts[] = {SBlock::Apart,   SBlock::Apart,   SBlock::Apart,
                                               SBlock::InPlace, SBlock::InPlace, SBlock::Strided,
                                               SBlock::Crossed, SBlock::Shared,  SBlock::Shifted};
        block.m_Layout = layouts[Pick(9)];
        block.m_ResetsBefore = Chance(0.15);
        block.m_IsSilence = Chance(0.05);
        block.m_IsRamp = Chance(0.7);
        if (Chance(0.5))
            MoveParams(block.m_Moves);
        if (block.m_IsRamp && Chance(0.2))
            MoveParams(block.m_Jumps);
        if (block.m_IsRamp && Chance(0.2))
            block.m_SecondRate = m_Random.Between(-1e-6, 1e-6);
        return block;
    }

    // A few samples just above the denormals, where often a single one of a single section is one.
    SBlock MakeFaintBlock() {
        SBlock block;
        block.m_Input = m_Random.Noise(2, 8 + Pick(9));
        const double level = std::pow(10.0, m_Random.Between(-38, -35));
        for (CSignal& signal : block.m_Input) {
            for (float& x : signal)
                x *= static_cast<float>(level);
        }
        MoveParams(block.m_Moves);
        block.m_IsRamp = Chance(0.5);
        block.m_ResetsBefore = true;
        return block;
    }

private:
    int Pick(int count) {
        return std::min(static_cast<int>(m_Random.Between(0, count)), count - 1);
    }
    bool Chance(double probability) { return m_Random.Between(0, 1) < probability; }

    CSignal MakeSignal(int samples) {
        // Often so low that what is left of it soon is denormal.
        if (Chance(0.2))
            m_Level = Chance(0.5) ? m_Random.Between(-46, 1) : m_Random.Between(-38, -35);
        const double level = std::pow(10.0, m_Level);
        CSignal signal = m_Random.Noise(1, std::max(samples, 1))[0];
        signal.resize(static_cast<std::size_t>(samples));
        const int kind = Pick(9);
        const int edge = Pick(samples + 1);
        for (int i = 0; i < samples; ++i) {
            float& x = signal[static_cast<std::size_t>(i)];
            if (kind == 0 || (kind == 1 && i < edge) ||
                (kind == 2 && i >= edge)) // Silence, bursts.
                x = 0.0f;
            else if (kind == 3) // A decay into the denormals.
                x *= static_cast<float>(std::pow(10.0, -45.0 * i / samples));
            else if (kind == 4 && i == edge)
                x = MakeSpecial();
            else if (kind == 5)
                x = -0.0f;
            else if (kind > 5)
                x *= static_cast<float>(level);
        }
        return signal;
    }

    float MakeSpecial() {
        using L = std::numeric_limits<float>;
        const float specials[] = {L::infinity(),   -L::infinity(), L::quiet_NaN(),
                                  -L::quiet_NaN(), L::max(),       L::min(),
                                  L::denorm_min(), -L::min(),      -L::denorm_min()};
        return specials[Pick(9)];
    }

    // Some or all, both channels alike or each by itself, or the stereo mode.
    void MoveParams(std::vector<std::pair<int, double>>& moves) {
        const double probability = Chance(0.3) ? 1.0 : m_Random.Between(0, 1);
        const bool alike = Chance(0.3);
        if (Chance(0.2))
            moves.emplace_back(0, Chance(0.8) ? Pick(2) : m_Random.Between(0, 1));
        for (int param = 1; param <= (alike ? 6 : 12); ++param) {
            if (!Chance(probability))
                continue;
            const IConstParamInfo& info = m_Filter.GetInputParamsInfo().GetElement(param);
            const double value = info.GetPositionMapper().PositionToValue(m_Random.Between(0, 1));
            moves.emplace_back(param, value);
            if (alike)
                moves.emplace_back(param + 6, value);
        }
    }

    CRandom m_Random;
    double m_Level = 0.0; // As a power of 10.
    const CDualCairnEQ m_Filter;
};

// One road's filter: the equaliser, or its two channels without the matrix.
class CRoad {
public:
    CRoad(const SCascadeVersion* version, bool hasMatrix, double sampleRate = 44100.0)
        : m_Version(version),
          m_FirstParam(hasMatrix ? 0 : 1),
          m_Filter(hasMatrix ? static_cast<IFilter*>(new CDualCairnEQ)
                             : new TFullStereoFromMonoFilter<PluginsFilters::CCairnEQ>),
          m_Rig(*m_Filter) {
        // Again, from the rate of the rig.
        m_Filter->Init(sampleRate, {.m_MaxBlockSize = 20000, .m_MaxVariationsOrder = 2});
    }

    const char* GetName() const { return m_Version ? m_Version->m_Name : "stages"; }

    CSignals Process(const SBlock& block) {
        const CRoadScope scope(m_Version);
        if (block.m_ResetsBefore)
            m_Filter->Reset();
        for (const auto& [param, value] : block.m_Moves) {
            const int own = param - m_FirstParam;
            if (own >= 0)
                block.m_IsRamp ? m_Rig.Move({value}, own) : m_Rig.Set({value}, own);
        }
        for (const auto& [param, value] : block.m_Jumps) {
            if (param >= m_FirstParam)
                m_Rig.Jump({value}, param - m_FirstParam);
        }
        m_Rig.Accelerate(block.m_SecondRate);
        const int stride = block.m_Layout == SBlock::Strided ? 2 : 1;
        CBuffers inputs(block.m_Input, stride);
        CBuffers apart(2, block.GetSamples(), 0.5f, stride);
        COtherStreams crossed(inputs, 1, 0);
        COtherStreams shared(inputs, 0, 0);
        CAudioStream late[2]; // By a sample, over what is still to be read.
        for (int c = 0; c < 2; ++c)
            late[c] = CAudioStream(&inputs.At(c, 0), 1, block.GetSamples(), 1, false);
        CAudioStreams shifted(late, 2, false);
        IAudioStreams* const outputs[] = {&apart, &inputs, &apart, &crossed, &shared, &shifted};
        const IConstAudioStreams* given = &inputs;
        if (block.m_IsSilence)
            given = nullptr;
        m_Rig.Process(given, *outputs[block.m_Layout], block.GetSamples());
        m_Filter->UpdateOutputs();
        return (outputs[block.m_Layout] == &apart ? apart : inputs).Read();
    }
    double EvaluateCurve(int curve, double frequency) {
        return m_Filter->GetOutputCurves().GetValue(curve).Evaluate(frequency);
    }

private:
    // Two of the streams, in any order.
    struct COtherStreams : IAudioStreams {
        COtherStreams(IAudioStreams& streams, int first, int second)
            : m_Streams(streams), m_Indices{first, second} {}
        int GetCount() const override { return 2; }
        const IAudioStream& GetElement(int i) const override {
            return m_Streams.GetElement(m_Indices[i]);
        }
        IAudioStream& GetElement(int i) override { return m_Streams.GetElement(m_Indices[i]); }
        IAudioStreams& m_Streams;
        int m_Indices[2];
    };

    const SCascadeVersion* m_Version;
    int m_FirstParam;
    std::unique_ptr<IFilter> m_Filter;
    CRig m_Rig;
};

// To the bit. Which of two NaNs a sum passes on is the compiler's choice in every loop, so that a
// NaN stands for any.
void CheckSameBits(const CSignals& actual, const CSignals& expected, const char* name) {
    for (std::size_t c = 0; c < expected.size(); ++c) {
        for (std::size_t i = 0; i < expected[c].size(); ++i) {
            const float a = actual[c].at(i);
            const float e = expected[c][i];
            ASSERT_TRUE(std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(e) ||
                        (std::isnan(a) && std::isnan(e)))
                << name << ", channel " << c << ", frame " << i << " of " << expected[c].size()
                << ": " << a << " for " << e;
        }
    }
}

using CRoads = std::vector<std::unique_ptr<CRoad>>;

CRoads MakeRoads(bool hasMatrix, double sampleRate = 44100.0) {
    CRoads roads;
    for (const SCascadeVersion* version : GetRoads())
        roads.push_back(std::make_unique<CRoad>(version, hasMatrix, sampleRate));
    return roads;
}

void CheckBlock(const CRoads& roads, const SBlock& block) {
    const CSignals expected = roads[0]->Process(block);
    for (std::size_t r = 1; r < roads.size(); ++r) {
        ASSERT_NO_FATAL_FAILURE(
            CheckSameBits(roads[r]->Process(block), expected, roads[r]->GetName()));
        // The coefficients that the block has left.
        for (int curve = 0; curve < 12; ++curve)
            EXPECT_EQ(roads[r]->EvaluateCurve(curve, 3000.0),
                      roads[0]->EvaluateCurve(curve, 3000.0));
    }
}

void CheckRandomBlocks() {
    CScenario scenario;
    for (int round = 0; round < GetRounds(); ++round) {
        // Without a rate gains move while sections rest.
        constexpr double rates[] = {44100.0, 96000.0, 44100.0, 96000.0, 0.0};
        const CRoads roads = MakeRoads(round % 4 != 0, rates[round % 5]);
        for (int i = 0; i < 12; ++i) {
            SCOPED_TRACE("round " + std::to_string(round) + ", block " + std::to_string(i));
            ASSERT_NO_FATAL_FAILURE(CheckBlock(roads, scenario.MakeBlock()));
        }
    }
}

} // namespace

TEST(Cascade, GivesTheBitsOfTheStages) {
    std::printf("seed %u\n", GetSeed());
    CheckRandomBlocks();
}

TEST(Cascade, FlushesTheOnlySampleThatNeedsIt) {
    CScenario scenario;
    const CRoads roads = MakeRoads(true);
    for (int i = 0; i < 50 * GetRounds(); ++i)
        ASSERT_NO_FATAL_FAILURE(CheckBlock(roads, scenario.MakeFaintBlock())) << "block " << i;
}

#if defined(__SSE2__)
TEST(Cascade, GivesTheBitsOfTheStagesWhereTheHostFlushesDenormals) {
    std::printf("seed %u\n", GetSeed());
    for (const unsigned bits : {unsigned(_MM_FLUSH_ZERO_ON), unsigned(_MM_DENORMALS_ZERO_ON),
                                unsigned(_MM_FLUSH_ZERO_ON) | unsigned(_MM_DENORMALS_ZERO_ON)}) {
        SCOPED_TRACE("control bits " + std::to_string(bits));
        const CDenormalScope scope(bits);
        CheckRandomBlocks();
    }
}
#endif

namespace {
int g_Runs = 0;
} // namespace

TEST(Cascade, RunsWhereStreamsAllowIt) {
    const SCascadeVersion counting = {"counting",
                                      [](const SCascadeGroups& groups) {
                                          ++g_Runs;
                                          return RunCascadePortable(groups);
                                      },
                                      ComputeSectionPortable, true};
    const struct {
        SBlock::ELayout m_Layout;
        bool m_IsSilence;
        bool m_HasMatrix;
        bool m_Runs;
    } cases[] = {
        {SBlock::Apart, false, true, true},
        {SBlock::InPlace, false, true, true},
        {SBlock::Strided, false, true, false},
        {SBlock::Apart, true, true, false},
        {SBlock::Shared, false, true, false},
        {SBlock::Shared, false, false, false},
        {SBlock::InPlace, false, false, true},
        {SBlock::Shifted, false, false, false},
        {SBlock::Crossed, false, false, false},
        // From the scratch streams of the matrix.
        {SBlock::Crossed, false, true, true},
    };
    for (const auto& test : cases) {
        CRoad road(&counting, test.m_HasMatrix);
        SBlock block;
        block.m_Input = CSignals(2, CSignal(64, 0.5f));
        block.m_Layout = test.m_Layout;
        block.m_IsSilence = test.m_IsSilence;
        block.m_Moves = {{4, 3.0}};
        block.m_IsRamp = true;
        g_Runs = 0;
        road.Process(block);
        EXPECT_EQ(g_Runs > 0, test.m_Runs) << test.m_Layout;
    }
}

} // namespace Lathe::Audio::DSP::Kernel
