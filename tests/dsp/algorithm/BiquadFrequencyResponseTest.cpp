// Proves the responses of a section against complex arithmetic, at the edges of the band too, and
// that they survive storage, with keys missing and by class id alone.

#include "dsp/algorithm/BiquadFrequencyResponse.h"
#include "core/runtime/ObjectsFactory.h"
#include "dsp/FilterTestSupport.h"
#include "serialization/MemDataObject.h"
#include "serialization/XmlDataObject.h"

#include <memory>

namespace Lathe::Audio::DSP::Algorithm {

namespace {

using namespace Testing;

const char* const s_Keys[] = {"inputCoeff0",  "inputCoeff1",  "inputCoeff2",
                              "outputCoeff1", "outputCoeff2", "invSampleRate"};
constexpr double s_Defaults[] = {1.0, 0.0, 0.0, 0.0, 0.0, 0.0};
constexpr double s_Rate = 48000.0;

template <class T>
T MakeResponse(const CValues& values) {
    T response;
    response.m_InputCoeff0 = values[0];
    response.m_InputCoeff1 = values[1];
    response.m_InputCoeff2 = values[2];
    response.m_OutputCoeff1 = values[3];
    response.m_OutputCoeff2 = values[4];
    response.m_InvSampleRate = values[5];
    return response;
}

CValues GetValues(const CBiquadFrequencyResponse& r) {
    return {r.m_InputCoeff0,  r.m_InputCoeff1,  r.m_InputCoeff2,
            r.m_OutputCoeff1, r.m_OutputCoeff2, r.m_InvSampleRate};
}

TEST(BiquadFrequencyResponse, IsTheTransferFunctionOnTheUnitCircle) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    for (int run = 0; run < 200; ++run) {
        CValues v;
        for (int i = 0; i < 5; ++i)
            v.push_back(random.Between(-2.0, 2.0));
        v.push_back(1.0 / s_Rate);
        const SPolynomials p{{v[0], v[1], v[2]}, {1.0L, -v[3], -v[4]}};
        const double frequency = random.Between(1.0, 23999.0);
        const long double w = GetOmega(s_Rate, frequency);
        const double gain = EvaluateGain(p, w);
        EXPECT_NEAR(MakeResponse<CBiquadGain>(v).Evaluate(frequency), gain, 1e-10 * (1.0 + gain));
        // acos loses half of the digits where the numbers are almost real.
        EXPECT_NEAR(MakeResponse<CBiquadPhaseShift>(v).Evaluate(frequency), EvaluatePhase(p, w),
                    1e-7);
    }
}

TEST(BiquadFrequencyResponse, HoldsAtTheEdgesOfTheBand) {
    for (double rate : {44100.0, 48000.0, 88200.0, 96000.0, 192000.0}) {
        const CValues average = {0.5, 0.5, 0.0, 0.0, 0.0, 1.0 / rate};
        const CValues delay = {0.0, 1.0, 0.0, 0.0, 0.0, 1.0 / rate};
        const auto gain = MakeResponse<CBiquadGain>(average);
        const auto phase = MakeResponse<CBiquadPhaseShift>(delay);
        EXPECT_EQ(gain.Evaluate(0.0), 1.0);
        EXPECT_NEAR(gain.Evaluate(rate / 2), 0.0, 1e-15);
        EXPECT_NEAR(phase.Evaluate(rate / 2), 0.5, 1e-15) << "half the rate belongs to the band";
        EXPECT_EQ(gain.Evaluate(rate / 2 + 1.0), 0.0);
        EXPECT_EQ(phase.Evaluate(rate / 2 + 1.0), 0.0);
        EXPECT_NEAR(phase.Evaluate(rate / 4), 0.25, 1e-15);
    }
    // No rate: every frequency is 0 Hz.
    EXPECT_EQ(MakeResponse<CBiquadGain>({3.0, 4.0, 5.0, 0.0, 0.0, 0.0}).Evaluate(1e9), 12.0);
    EXPECT_EQ(CBiquadGain().Evaluate(1000.0), 1.0);
    EXPECT_EQ(CBiquadPhaseShift().Evaluate(1000.0), 0.0);
    // A pole on the circle is infinite; nothing at all has no phase.
    EXPECT_EQ(MakeResponse<CBiquadGain>({1.0, 0.0, 0.0, 1.0, 0.0, 1.0}).Evaluate(0.0), INFINITY);
    EXPECT_EQ(MakeResponse<CBiquadPhaseShift>({0.0, 0.0, 0.0, 0.0, 0.0, 1.0}).Evaluate(0.3), 0.0);
    // The difference of the turns isn't wrapped.
    EXPECT_NEAR(
        MakeResponse<CBiquadPhaseShift>({1.0, 0.0, 0.0, 0.9, 0.0, 1.0 / s_Rate}).Evaluate(5000.0),
        EvaluatePhase({{1, 0, 0}, {1, -0.9L, 0}}, GetOmega(s_Rate, 5000.0)), 1e-9);
    EXPECT_LT(
        MakeResponse<CBiquadPhaseShift>({1.0, 0.0, 0.0, 0.9, 0.0, 1.0 / s_Rate}).Evaluate(5000.0),
        -0.5);
}

const CValues s_Stored = {0.1, -1.0 / 3.0, 1e-300, 1.9999999999999998, -0.25, 1.0 / 44100.0};

TEST(BiquadFrequencyResponse, SurvivesStorage) {
    const auto written = MakeResponse<CBiquadGain>(s_Stored);
    Serialization::CMemDataObject memory;
    ASSERT_TRUE(written.Serialize(memory));
    CBiquadPhaseShift fromMemory;
    EXPECT_TRUE(fromMemory.DeSerialize(memory));
    EXPECT_EQ(GetValues(fromMemory), s_Stored);
    for (int i = 0; i < 6; ++i) {
        double value = 0.0;
        EXPECT_TRUE(memory.ReadDouble(s_Keys[i], &value));
        EXPECT_EQ(value, s_Stored[static_cast<std::size_t>(i)]) << s_Keys[i];
    }

    Serialization::CXmlDataObject xml("Function");
    ASSERT_TRUE(written.Serialize(xml));
    char* text = nullptr;
    ASSERT_TRUE(xml.GetText(text));
    const std::unique_ptr<char[]> owned(text);
    Serialization::CXmlDataObject parsed("Function");
    ASSERT_TRUE(parsed.Parse(text, static_cast<int>(std::char_traits<char>::length(text))));
    CBiquadGain fromXml;
    EXPECT_TRUE(fromXml.DeSerialize(parsed));
    EXPECT_EQ(GetValues(fromXml), s_Stored);
}

// Holds only what changed.
class CIncrement : public Serialization::CMemDataObject {
public:
    bool IsIncremental() const override { return true; }
};

TEST(BiquadFrequencyResponse, TakesDefaultsForMissingKeysUnlessTheStreamIsIncremental) {
    for (std::size_t missing = 0; missing < 6; ++missing) {
        Serialization::CMemDataObject whole;
        CIncrement increment;
        MakeResponse<CBiquadGain>(s_Stored).Serialize(whole);
        MakeResponse<CBiquadGain>(s_Stored).Serialize(increment);
        whole.RemoveValue(s_Keys[missing]);
        increment.RemoveValue(s_Keys[missing]);

        const CValues old(6, 7.0);
        CValues expected = s_Stored;
        expected[missing] = s_Defaults[missing];
        auto response = MakeResponse<CBiquadGain>(old);
        EXPECT_FALSE(response.DeSerialize(whole));
        EXPECT_EQ(GetValues(response), expected) << s_Keys[missing];

        expected[missing] = 7.0;
        response = MakeResponse<CBiquadGain>(old);
        EXPECT_TRUE(response.DeSerialize(increment));
        EXPECT_EQ(GetValues(response), expected) << s_Keys[missing];
    }
}

// Refuses one key.
class CRefusing : public Serialization::CMemDataObject {
public:
    explicit CRefusing(std::string key) : m_Key(std::move(key)) {}
    bool WriteDouble(const char* name, const double* value) override {
        return m_Key != name && CMemDataObject::WriteDouble(name, value);
    }

private:
    std::string m_Key;
};

TEST(BiquadFrequencyResponse, ReportsAFailedWriteAndWritesTheRest) {
    for (const char* refused : s_Keys) {
        CRefusing output(refused);
        EXPECT_FALSE(CBiquadGain().Serialize(output));
        for (const char* key : s_Keys)
            EXPECT_EQ(output.HasValue(key), key != refused) << key;
    }
}

// Reaches the classes by their ids alone: their registration must survive linking.
TEST(BiquadFrequencyResponse, IsMadeByClassId) {
    const struct {
        const char* m_ClassId;
        double m_AtQuarter; // Of a delay by one sample.
    } cases[] = {{"{F5A5C4CC-51D6-49ec-A269-A3B2B1E8037E}", 1.0},
                 {"{EAC674E4-4C25-46bd-8D83-F9BB83604BA7}", 0.25}};
    Serialization::CMemDataObject delay;
    const CValues values = {0.0, 1.0, 0.0, 0.0, 0.0, 1.0 / s_Rate};
    for (std::size_t i = 0; i < 6; ++i)
        delay.WriteDouble(s_Keys[i], &values[i]);
    for (const auto& test : cases) {
        std::unique_ptr<Math::IFunction> made(
            Runtime::CreateObject<Math::IFunction>(test.m_ClassId));
        ASSERT_NE(made, nullptr) << test.m_ClassId;
        EXPECT_STREQ(made->GetClassId(), test.m_ClassId);
        EXPECT_TRUE(made->DeSerialize(delay));
        const std::unique_ptr<Math::IFunction> clone(made->Clone());
        made.reset();
        EXPECT_STREQ(clone->GetClassId(), test.m_ClassId);
        EXPECT_NEAR(clone->Evaluate(s_Rate / 4), test.m_AtQuarter, 1e-15);
    }
}

} // namespace

} // namespace Lathe::Audio::DSP::Algorithm
