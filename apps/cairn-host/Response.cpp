#include "cairn-host/Response.h"

#include "cairn-host/Equaliser.h"
#include "cairn-host/OutputFile.h"
#include "cairn-host/ResponsePlot.h"
#include "cairn-host/Text.h"

#include <array>
#include <cmath>
#include <filesystem>

namespace CairnHost {
namespace {

constexpr int s_MinPoints = 2;
constexpr int s_MaxPoints = 100000;
// In Hz.
constexpr double s_MinFrequency = 0.001;
constexpr double s_MaxFrequency = 1e9;

// What a picture shows of each channel.
struct SCurveRow {
    const char* m_Name; // Without the channel.
    const char* m_Label;
    ELineStyle m_Style;
};
constexpr std::array<SCurveRow, 4> s_CurveRows = {{
    {"Frequency Response (Gain dB)", "whole channel", ELineStyle::Strong},
    {"Low Frequency Response (Gain dB)", "low band", ELineStyle::Dashed},
    {"Mid Frequency Response (Gain dB)", "mid band", ELineStyle::Dotted},
    {"High Frequency Response (Gain dB)", "high band", ELineStyle::DashDotted},
}};

struct SChannelRow {
    const char* m_Suffix;
    const char* m_StereoLabel;
    const char* m_MidSideLabel;
    double m_Colour[3];
};
// Blue and orange stay apart for all eyes.
constexpr std::array<SChannelRow, 2> s_ChannelRows = {{
    {" (1)", "Left", "Mid", {0.05, 0.36, 0.66}},
    {" (2)", "Right", "Side", {0.84, 0.33, 0.05}},
}};

CStatus CheckRange(const char* option, double value) {
    // Written so that NaN is refused too.
    if (value >= s_MinFrequency && value <= s_MaxFrequency)
        return {};
    return SFault{std::string(option) + " " + FormatNumber(value) + ": expected Hz from " +
                  FormatNumber(s_MinFrequency) + " to " + FormatNumber(s_MaxFrequency)};
}

CStatus CheckOptions(const SResponseOptions& options) {
    for (const auto& [option, value] : {std::pair{"--rate", options.m_SampleRate},
                                        {"--from", options.m_From},
                                        {"--to", options.m_To}}) {
        if (CStatus status = CheckRange(option, value); !status)
            return status;
    }
    if (options.m_From >= options.m_To)
        return SFault{"--from " + FormatNumber(options.m_From) + ": expected less than --to, " +
                      FormatNumber(options.m_To)};
    if (options.m_Points < s_MinPoints || options.m_Points > s_MaxPoints)
        return SFault{"--points " + std::to_string(options.m_Points) + ": expected " +
                      std::to_string(s_MinPoints) + " to " + std::to_string(s_MaxPoints)};
    return {};
}

CStatus WriteTable(const CEqualiser& equaliser, const std::vector<double>& frequencies,
                   const std::string& path) {
    COutputFile file;
    if (CStatus status = file.Open(path); !status)
        return status;
    std::string line = "Frequency";
    for (int i = 0; i < equaliser.GetCurveCount(); ++i)
        line += ',' + QuoteCsvField(equaliser.GetCurveName(i));
    for (const double frequency : frequencies) {
        line += '\n';
        if (!file.Write(line.data(), line.size()))
            return file.GetFault();
        line = FormatExactly(frequency);
        for (int i = 0; i < equaliser.GetCurveCount(); ++i)
            line += ',' + FormatExactly(equaliser.EvaluateCurve(i, frequency));
    }
    line += '\n';
    file.Write(line.data(), line.size());
    return file.Commit();
}

int FindCurve(const CEqualiser& equaliser, const std::string& name) {
    for (int i = 0; i < equaliser.GetCurveCount(); ++i) {
        if (equaliser.GetCurveName(i) == name)
            return i;
    }
    return -1;
}

SPlot MakePlot(const CEqualiser& equaliser, std::vector<double> frequencies, double sampleRate) {
    SPlot plot;
    plot.m_Subtitle = "Marrow's Cairn EQ 4 (Dual) at " + FormatNumber(sampleRate / 1000.0) + " kHz";
    plot.m_Frequencies = std::move(frequencies);
    plot.m_Nyquist = sampleRate / 2.0;
    const CParameterTable& parameters = equaliser.GetParameters();
    const TResult<int> mode = parameters.Find("Stereo Mode");
    bool midSide = false;
    plot.m_Title = "Frequency response";
    if (mode) {
        const SParameter& parameter = parameters.GetParameters()[static_cast<std::size_t>(*mode)];
        const double value = equaliser.GetValue(*mode);
        plot.m_Title += " in " + ValueToText(parameter, value) + " mode";
        midSide = value > parameter.m_Min;
    }
    std::array<std::size_t, s_ChannelRows.size()> sums = {};
    for (std::size_t channel = 0; channel < s_ChannelRows.size(); ++channel) {
        const SChannelRow& row = s_ChannelRows[channel];
        sums[channel] = plot.m_Series.size();
        for (const SCurveRow& curve : s_CurveRows) {
            const int index = FindCurve(equaliser, std::string(curve.m_Name) + row.m_Suffix);
            if (index < 0)
                continue;
            SPlotSeries series = {std::string(midSide ? row.m_MidSideLabel : row.m_StereoLabel) +
                                      ": " + curve.m_Label,
                                  {row.m_Colour[0], row.m_Colour[1], row.m_Colour[2]},
                                  curve.m_Style,
                                  static_cast<int>(channel),
                                  {}};
            for (const double frequency : plot.m_Frequencies)
                series.m_Values.push_back(equaliser.EvaluateCurve(index, frequency));
            plot.m_Series.push_back(std::move(series));
        }
    }
    // Equal channels would hide each other.
    SPlotSeries& second = plot.m_Series[sums[1]];
    if (second.m_Values == plot.m_Series[sums[0]].m_Values)
        second.m_Style = ELineStyle::StrongDashed;
    return plot;
}

} // namespace

std::vector<double> SpaceFrequencies(double from, double to, int count) {
    std::vector<double> frequencies;
    frequencies.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        frequencies.push_back(from * std::pow(to / from, static_cast<double>(i) / (count - 1)));
    frequencies.back() = to;
    return frequencies;
}

CStatus WriteResponse(const SResponseOptions& options) {
    if (CStatus status = CheckOptions(options); !status)
        return status;
    const std::string extension = std::filesystem::path(options.m_Output).extension().string();
    const bool table = EqualsIgnoringCase(extension, ".csv");
    if (!table && !EqualsIgnoringCase(extension, ".png") && !EqualsIgnoringCase(extension, ".svg"))
        return SFault{options.m_Output + ": unknown extension: expected .csv, .png or .svg"};

    CEqualiser equaliser;
    const TResult<std::vector<SSetting>> settings =
        equaliser.GetParameters().ReadSettings(options.m_Settings);
    if (!settings)
        return settings.GetFault();
    equaliser.Prepare(options.m_SampleRate, *settings);
    std::vector<double> frequencies =
        SpaceFrequencies(options.m_From, options.m_To, options.m_Points);
    if (table)
        return WriteTable(equaliser, frequencies, options.m_Output);
    return DrawPlot(MakePlot(equaliser, std::move(frequencies), options.m_SampleRate),
                    options.m_Output);
}

} // namespace CairnHost
