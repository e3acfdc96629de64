// The host's side of one instance: its parameter objects, its buffers, and a block as a host's
// adaptor calls it.
#pragma once

#include "datamodel/objects/capture/MTCaptureParam.h"
#include "dsp/streams/AudioStream.h"
#include "platform/TemporaryHome.h"
#include "plugin/internals/AudioPluginConfig.h"
#include "plugin/internals/AudioPluginInternals.h"
#include "plugin/midi/MIDIEvent.h"
#include "plugin/settings/AudioPluginFilePathsBase.h"
#include "plugin/settings/AudioPluginStaticSettings.h"
#include "serialization/XmlDataObject.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace Lathe::Audio::Plugin {

// Below the home that a test has just made.
class CTestPaths : public CAudioPluginFilePathsBase {
public:
    explicit CTestPaths(const IConstPackageInfo*)
        : CAudioPluginFilePathsBase(In("data"), In("settings"), In("user")) {}

private:
    static std::string In(const char* name) { return std::string(::getenv("HOME")) + "/" + name; }
};
using CTestSettings = TAudioPluginConfig<CTestPaths>;

// Counts how often it runs, on any thread.
class CCountCommand : public Core::ICommand {
public:
    void Execute() override { ++m_Count; }
    std::atomic<int> m_Count{0};
};

template <class I, class IVectorOf>
class THostParams : public IVectorOf {
public:
    explicit THostParams(const DSP::IConstParamInfos& infos) {
        for (int i = 0; i < infos.GetCount(); ++i)
            m_Params.push_back(
                std::make_unique<DataModel::Objects::CMTCaptureParam>(infos.GetElement(i)));
    }
    int GetCount() const override { return static_cast<int>(m_Params.size()); }
    const I& GetElement(int index) const override { return *m_Params[std::size_t(index)]; }
    I& GetElement(int index) override { return *m_Params[std::size_t(index)]; }

private:
    std::vector<std::unique_ptr<DataModel::Objects::CMTCaptureParam>> m_Params;
};

class CTestHost {
public:
    static constexpr int s_MaxFrames = 512;

    // Settings, if none are given, are the host's own, in the home of the test.
    explicit CTestHost(std::unique_ptr<DSP::IFilter> filter, CAudioPluginConfig config = {})
        : m_Internals(Complete(config, std::move(filter))),
          m_Inputs(m_Internals.GetInputParamInfos()),
          m_Outputs(m_Internals.GetOutputParamInfos()) {
        for (std::size_t c = 0; c < 2; ++c) {
            m_InputSamples[c].resize(s_MaxFrames);
            m_OutputSamples[c].resize(s_MaxFrames);
        }
    }

    void Connect(Core::ICommand* stateChanged = nullptr, Core::ICommand* outputsUpdated = nullptr) {
        m_Internals.ConnectHost(m_Inputs, m_Outputs, stateChanged, outputsUpdated);
    }
    void Prepare(double sampleRate = 48000.0, int maxBlockSize = s_MaxFrames, bool reset = true) {
        DSP::CFilterInitInfo info;
        info.m_ResetToDefaults = reset;
        info.m_MaxBlockSize = maxBlockSize;
        m_Internals.PrepareToProcess(sampleRate, info);
    }
    // Fills all input samples with the level; what comes out is in m_OutputSamples.
    void Block(int frames = 64, float level = 0.5f) LATHE_REALTIME {
        for (std::size_t c = 0; c < 2; ++c) {
            std::fill_n(m_InputSamples[c].begin(), frames, level);
            m_InputArray[c].Aim(m_InputSamples[c].data(), frames);
            m_OutputArray[c].Aim(m_OutputSamples[c].data(), frames);
        }
        DSP::CAudioStreams inputs(m_InputArray, 2, false);
        DSP::CAudioStreams outputs(m_OutputArray, 2, false);
        m_Internals.GetBypassManager().SetBypass(m_Inputs.GetElement(0).GetValue() > 0.5);
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
    }
    // One control change, before a block.
    bool Control(int channel, int number, int value) LATHE_REALTIME {
        const unsigned char bytes[] = {static_cast<unsigned char>(0xB0 + channel - 1),
                                       static_cast<unsigned char>(number),
                                       static_cast<unsigned char>(value)};
        CMIDICCMessage& last = m_Internals.GetMIDIController().GetLastMessage();
        if (!m_Internals.HandleMIDIEvent(MIDI::CMIDIEvent(bytes, 3), m_Message))
            return false;
        last.Set(m_Message, true);
        return true;
    }

    CAudioPluginInternals* operator->() { return &m_Internals; }
    std::string GetState() const {
        Serialization::CXmlDataObject document("Preset");
        EXPECT_TRUE(m_Internals.SerializeState(document));
        char* text = nullptr;
        document.GetText(text);
        return std::unique_ptr<char[]>(text).get();
    }
    bool SetState(const std::string& text) {
        Serialization::CXmlDataObject document("Preset");
        return document.Parse(text.data(), static_cast<int>(text.size())) &&
               m_Internals.DeSerializeState(document);
    }
    double GetParam(int index) { return m_Inputs.GetElement(index).GetValue(); }
    void SetParam(int index, double value) { m_Inputs.GetElement(index).SetValue(value); }

    std::vector<float> m_InputSamples[2];
    std::vector<float> m_OutputSamples[2];
    bool m_HadVariations = false;
    // Of all blocks.
    int m_SentEvents = 0;
    MIDI::CMIDIEvent m_LastSent;
    bool m_OutputsPending = false;

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
        if (m_Internals.GetOutputSync().IsTimeToSync()) {
            m_Internals.GetOutputSync().ResetCounter();
            m_Internals.ComputeOutputs();
            for (int i = 0; i < m_Outputs.GetCount(); ++i) {
                if (m_Internals.MakeOutputMIDIEvent(i, m_LastSent))
                    ++m_SentEvents;
            }
            m_OutputsPending = !m_Internals.PublishOutputs(false);
        }
        if (m_OutputsPending)
            m_OutputsPending = !m_Internals.PublishOutputs(false);
    }

    std::unique_ptr<CTestSettings> m_Settings;
    CAudioPluginInternals m_Internals;

public:
    THostParams<DataModel::Objects::ICaptureParam, IInputParams> m_Inputs;
    THostParams<DataModel::Objects::IConstCaptureParam, IOutputParams> m_Outputs;

private:
    DSP::CAudioStream m_InputArray[2];
    DSP::CAudioStream m_OutputArray[2];
    CMIDICCMessage m_Message;
};

} // namespace Lathe::Audio::Plugin
