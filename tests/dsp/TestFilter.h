// A filter with inputs of all kinds that writes down which of its operations run, in order.
#pragma once

#include "datamodel/objects/DynamicPropertyValue.h"
#include "dsp/BaseCoreDSPFilter.h"
#include "dsp/FilterProductInfo.h"
#include "dsp/properties/FilterProperties.h"
#include "math/Constant.h"

#include <string>

namespace Lathe::Audio::DSP {

// A value of a type that only its owner knows: a number.
class CNumberProperty : public DataModel::Objects::CEmptyDynamicPropertyValue {
public:
    explicit CNumberProperty(int number) : m_Number(number) {}
    CNumberProperty* Clone() const override { return new CNumberProperty(*this); }

    int m_Number;
};

// A curve that counts how many of its kind are alive.
class CCountedCurve : public Math::CConstantFunction {
public:
    CCountedCurve(double value, int& alive) : CConstantFunction(value), m_Alive(alive) {
        ++m_Alive;
    }
    CCountedCurve(const CCountedCurve& other) : CConstantFunction(other), m_Alive(other.m_Alive) {
        ++m_Alive;
    }
    ~CCountedCurve() override { --m_Alive; }
    CCountedCurve* Clone() const override { return new CCountedCurve(*this); }

private:
    int& m_Alive;
};

class CTestFilter : public CBaseCoreDSPFilter {
public:
    // Inputs of one channel, by kind; the defaults count up over all channels.
    static constexpr int s_InputsCounts[InputKinds] = {3, 2, 2, 1, 2};

    // Channels repeat the inputs, as if so many filters stood side by side.
    explicit CTestFilter(int channels = 1);

    CTestFilter* Clone() const override { return new CTestFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override { return m_ProductInfo; }
    // Two inputs and outputs, and one alternative, "Mono".
    const IProcessInfo& GetProcessInfo() const LATHE_REALTIME override { return m_ProcessInfo; }

    // The calls since the last question, such as "streams(4) block(4)".
    std::string TakeCalls();

    void SetTail(int samples) { m_TailLength = samples; }
    void SetSilentSamples(std::int64_t samples) { m_SilentSamples = samples; }

    bool m_KeepsRunning = false;
    // Of the last block.
    int m_InputsCount = 0;
    float m_InputsSum = 0.0f;

protected:
    void OnInputParamsChanged(const IConstParamsValues& values) LATHE_REALTIME override;
    void OnSilence(int samples) LATHE_REALTIME override { Note("silence", samples); }
    void OnResetOutputValues() LATHE_REALTIME override { Note("values"); }
    void OnResetOutputCurves() LATHE_REALTIME override { Note("curves"); }
    void OnInit(const CFilterInitInfo&) override { Note("init", static_cast<int>(m_SampleRate)); }
    void OnReset() LATHE_REALTIME override { Note("reset"); }
    void ProcessBlock(const CFilterProcessData& data) LATHE_REALTIME override {
        Note("block", data.m_SamplesCount);
    }
    bool KeepsRunningOnSilence() const LATHE_REALTIME override { return m_KeepsRunning; }
    // Adds 1 to each channel that there is.
    void ProcessStreams(const IConstAudioStreams& inputs, IAudioStreams& outputs, int samples,
                        const IConstFilterPropertiesVariations* variations) LATHE_REALTIME override;

private:
    void Note(const char* call) LATHE_REALTIME;
    void Note(const char* call, int number) LATHE_REALTIME;

    // Has its room from the start, so that a note allocates nothing.
    std::string m_Calls;
    CProcessInfo m_ProcessInfo{2, 2};
    CFilterProductInfo m_ProductInfo{"", "Test", "", "", "", 0, ""};
};

// The value of input i of a kind as a number, so that one loop covers all kinds: of a text its
// letters, of a function any of its values.
double GetNumber(const IConstFilterProperties& values, int kind, int index);
// Stores a value of which GetNumber gives the number, and sets its flag.
void SetNumber(CFilterProperties& values, int kind, int index, int number);
// Where the value lies, to tell sharing from copying; null for parameters.
const void* GetAddress(const IConstFilterProperties& values, int kind, int index);
// How many values of the kind there are.
int GetCount(const IConstFilterProperties& values, int kind);

} // namespace Lathe::Audio::DSP
