// Proves the responses of a section against complex arithmetic, at the edges of the band too, and
// that they survive storage, with keys missing and by class id alone.

#include "dsp/algorithm/BiquadFrequencyResponse.h"
#include "core/runtime/ObjectsFactory.h"
#include "dsp/FilterTestSupport.h"
#include "serialization/Streams.h"

#include <complex>

namespace Lathe::Audio::DSP::Algorithm {

using namespace Testing;

using CBase = CBiquadFrequencyResponse;
const std::pair<const char*, double CBase::*> s_Fields[] = {
    {"inputCoeff0", &CBase::m_InputCoeff0},   {"inputCoeff1", &CBase::m_InputCoeff1},
    {"inputCoeff2", &CBase::m_InputCoeff2},   {"outputCoeff1", &CBase::m_OutputCoeff1},
    {"outputCoeff2", &CBase::m_OutputCoeff2}, {"invSampleRate", &CBase::m_InvSampleRate}};
constexpr double s_Rate = 48000.0;

template <class T>
T MakeResponse(const CValues& values) {
    T response;
    for (std::size_t i = 0; i < 6; ++i)
        response.*s_Fields[i].second = values[i];
    return response;
}

TEST(BiquadFrequencyResponse, IsTheTransferFunctionOnTheUnitCircle) {
    CRandom random;
    for (int run = 0; run < 200; ++run) {
        CValues v(5);
        for (double& coefficient : v)
            coefficient = random.Between(-2.0, 2.0);
        v.push_back(1.0 / s_Rate);
        const double frequency = random.Between(1.0, 23999.0);
        const std::complex<double> z = std::polar(1.0, 2 * std::numbers::pi * frequency / s_Rate);
        const std::complex<double> b = v[0] + v[1] / z + v[2] / (z * z);
        const std::complex<double> a = 1.0 - v[3] / z - v[4] / (z * z);
        EXPECT_NEAR(MakeResponse<CBiquadGain>(v).Evaluate(frequency) / std::abs(b / a), 1.0, 1e-9);
        // Turns by which the output lags behind the input, each from 0 to 1. acos loses half of the
        // digits where the numbers are almost real.
        const auto lag = [](std::complex<double> number) {
            const double turns = -std::arg(number) / (2 * std::numbers::pi);
            return turns < 0.0 ? turns + 1.0 : turns;
        };
        EXPECT_NEAR(MakeResponse<CBiquadPhaseShift>(v).Evaluate(frequency), lag(b) - lag(a), 1e-7);
    }
}

TEST(BiquadFrequencyResponse, HoldsAtTheEdgesOfTheBand) {
    for (double rate : {44100.0, 88200.0, 192000.0}) {
        const auto gain = MakeResponse<CBiquadGain>({0.5, 0.5, 0.0, 0.0, 0.0, 1.0 / rate});
        const auto phase = MakeResponse<CBiquadPhaseShift>({0.0, 1.0, 0.0, 0.0, 0.0, 1.0 / rate});
        EXPECT_NEAR(gain.Evaluate(rate / 2), 0.0, 1e-15);
        EXPECT_NEAR(phase.Evaluate(rate / 2), 0.5, 1e-15) << "half the rate belongs to the band";
        EXPECT_EQ(gain.Evaluate(rate / 2 + 1.0), 0.0);
        EXPECT_EQ(phase.Evaluate(rate / 2 + 1.0), 0.0);
    }
    // No rate: every frequency is 0 Hz.
    EXPECT_EQ(MakeResponse<CBiquadGain>({3.0, 4.0, 5.0, 0.0, 0.0, 0.0}).Evaluate(1e9), 12.0);
    EXPECT_EQ(CBiquadPhaseShift().Evaluate(1000.0), 0.0);
    // A pole on the circle is infinite; nothing at all has no phase.
    EXPECT_EQ(MakeResponse<CBiquadGain>({1.0, 0.0, 0.0, 1.0, 0.0, 1.0}).Evaluate(0.0), INFINITY);
    EXPECT_EQ(MakeResponse<CBiquadPhaseShift>({0.0, 0.0, 0.0, 0.0, 0.0, 1.0}).Evaluate(0.3), 0.0);
}

TEST(BiquadFrequencyResponse, TakesDefaultsForMissingKeysUnlessTheStreamIsIncremental) {
    const CValues stored = {0.1, -1.0 / 3.0, 1e-300, 1.9999999999999998, -0.25, 1.0 / 44100.0};
    const auto check = [&](auto object, std::size_t missing) {
        EXPECT_TRUE(MakeResponse<CBiquadGain>(stored).Serialize(object));
        object.RemoveValue(missing < 6 ? s_Fields[missing].first : nullptr);
        auto response = MakeResponse<CBiquadPhaseShift>(CValues(6, 7.0));
        EXPECT_EQ(response.DeSerialize(object), object.IsIncremental() || missing == 6);
        for (std::size_t i = 0; i < 6; ++i) {
            const double absent = object.IsIncremental() ? 7.0 : i == 0 ? 1.0 : 0.0;
            EXPECT_EQ(response.*s_Fields[i].second, i == missing ? absent : stored[i]);
        }
    };
    for (std::size_t missing = 0; missing <= 6; ++missing) { // 6: none.
        check(Serialization::CMemDataObject(), missing);
        check(Serialization::Tests::CChanges(), missing);
    }
}

// Reaches the classes by their ids alone: their registration must survive linking.
TEST(BiquadFrequencyResponse, IsMadeByClassId) {
    Serialization::CMemDataObject delay;
    MakeResponse<CBiquadGain>({0.0, 1.0, 0.0, 0.0, 0.0, 1.0 / s_Rate}).Serialize(delay);
    for (const auto& [id, atQuarter] :
         {std::pair{"{F5A5C4CC-51D6-49ec-A269-A3B2B1E8037E}", 1.0},
          std::pair{"{EAC674E4-4C25-46bd-8D83-F9BB83604BA7}", 0.25}}) {
        const std::unique_ptr<Math::IFunction> made(Runtime::CreateObject<Math::IFunction>(id));
        ASSERT_NE(made, nullptr) << id;
        EXPECT_TRUE(made->DeSerialize(delay));
        EXPECT_STREQ(made->GetClassId(), id);
        EXPECT_NEAR(made->Evaluate(s_Rate / 4), atQuarter, 1e-15);
    }
}

} // namespace Lathe::Audio::DSP::Algorithm
