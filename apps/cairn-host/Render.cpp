#include "cairn-host/Render.h"

#include "cairn-host/AudioReader.h"
#include "cairn-host/Controls.h"
#include "cairn-host/Equaliser.h"
#include "cairn-host/HostInstance.h"
#include "cairn-host/Interrupt.h"
#include "cairn-host/Module.h"
#include "cairn-host/PresetStore.h"
#include "cairn-host/RenderPlan.h"
#include "cairn-host/SideOutputs.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace CairnHost {
namespace {

constexpr double s_TicksPerQuarter = 960000.0;
constexpr std::size_t s_MidiOutRoom = 8192;

// Two channels of one block.
struct SBlock {
    explicit SBlock(int size)
        : m_Left(static_cast<std::size_t>(size)), m_Right(static_cast<std::size_t>(size)) {}
    std::vector<float> m_Left;
    std::vector<float> m_Right;
};

// The input's frames, and behind them the frames of silence.
class CTailedInput {
public:
    CTailedInput(CAudioReader& reader, std::int64_t tailFrames)
        : m_Reader(reader), m_TailFrames(tailFrames) {}

    // Fewer frames than asked for only at the very end.
    TResult<int> Read(SBlock& block, int frames) {
        int count = 0;
        if (!m_ReaderAtEnd) {
            TResult<int> read = m_Reader.Read(block.m_Left.data(), block.m_Right.data(), frames);
            if (!read)
                return read;
            count = *read;
            m_ReaderAtEnd = count < frames;
        }
        const int silent = static_cast<int>(std::min<std::int64_t>(frames - count, m_TailFrames));
        std::fill_n(block.m_Left.begin() + count, silent, 0.0f);
        std::fill_n(block.m_Right.begin() + count, silent, 0.0f);
        m_TailFrames -= silent;
        return count + silent;
    }

private:
    CAudioReader& m_Reader;
    std::int64_t m_TailFrames;
    bool m_ReaderAtEnd = false;
};

struct SControlEvent {
    std::int64_t m_Frame;
    int m_Control;
    std::int32_t m_Value;
};

// The plug-in between the file that is read and those that are written.
class CRenderer {
public:
    CRenderer(const SRenderOptions& options, const SRenderPlan& plan, const CModule& module)
        : m_Options(options),
          m_Plan(plan),
          m_LargestBlock(*std::max_element(plan.m_BlockSizes.begin(), plan.m_BlockSizes.end())),
          m_Instance(module),
          m_Input(m_LargestBlock),
          m_Output(m_LargestBlock),
          m_MidiOut(s_MidiOutRoom) {}

    // The rate in hertz.
    CStatus Prepare(int sampleRate, const CParameterTable& table);
    CStatus ProcessAll(CAudioReader& reader, CAudioWriter& writer, CProgress& progress);
    // Behind the last block.
    CStatus FillFiles(CSideOutputs& files) {
        return files.Fill(m_Instance, m_Sent, m_Plan.m_Meter);
    }

    std::int64_t GetTailFrames() const {
        return std::llround(m_Options.m_TailSeconds * m_SampleRate);
    }
    // As of the end.
    std::vector<std::string> TakeNotes();

private:
    CStatus Configure(const CParameterTable& table);
    CStatus LoadState();
    CStatus SetSettings(const CParameterTable& table);
    CStatus ScheduleEvents(const CParameterTable& table);
    CStatus Settle();
    CStatus ProcessBlock(int frames);
    CStatus Render(int frames, std::span<const RTASMIDIEvent> midi, bool isPlaying);
    RTASTransport MakeTransport(bool isPlaying) const;

    const SRenderOptions& m_Options;
    const SRenderPlan& m_Plan;
    int m_LargestBlock;
    CHostInstance m_Instance;
    int m_SampleRate = 0;
    int m_Delay = 0; // In frames.
    SBlock m_Input;
    SBlock m_Output;
    std::int64_t m_Frame = 0;
    std::vector<SControlEvent> m_Events;
    std::size_t m_NextEvent = 0;
    std::size_t m_NextMidi = 0;
    std::vector<RTASMIDIEvent> m_MidiOut;
    std::vector<SMidiEvent> m_Sent;
    std::vector<std::string> m_Notes;
};

CStatus CRenderer::Prepare(int sampleRate, const CParameterTable& table) {
    m_SampleRate = sampleRate;
    if (CStatus status = m_Instance.Open(sampleRate, m_LargestBlock); !status)
        return status;
    const TResult<int> delay = m_Instance.GetDelay();
    if (!delay)
        return delay.GetFault();
    m_Delay = std::max(*delay, 0);
    if (CStatus status = Configure(table); !status)
        return status;
    return Settle();
}

CStatus CRenderer::Configure(const CParameterTable& table) {
    if (CStatus status = LoadState(); !status)
        return status;
    if (!m_Options.m_Preset.empty()) {
        if (CStatus status = LoadPreset(m_Instance, m_Options.m_Preset); !status)
            return status;
    }
    // A map can narrow what a control spans, so the settings come before it.
    if (CStatus status = SetSettings(table); !status)
        return status;
    for (std::size_t i = 0; i < m_Plan.m_MidiMaps.size(); ++i) {
        const TResult<std::string> mapped = m_Instance.Command("map-midi", m_Plan.m_MidiMaps[i]);
        if (!mapped)
            return SFault{"--midi-map \"" + m_Options.m_MidiMaps[i] +
                          "\": " + mapped.GetFault().m_Text};
    }
    return ScheduleEvents(table);
}

CStatus CRenderer::LoadState() {
    for (const SChunk& chunk : m_Plan.m_State) {
        if (CStatus status = m_Instance.SetChunk(chunk.m_Code, chunk.m_Record); !status)
            return SFault{m_Options.m_StateIn + ": " + status.GetFault().m_Text};
    }
    // A plug-in drops what it can't read without a word.
    for (const SChunk& chunk : m_Plan.m_State) {
        if (!m_Instance.HoldsChunk(chunk.m_Code, chunk.m_Record))
            m_Notes.push_back(m_Options.m_StateIn + ": the plug-in didn't take the chunk \"" +
                              CodeToText(chunk.m_Code) + "\" as it is");
    }
    return {};
}

CStatus CRenderer::SetSettings(const CParameterTable& table) {
    for (const SSetting& setting : m_Plan.m_Settings) {
        const TResult<std::int32_t> value = ToControlValue(m_Instance, table, setting);
        if (!value)
            return SFault{"--set: " + value.GetFault().m_Text};
        const int control = GetControlNumber(table, setting.m_Parameter);
        if (CStatus status = m_Instance.SetControl(control, *value); !status)
            return status;
    }
    return {};
}

CStatus CRenderer::ScheduleEvents(const CParameterTable& table) {
    for (const SAutomationEvent& event : m_Plan.m_Automation) {
        const TResult<std::int32_t> value = ToControlValue(m_Instance, table, event.m_Setting);
        if (!value)
            return SFault{m_Options.m_Automation + ": " + value.GetFault().m_Text};
        m_Events.push_back(
            {event.m_Frame, GetControlNumber(table, event.m_Setting.m_Parameter), *value});
    }
    return {};
}

// Values ramp over the block behind their change. A frame of silence, before the time line runs,
// brings them to where the first frame of the file shall find them.
CStatus CRenderer::Settle() {
    m_Input.m_Left[0] = m_Input.m_Right[0] = 0.0f;
    return Render(1, {}, false);
}

CStatus CRenderer::ProcessAll(CAudioReader& reader, CAudioWriter& writer, CProgress& progress) {
    const std::int64_t expected =
        reader.GetFrameCount() > 0 ? reader.GetFrameCount() + GetTailFrames() : 0;
    // What the plug-in delays comes out behind the end, and as much is dropped at the start.
    CTailedInput source(reader, GetTailFrames() + m_Delay);
    int toDrop = m_Delay;
    for (std::size_t turn = 0;; turn = (turn + 1) % m_Plan.m_BlockSizes.size()) {
        const TResult<int> count = source.Read(m_Input, m_Plan.m_BlockSizes[turn]);
        if (!count)
            return count.GetFault();
        if (*count == 0)
            break;
        if (CStatus status = ProcessBlock(*count); !status)
            return status;
        const int dropped = std::min(toDrop, *count);
        toDrop -= dropped;
        if (CStatus status = writer.Write(m_Output.m_Left.data() + dropped,
                                          m_Output.m_Right.data() + dropped, *count - dropped);
            !status)
            return status;
        progress.Update(m_Frame, expected, m_SampleRate);
        if (IsInterrupted())
            return SFault{m_Options.m_Output + ": not written, as the render was interrupted"};
    }
    progress.Finish();
    return {};
}

CStatus CRenderer::ProcessBlock(int frames) {
    const std::int64_t end = m_Frame + frames;
    for (; m_NextEvent < m_Events.size() && m_Events[m_NextEvent].m_Frame < end; ++m_NextEvent) {
        const SControlEvent& event = m_Events[m_NextEvent];
        if (CStatus status = m_Instance.SetControl(event.m_Control, event.m_Value); !status)
            return status;
    }
    std::vector<RTASMIDIEvent> midi;
    for (; m_NextMidi < m_Plan.m_Midi.size(); ++m_NextMidi) {
        const SMidiEvent& event = m_Plan.m_Midi[m_NextMidi];
        const double frame = std::round(event.m_Seconds * m_SampleRate);
        if (frame >= static_cast<double>(end))
            break;
        RTASMIDIEvent due = {
            static_cast<std::int32_t>(frame - static_cast<double>(m_Frame)), event.m_Length, {}};
        std::copy(event.m_Data.begin(), event.m_Data.end(), due.data);
        midi.push_back(due);
    }
    if (CStatus status = Render(frames, midi, true); !status)
        return status;
    m_Frame = end;
    return {};
}

CStatus CRenderer::Render(int frames, std::span<const RTASMIDIEvent> midi, bool isPlaying) {
    float* inputs[] = {m_Input.m_Left.data(), m_Input.m_Right.data()};
    float* outputs[] = {m_Output.m_Left.data(), m_Output.m_Right.data()};
    const RTASTransport transport = MakeTransport(isPlaying);
    RTASRender block = {};
    block.inputs = inputs;
    block.outputs = outputs;
    block.numSamples = frames;
    block.midiIn = midi.data();
    block.midiInCount = static_cast<std::int32_t>(midi.size());
    block.midiOut = m_MidiOut.data();
    block.midiOutRoom = static_cast<std::int32_t>(m_MidiOut.size());
    block.transport = &transport;
    if (CStatus status = m_Instance.Process(block); !status)
        return status;
    for (int i = 0; i < std::min(block.midiOutCount, block.midiOutRoom); ++i) {
        const RTASMIDIEvent& sent = m_MidiOut[static_cast<std::size_t>(i)];
        const double frame = static_cast<double>(m_Frame) + sent.offset;
        SMidiEvent event = {frame / m_SampleRate, std::clamp(sent.length, 0, 4), {}};
        std::copy(std::begin(sent.data), std::end(sent.data), event.m_Data.begin());
        if (event.m_Length > 0 && isPlaying)
            m_Sent.push_back(event);
    }
    return {};
}

RTASTransport CRenderer::MakeTransport(bool isPlaying) const {
    RTASTransport transport = {};
    transport.isPlaying = isPlaying ? 1 : 0;
    transport.tempo = m_Options.m_Tempo;
    transport.meterNumerator = m_Plan.m_Meter.m_Numerator;
    transport.meterDenominator = m_Plan.m_Meter.m_Denominator;
    transport.samplePosition = m_Frame;
    transport.tickPosition = std::llround(static_cast<double>(m_Frame) / m_SampleRate *
                                          m_Options.m_Tempo / 60.0 * s_TicksPerQuarter);
    return transport;
}

std::vector<std::string> CRenderer::TakeNotes() {
    const auto note = [&](const std::string& path, std::size_t left, std::size_t all) {
        if (left > 0)
            m_Notes.push_back(path + ": " + std::to_string(left) + " of " + std::to_string(all) +
                              " events lie behind the end of the audio, at frame " +
                              std::to_string(m_Frame - m_Delay));
    };
    note(m_Options.m_Automation, m_Events.size() - m_NextEvent, m_Events.size());
    note(m_Options.m_Midi, m_Plan.m_Midi.size() - m_NextMidi, m_Plan.m_Midi.size());
    if (!m_Options.m_MidiOut.empty() && m_Sent.empty())
        m_Notes.push_back(m_Options.m_MidiOut + ": holds no events, as the plug-in sent none");
    return std::move(m_Notes);
}

} // namespace

TResult<SRenderReport> Render(const SRenderOptions& options, CProgress& progress) {
    const CEqualiser equaliser;
    const CParameterTable table = DescribeControls(equaliser);
    const TResult<SRenderPlan> plan = MakeRenderPlan(options, table);
    if (!plan)
        return plan.GetFault();
    CAudioReader reader;
    if (CStatus status = reader.Open(options.m_Input); !status)
        return status.GetFault();
    CModule module;
    if (CStatus status = module.Load(options.m_Module); !status)
        return status.GetFault();
    CRenderer renderer(options, *plan, module);
    if (CStatus status = renderer.Prepare(reader.GetSampleRate(), table); !status)
        return status.GetFault();
    const std::int64_t expected =
        reader.GetFrameCount() > 0 ? reader.GetFrameCount() + renderer.GetTailFrames() : 0;
    // Until here there is nothing to clean up: an interrupt ends even the wait for a pipe at once.
    WatchForInterrupt();
    CAudioWriter writer;
    if (CStatus status =
            writer.Open(options.m_Output, reader.GetSampleRate(), plan->m_Subtype, expected);
        !status)
        return status.GetFault();
    CSideOutputs files(options);
    if (CStatus status = files.Open(); !status)
        return status.GetFault();
    if (CStatus status = renderer.ProcessAll(reader, writer, progress); !status)
        return status.GetFault();
    if (CStatus status = renderer.FillFiles(files); !status)
        return status.GetFault();
    if (CStatus status = writer.Close(); !status)
        return status.GetFault();
    if (CStatus status = files.Commit(); !status)
        return status.GetFault();

    SRenderReport report;
    report.m_Notes = renderer.TakeNotes();
    if (writer.GetLimitedCount() > 0)
        report.m_Notes.push_back(options.m_Output + ": " +
                                 std::to_string(writer.GetLimitedCount()) +
                                 " samples beyond full scale, or no numbers, were limited; a "
                                 ".wav of --subtype float keeps them");
    return report;
}

} // namespace CairnHost
