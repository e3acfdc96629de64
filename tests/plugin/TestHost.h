// The host's side of one instance: its parameter objects, its buffers, and a block as a host's
// adaptor calls it.
#pragma once

#include "datamodel/objects/capture/MTCaptureParam.h"
#include "dsp/streams/AudioStream.h"
#include "math/Constant.h"
#include "platform/TemporaryHome.h"
#include "plugin/PluginTestFilter.h"
#include "plugin/internals/AudioPluginConfig.h"
#include "plugin/internals/AudioPluginInternals.h"
#include "plugin/midi/MIDIEvent.h"
#include "plugin/settings/AudioPluginFilePathsBase.h"
#include "plugin/settings/AudioPluginStaticSettings.h"
#include "serialization/Streams.h"

#include <sstream>

namespace Lathe::Audio::Plugin {

inline std::string TakeText(char* text) {
    return std::unique_ptr<char[]>(text).get();
}

// Below the home that a test has just made.
class CTestPaths : public CAudioPluginFilePathsBase {
public:
    explicit CTestPaths(const IConstPackageInfo* = nullptr,
                        const std::string& home = ::getenv("HOME"))
        : CAudioPluginFilePathsBase(home + "/data", home + "/settings", home + "/user") {}
};
using CTestSettings = TAudioPluginConfig<CTestPaths>;

// The first curve, surface and property of each side, which all hold one number.
inline void SetObjects(const IPluginGUIConnections& to, double curve, double surface,
                       double property) {
    to.GetInputCurves()->GetElement(0).SetValue(Math::CConstantFunction(curve));
    to.GetInputSurfaces()->GetElement(0).SetValue(Math::CConstantBinaryFunction(surface));
    to.GetInputCustomProperties()->GetElement(0).SetValue(CTestProperty(property));
}
inline std::string ShowObjects(const auto& curves, const auto& surfaces, const auto& properties) {
    const std::unique_ptr<Math::IFunction> curve(curves.GetElement(0).GetValue());
    const std::unique_ptr<Math::IBinaryFunction> surface(surfaces.GetElement(0).GetValue());
    const std::unique_ptr<DataModel::Objects::IDynamicPropertyValue> property(
        properties.GetElement(0).GetValue());
    std::ostringstream text;
    text << curve->Evaluate(0.0) << ' ' << surface->Evaluate(0.0, 0.0) << ' '
         << dynamic_cast<const CTestProperty&>(*property).m_Number;
    return text.str();
}

inline std::string ShowOutputs(const IPluginGUIConnections& from) {
    std::ostringstream text;
    for (int i = 0; i < from.GetOutputParams()->GetCount(); ++i)
        text << from.GetOutputParams()->GetElement(i).GetValue() << ' ';
    text << TakeText(from.GetOutputStrings()->GetElement(0).GetValue()) << ' ';
    return text.str() + ShowObjects(*from.GetOutputCurves(), *from.GetOutputSurfaces(),
                                    *from.GetOutputCustomProperties());
}

// Counts how often it runs, on any thread.
class CCountCommand : public Core::ICommand {
public:
    void Execute() override { ++m_Count; }
    std::atomic<int> m_Count{0};
};

template <class I, class TParam = DataModel::Objects::CMTCaptureParam>
struct THostParams : CoreUtilities::TCollection<TParam, I> {
    explicit THostParams(const DSP::IConstParamInfos& infos)
        : CoreUtilities::TCollection<TParam, I>(infos.GetCount()) {
        for (int i = 0; i < infos.GetCount(); ++i)
            (*this)[i].SetInfo(infos.GetElement(i));
    }
};

// A host's object may hold anything.
struct CUnlimitedParam : DataModel::Objects::CMTCaptureParam {
    double GetValue() const override { return m_Any; }
    void SetValue(double value) override { m_Any = value; }
    double m_Any = 0.0;
};

class CTestHost {
public:
    static constexpr int s_MaxFrames = 512;

    // Settings, if none are given, are the host's own, in the home of the test.
    explicit CTestHost(std::unique_ptr<DSP::IFilter> filter, CAudioPluginConfig config = {})
        : m_Internals(Complete(config, std::move(filter))),
          m_Inputs(m_Internals.GetInputParamInfos()),
          m_Outputs(m_Internals.GetOutputParamInfos()) {}

    void Connect(Core::ICommand* stateChanged = nullptr, Core::ICommand* outputsUpdated = nullptr) {
        m_Internals.ConnectHost(m_Inputs, m_Outputs, stateChanged, outputsUpdated);
    }
    void Prepare(double sampleRate = 48000.0, int maxBlockSize = s_MaxFrames, bool reset = true) {
        m_Internals.PrepareToProcess(sampleRate,
                                     {.m_ResetToDefaults = reset, .m_MaxBlockSize = maxBlockSize});
    }
    // Fills all input samples with the level; what comes out is in m_OutputSamples.
    void Block(int frames = 64, float level = 0.5f) LATHE_REALTIME {
        DSP::CAudioStream buffers[4];
        for (std::size_t c = 0; c < 2; ++c) {
            m_InputSamples[c].fill(level);
            buffers[c].Aim(m_InputSamples[c].data(), frames);
            buffers[c + 2].Aim(m_OutputSamples[c].data(), frames);
        }
        DSP::CAudioStreams inputs(buffers, 2, false), outputs(buffers + 2, 2, false);
        m_Internals.GetBypassManager().SetBypass(GetParam(0) > 0.5);
        DSP::CFilterProcessData data;
        data.m_pInputs = &inputs;
        data.m_pOutputs = &outputs;
        data.m_SamplesCount = frames;
        data.m_pVariations = m_Internals.GetPropertiesVariations(frames);
        m_HadVariations = data.m_pVariations != nullptr;
        m_Internals.LockProcessing();
        if (level != 0.0f)
            m_Internals.GetBypassManager().Process(data);
        else
            m_Internals.GetBypassManager().ProcessSilence(data);
        m_Internals.UnlockProcessing();
        m_Internals.AdvanceOutputSync(frames);
        if (m_HadVariations)
            m_Internals.CommitVariations();
        TakeOutputs();
        m_Internals.EndBlock();
    }
    // One control change, before a block.
    bool Control(int channel, int number, int value) LATHE_REALTIME {
        const unsigned char bytes[] = {static_cast<unsigned char>(0xB0 + channel - 1),
                                       static_cast<unsigned char>(number),
                                       static_cast<unsigned char>(value)};
        if (!m_Internals.HandleMIDIEvent(MIDI::CMIDIEvent(bytes, 3), m_Message))
            return false;
        m_Internals.GetMIDIController().GetLastMessage().Set(m_Message, true);
        return true;
    }

    // What the instance reads of the host goes first.
    ~CTestHost() { m_Internals.Shutdown(); }

    CAudioPluginInternals* operator->() { return &m_Internals; }
    std::string GetState() const {
        Serialization::CXmlDataObject document("Preset");
        EXPECT_TRUE(m_Internals.SerializeState(document));
        return Serialization::Tests::GetText(document);
    }
    bool SetState(const std::string& text) {
        Serialization::CXmlDataObject document("Preset");
        return Serialization::Tests::Parse(document, text) &&
               m_Internals.DeSerializeState(document);
    }
    double GetParam(int index) { return m_Inputs[index].GetValue(); }
    void SetParam(int index, double value) { m_Inputs[index].SetValue(value); }

    std::array<float, s_MaxFrames> m_InputSamples[2], m_OutputSamples[2];
    bool m_HadVariations = false;
    int m_SentEvents = 0; // Of all blocks.

private:
    CAudioPluginConfig& Complete(CAudioPluginConfig& config, std::unique_ptr<DSP::IFilter> filter) {
        config.filter = filter.release(); // The instance's.
        if (!config.staticSettings) {
            m_Settings = std::make_unique<CTestSettings>(nullptr);
            config.staticSettings = m_Settings.get();
        }
        return config;
    }
    void TakeOutputs() LATHE_REALTIME {
        const bool isTime = m_Internals.GetOutputSync().IsTimeToSync();
        if (isTime) {
            m_Internals.GetOutputSync().ResetCounter();
            m_Internals.ComputeOutputs();
            for (int i = 0; i < m_Outputs.GetCount(); ++i)
                m_SentEvents += m_Internals.MakeOutputMIDIEvent(i, m_Sent);
        }
        if (isTime || m_OutputsPending)
            m_OutputsPending = !m_Internals.PublishOutputs(false);
    }

    std::unique_ptr<CTestSettings> m_Settings;
    CAudioPluginInternals m_Internals;

public:
    THostParams<DataModel::Objects::ICaptureParam> m_Inputs;
    THostParams<DataModel::Objects::IConstCaptureParam> m_Outputs;

private:
    bool m_OutputsPending = false;
    MIDI::CMIDIEvent m_Sent;
    CMIDICCMessage m_Message;
};

// A host in a home of its own, and the filter behind the instance, which owns it.
struct SRig {
    explicit SRig(STestFilterSetup setup = {}, const CAudioPluginConfig& config = {})
        : m_Filter(new CPluginTestFilter(setup)),
          m_Host(std::unique_ptr<DSP::IFilter>(m_Filter), config) {
        m_Host.Connect();
    }
    const IPluginGUIConnections& Get() { return m_Host->GetConnections(); }
    auto& GetText() { return Get().GetInputStrings()->GetElement(0); }

    CTemporaryHome m_Home;
    CPluginTestFilter* m_Filter;
    CTestHost m_Host;
};

} // namespace Lathe::Audio::Plugin
