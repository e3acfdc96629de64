#include "cairn-host/Render.h"

#include "cairn-host/AudioReader.h"
#include "cairn-host/AudioWriter.h"
#include "cairn-host/AutomationFile.h"
#include "cairn-host/Equaliser.h"
#include "cairn-host/Interrupt.h"
#include "cairn-host/Text.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace CairnHost {
namespace {

constexpr int s_MaxBlockSize = 1 << 20;
constexpr double s_MaxTailSeconds = 24.0 * 60.0 * 60.0;

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

// What the texts of the options mean, once the equaliser and its parameters are known.
struct SPlan {
    std::vector<int> m_BlockSizes;
    std::optional<ESubtype> m_Subtype;
    std::vector<SSetting> m_Settings;
    std::vector<SAutomationEvent> m_Events;
};

TResult<SPlan> MakePlan(const SRenderOptions& options, const CParameterTable& parameters) {
    SPlan plan;
    const TResult<std::vector<int>> sizes = ReadBlockSizes(options.m_BlockSizes);
    if (!sizes)
        return sizes.GetFault();
    plan.m_BlockSizes = *sizes;
    // Written so that NaN is refused too.
    if (!(options.m_TailSeconds >= 0.0 && options.m_TailSeconds <= s_MaxTailSeconds))
        return SFault{"--tail " + FormatNumber(options.m_TailSeconds) +
                      ": expected seconds from 0 to " + FormatNumber(s_MaxTailSeconds)};
    if (!options.m_Subtype.empty()) {
        const TResult<ESubtype> subtype = ReadSubtype(options.m_Subtype);
        if (!subtype)
            return subtype.GetFault();
        plan.m_Subtype = *subtype;
    }
    TResult<std::vector<SSetting>> settings = parameters.ReadSettings(options.m_Settings);
    if (!settings)
        return settings.GetFault();
    plan.m_Settings = std::move(*settings);
    if (!options.m_Automation.empty()) {
        TResult<std::vector<SAutomationEvent>> events =
            ReadAutomationFile(options.m_Automation, parameters);
        if (!events)
            return events.GetFault();
        plan.m_Events = std::move(*events);
    }
    return plan;
}

} // namespace

TResult<std::vector<int>> ReadBlockSizes(std::string_view text) {
    std::vector<int> sizes;
    for (const std::string_view piece : Split(text, ',')) {
        const auto size = ParseInteger(Trim(piece));
        if (!size || *size < 1 || *size > s_MaxBlockSize)
            return SFault{"--block-size \"" + std::string(text) + "\": expected frames from 1 to " +
                          std::to_string(s_MaxBlockSize) + ", or several such numbers with commas"};
        sizes.push_back(static_cast<int>(*size));
    }
    return sizes;
}

TResult<SRenderReport> Render(const SRenderOptions& options, CProgress& progress) {
    CEqualiser equaliser;
    const TResult<SPlan> plan = MakePlan(options, equaliser.GetParameters());
    if (!plan)
        return plan.GetFault();
    CAudioReader reader;
    if (CStatus status = reader.Open(options.m_Input); !status)
        return status.GetFault();
    const int rate = reader.GetSampleRate();
    const std::int64_t tail = std::llround(options.m_TailSeconds * rate);
    const std::int64_t expected = reader.GetFrameCount() > 0 ? reader.GetFrameCount() + tail : 0;
    CAudioWriter writer;
    if (CStatus status = writer.Open(options.m_Output, rate, plan->m_Subtype, expected); !status)
        return status.GetFault();

    const int largest = *std::max_element(plan->m_BlockSizes.begin(), plan->m_BlockSizes.end());
    equaliser.Prepare(rate, largest, plan->m_Settings);
    CTailedInput source(reader, tail);
    SBlock input(largest);
    SBlock output(largest);
    std::int64_t frame = 0;
    auto event = plan->m_Events.begin();
    for (std::size_t turn = 0;; turn = (turn + 1) % plan->m_BlockSizes.size()) {
        const TResult<int> count = source.Read(input, plan->m_BlockSizes[turn]);
        if (!count)
            return count.GetFault();
        if (*count == 0)
            break;
        for (; event != plan->m_Events.end() && event->m_Frame < frame + *count; ++event)
            equaliser.MoveTo(event->m_Setting);
        equaliser.Process(input.m_Left.data(), input.m_Right.data(), output.m_Left.data(),
                          output.m_Right.data(), *count);
        if (CStatus status = writer.Write(output.m_Left.data(), output.m_Right.data(), *count);
            !status)
            return status.GetFault();
        frame += *count;
        progress.Update(frame, expected, rate);
        if (IsInterrupted())
            return SFault{options.m_Output + ": not written, as the render was interrupted"};
    }
    progress.Finish();
    if (CStatus status = writer.Close(); !status)
        return status.GetFault();

    SRenderReport report;
    if (event != plan->m_Events.end())
        report.m_Notes.push_back(
            options.m_Automation + ": " + std::to_string(plan->m_Events.end() - event) + " of " +
            std::to_string(plan->m_Events.size()) +
            " events lie behind the end of the audio, at frame " + std::to_string(frame));
    if (writer.GetLimitedCount() > 0)
        report.m_Notes.push_back(options.m_Output + ": " +
                                 std::to_string(writer.GetLimitedCount()) +
                                 " samples beyond full scale, or no numbers, were limited; a "
                                 ".wav of --subtype float keeps them");
    return report;
}

} // namespace CairnHost
