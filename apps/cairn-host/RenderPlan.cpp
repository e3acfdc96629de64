#include "cairn-host/RenderPlan.h"

#include "cairn-host/MidiMap.h"
#include "cairn-host/Render.h"
#include "cairn-host/Text.h"

#include <bit>
#include <filesystem>

namespace CairnHost {
namespace {

constexpr int s_MaxBlockSize = 1 << 20;
constexpr double s_MaxTailSeconds = 24.0 * 60.0 * 60.0;
// The slowest whole one that a MIDI file can hold.
constexpr double s_MinTempo = 4.0;
constexpr double s_MaxTempo = 1000.0;
constexpr int s_MaxNumerator = 99;
constexpr int s_MaxDenominator = 64;

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

TResult<SMeter> ReadMeter(const std::string& text) {
    const auto parts = Split(text, '/');
    const auto numerator = ParseInteger(parts.front());
    const auto denominator = ParseInteger(parts.back());
    if (parts.size() != 2 || !numerator || *numerator < 1 || *numerator > s_MaxNumerator ||
        !denominator || *denominator < 1 || *denominator > s_MaxDenominator ||
        !std::has_single_bit(static_cast<std::uint64_t>(*denominator)))
        return SFault{"--meter \"" + text + "\": expected N/M, N from 1 to " +
                      std::to_string(s_MaxNumerator) + " and M 1, 2, 4 and so on up to " +
                      std::to_string(s_MaxDenominator)};
    return SMeter{static_cast<int>(*numerator), static_cast<int>(*denominator)};
}

CStatus CheckNumber(const char* option, double value, double from, double to, const char* unit) {
    // Written so that NaN is refused too.
    if (value >= from && value <= to)
        return {};
    return SFault{std::string(option) + " " + FormatNumber(value) + ": expected " + unit +
                  " from " + FormatNumber(from) + " to " + FormatNumber(to)};
}

// Devices can be named twice.
bool IsSameFile(const std::string& a, const std::string& b) {
    std::error_code error;
    if (std::filesystem::exists(a, error) && !std::filesystem::is_regular_file(a, error))
        return false;
    const auto one = std::filesystem::weakly_canonical(std::filesystem::absolute(a), error);
    const auto other = std::filesystem::weakly_canonical(std::filesystem::absolute(b), error);
    return one == other || std::filesystem::equivalent(a, b, error);
}

// Only the output may be the input.
CStatus CheckDistinct(const SRenderOptions& options) {
    const std::pair<const char*, const std::string*> written[] = {
        {"OUTPUT", &options.m_Output},
        {"--midi-out", &options.m_MidiOut},
        {"--save-preset", &options.m_SavePreset},
        {"--state-out", &options.m_StateOut}};
    const std::pair<const char*, const std::string*> read[] = {
        {"INPUT", &options.m_Input},
        {"--automation", &options.m_Automation},
        {"--midi", &options.m_Midi},
        {"--preset", &options.m_Preset},
        {"--state-in", &options.m_StateIn}};
    for (const auto& one : written) {
        const auto check = [&one](const auto& other) -> CStatus {
            if (one.second->empty() || other.second->empty() ||
                !IsSameFile(*one.second, *other.second))
                return {};
            return SFault{*one.second + ": is named by both " + one.first + " and " + other.first};
        };
        for (const auto* other = &one + 1; other != std::end(written); ++other) {
            if (CStatus status = check(*other); !status)
                return status;
        }
        for (const auto& other : read) {
            if (one.second == &options.m_Output && other.second == &options.m_Input)
                continue;
            if (CStatus status = check(other); !status)
                return status;
        }
    }
    return {};
}

// What is read of a file when one is given.
template <class TRead, class TValue>
CStatus ReadIfGiven(const std::string& path, TRead read, TValue& value) {
    if (path.empty())
        return {};
    TResult<TValue> result = read(path);
    if (!result)
        return result.GetFault();
    value = std::move(*result);
    return {};
}

CStatus ReadFiles(const SRenderOptions& options, const CParameterTable& table, SRenderPlan& plan) {
    const auto readAutomation = [&table](const std::string& path) {
        return ReadAutomationFile(path, table);
    };
    if (CStatus status = ReadIfGiven(options.m_Automation, readAutomation, plan.m_Automation);
        !status)
        return status;
    if (CStatus status = ReadIfGiven(options.m_Midi, ReadMidiFile, plan.m_Midi); !status)
        return status;
    return ReadIfGiven(options.m_StateIn, ReadStateFile, plan.m_State);
}

} // namespace

TResult<SRenderPlan> MakeRenderPlan(const SRenderOptions& options, const CParameterTable& table) {
    SRenderPlan plan;
    const TResult<std::vector<int>> sizes = ReadBlockSizes(options.m_BlockSizes);
    if (!sizes)
        return sizes.GetFault();
    plan.m_BlockSizes = *sizes;
    if (CStatus status =
            CheckNumber("--tail", options.m_TailSeconds, 0.0, s_MaxTailSeconds, "seconds");
        !status)
        return status.GetFault();
    if (CStatus status = CheckNumber("--tempo", options.m_Tempo, s_MinTempo, s_MaxTempo,
                                     "quarter notes a minute");
        !status)
        return status.GetFault();
    const TResult<SMeter> meter = ReadMeter(options.m_Meter);
    if (!meter)
        return meter.GetFault();
    plan.m_Meter = *meter;
    if (!options.m_Subtype.empty()) {
        const TResult<ESubtype> subtype = ReadSubtype(options.m_Subtype);
        if (!subtype)
            return subtype.GetFault();
        plan.m_Subtype = *subtype;
    }
    TResult<std::vector<SSetting>> settings = table.ReadSettings(options.m_Settings);
    if (!settings)
        return settings.GetFault();
    plan.m_Settings = std::move(*settings);
    for (const std::string& text : options.m_MidiMaps) {
        TResult<std::string> map = ReadMidiMap(text, table);
        if (!map)
            return map.GetFault();
        plan.m_MidiMaps.push_back(std::move(*map));
    }
    if (CStatus status = CheckDistinct(options); !status)
        return status.GetFault();
    if (CStatus status = ReadFiles(options, table, plan); !status)
        return status.GetFault();
    return plan;
}

} // namespace CairnHost
