#include "cairn-host/PlotAxis.h"

#include "cairn-host/Text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace CairnHost {
namespace {

constexpr double s_LeastReach = 6.0;
constexpr double s_MostReach = 200.0;
constexpr double s_MostSteps = 10.0;
constexpr std::array<double, 7> s_Steps = {1.0, 2.0, 3.0, 6.0, 10.0, 20.0, 50.0};
// Of a step: a curve that touches the frame can't be told from one that leaves it.
constexpr double s_Room = 0.1;
constexpr int s_LeastLabels = 3;
constexpr int s_MostLabels = 8;
// Far enough from the largest double for differences of values.
constexpr double s_MostValue = 1e150;
// Values below are as good as 0.
constexpr double s_LeastValue = 1e-150;
// How far a range without width reaches to both sides, beside its value.
constexpr double s_LeastRange = 0.1;

// Round numbers to both sides of a level scale's end; `step` in dB.
double FitEdge(double reach, double step) {
    return std::max(std::ceil(s_LeastReach / step), std::ceil(reach / step + s_Room)) * step;
}

// 1, 2 or 5 times a power of ten, so that at most `most` of them fit into the width.
double FitStep(double width, int most) {
    const double least = width / most;
    const double decade = std::pow(10.0, std::floor(std::log10(least)));
    for (const double digit : {1.0, 2.0, 5.0}) {
        if (digit * decade >= least)
            return digit * decade;
    }
    return 10.0 * decade;
}

// Labels at the digits from 1 to 9 that are in the list.
std::vector<STick> GetDecadeTicks(double from, double to, std::string_view labelledDigits) {
    std::vector<STick> ticks;
    double decade = std::pow(10.0, std::floor(std::log10(from)));
    for (; decade <= to; decade *= 10.0) {
        for (int digit = 1; digit <= 9; ++digit) {
            const double frequency = decade * digit;
            if (frequency < from || frequency > to)
                continue;
            const char letter = static_cast<char>('0' + digit);
            const bool labelled = labelledDigits.find(letter) != std::string_view::npos;
            ticks.push_back({frequency, labelled ? FrequencyText(frequency) : std::string()});
        }
    }
    return ticks;
}

} // namespace

SDecibelAxis FitDecibelAxis(const std::vector<const std::vector<double>*>& curves) {
    double min = 0.0;
    double max = 0.0;
    for (const std::vector<double>* curve : curves) {
        for (const double value : *curve) {
            if (!std::isfinite(value))
                continue;
            min = std::min(min, std::max(value, -s_MostReach));
            max = std::max(max, std::min(value, s_MostReach));
        }
    }
    SDecibelAxis axis = {};
    for (const double step : s_Steps) {
        axis = {-FitEdge(-min, step), FitEdge(max, step), step};
        if (axis.m_Max - axis.m_Min <= s_MostSteps * step)
            break;
    }
    return axis;
}

std::vector<STick> GetFrequencyTicks(double from, double to) {
    for (const char* digits : {"125", "123456789"}) {
        std::vector<STick> ticks = GetDecadeTicks(from, to, digits);
        const auto labelled = [](const STick& tick) { return !tick.m_Label.empty(); };
        if (std::count_if(ticks.begin(), ticks.end(), labelled) >= s_LeastLabels)
            return ticks;
    }
    // Too narrow for decades to show.
    std::vector<STick> ticks = GetLinearTicks(from, to, s_MostLabels);
    for (STick& tick : ticks)
        tick.m_Label = FrequencyText(tick.m_Value);
    return ticks;
}

std::vector<STick> GetLinearTicks(double from, double to, int most) {
    std::vector<STick> ticks;
    const double step = FitStep(to - from, most);
    const double first = std::ceil(from / step);
    for (int i = 0; i <= most && (first + i) * step <= to; ++i) {
        const double value = (first + i) * step + 0.0; // Not the negative zero.
        ticks.push_back({value, FormatNumber(value)});
    }
    return ticks;
}

SValueRange FindValueRange(const std::vector<double>& values) {
    SValueRange range = {s_MostValue, -s_MostValue};
    for (const double value : values) {
        if (!std::isfinite(value))
            continue;
        range.m_Min = std::min(range.m_Min, std::max(value, -s_MostValue));
        range.m_Max = std::max(range.m_Max, std::min(value, s_MostValue));
    }
    if (range.m_Min > range.m_Max)
        return {0.0, 1.0};
    // Written so that the width of the largest values, too, has room for steps.
    const double largest = std::max(std::abs(range.m_Min), std::abs(range.m_Max));
    const double least = (largest > s_LeastValue ? largest : 1.0) * s_LeastRange;
    if (range.m_Max - range.m_Min < least * 1e-11)
        return {range.m_Min - least, range.m_Max + least};
    return range;
}

std::string FrequencyText(double frequency) {
    if (frequency < 1e3)
        return FormatNumber(frequency);
    return frequency < 1e6 ? FormatNumber(frequency / 1e3) + "k"
                           : FormatNumber(frequency / 1e6) + "M";
}

} // namespace CairnHost
