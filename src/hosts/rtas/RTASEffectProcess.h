// One instance as the host's plug-in library drives it: it turns a block, a control, a rate and a
// chunk into calls of the running instance.
//
// Controls count from 1: the inputs of the instance in order, the first of them the bypass, then
// its outputs.
// Instance made by the library: constructor, InitControls, Initialize.
// Bypass switched by the host: OnControlValueChanged; the next block sees it.
#pragma once

#include "core/containers/DynamicVector.h"
#include "core/events/Command.h"
#include "dsp/streams/AudioStream.h"
#include "hosts/rtas/RTASParamsAdapter.h"
#include "platform/rtas/EffectProcess.h"
#include "plugin/internals/AudioPluginInternals.h"
#include "plugin/midi/MIDICCMessage.h"
#include "plugin/midi/MIDIEvent.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Lathe::Audio::Plugin {
struct CAudioPluginConfig;
}

namespace LatheExt::RTASPlugin {

class CRTASPluginControl;

class CRTASEffectProcess : public CEffectProcessMIDI, public CEffectProcessRTAS {
public:
    // The product's instance.
    CRTASEffectProcess();
    // Takes what the configuration gives away.
    explicit CRTASEffectProcess(Lathe::Audio::Plugin::CAudioPluginConfig config);
    ~CRTASEffectProcess() override;

    // --- Main thread, while no block runs ---

    void InitControls() override;
    void Initialize() override;
    // In hertz. A rate that is there already changes nothing.
    void SetSampleRate(long rate) override;

    // --- Main thread ---

    long GetDelaySamples(long* samples) override;
    // The instance's own chunk holds its whole state as text; all others are the library's.
    long GetChunkSize(std::uint32_t code, long* size) override;
    long GetChunk(std::uint32_t code, SChunkRecord* record) override;
    // A text that can't be read changes nothing, and is no failure.
    long SetChunk(std::uint32_t code, const SChunkRecord* record) override;
    // By the letters of the text; different in every doubtful case.
    long CompareChunk(const SChunkRecord* record, char* isEqual) override;
    // "PcTL": the numbers of the controls on pages of eight, in 16-bit fields.
    const void* QueryTable(std::uint32_t selector, long* size) override;
    // PluginCommands.h tells what there is.
    bool PluginCommand(const char* name, const char* argument, std::string& result) override;

    // --- Any thread ---

    void OnControlValueChanged(long control, long value) LATHE_REALTIME override;

    // --- Audio thread ---

    void RenderAudio(float** inputs, float** outputs, int numSamples) LATHE_REALTIME override;

protected:
    Lathe::Audio::Plugin::CAudioPluginInternals& GetInternals() { return m_Internals; }

private:
    // What the filter sees of a block; the MIDI settings see all.
    static constexpr int s_MaxFilterEvents = 2048;

    using CStreams = std::vector<Lathe::Audio::DSP::CAudioStream>;
    using CMIDIEvents = Lathe::Core::TDynamicVector<Lathe::Audio::MIDI::CMIDIEvent,
                                                    Lathe::Core::CStepGrowthStrategy,
                                                    Lathe::Core::TEqualOperatorCopier>;

    // Construction and preparation.
    void InitFilter();
    void AddPluginControl(CRTASParamAdapter& adapter, bool isOutput);
    void CreateMIDINodes();
    int FindIOConfiguration() const;
    void OnStateChanged() { CountChange(); }

    // A block.
    void TakeMIDIEvents(int numSamples) LATHE_REALTIME;
    void AimStreams(float** inputs, float** outputs, int numSamples) LATHE_REALTIME;
    int GetConnectedInputs() const LATHE_REALTIME;
    bool IsSilent(float** inputs, int numSamples) const LATHE_REALTIME;
    void ProcessStreams(int numSamples, bool isSilent) LATHE_REALTIME;
    void PassThrough(float** inputs, float** outputs, int numSamples) const LATHE_REALTIME;
    void PublishOutputs() LATHE_REALTIME;
    void PushOutputs() LATHE_REALTIME;
    void PostOutputEvent(int output) LATHE_REALTIME;

    bool MakeStateText(std::string& text) const;
    void FillControlPageTable();

    std::atomic<bool> m_Bypass{false};
    Lathe::Audio::Plugin::CAudioPluginInternals m_Internals;
    CRTASParamsAdapter m_InputAdapters;
    CConstRTASParamsAdapter m_OutputAdapters;
    std::uint32_t m_PluginStateChunkID;
    // As many as the filter has channels.
    CStreams m_InputStreams;
    CStreams m_OutputStreams;
    // Read and written by the streams for which the host has no buffer.
    float m_SilentCell = 0.0f;
    float m_DummyCell = 0.0f;
    bool m_IsMIDIEnabled = false;
    // Null where there is none.
    std::unique_ptr<CEffectMIDINode> m_MIDIInputNode;
    std::unique_ptr<CEffectMIDIRTASBufferedOutputNode> m_MIDIOutputNode;
    // The library's; null offline.
    CHostTransport* m_HostTransport = nullptr;
    // The last publish met a reader.
    bool m_OutputsPending = false;
    Lathe::Audio::MIDI::CMIDIEvent m_OutputEvent;
    Lathe::Audio::MIDI::CMIDIEvent m_InputEvent;
    // The last control change of a block.
    Lathe::Audio::Plugin::CMIDICCMessage m_InputMessage;
    // The block's events for the filter; empty between blocks.
    CMIDIEvents m_MIDIEvents;
    // The library's, by their numbers, from InitControls to Initialize; null for its own.
    std::vector<CRTASPluginControl*> m_Controls;
    // Empty until the host asks.
    std::vector<std::uint16_t> m_ControlPageTable;
    Lathe::Core::TCommand<CRTASEffectProcess> m_OnStateChanged;
};

} // namespace LatheExt::RTASPlugin
