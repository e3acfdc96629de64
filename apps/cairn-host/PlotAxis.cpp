#include "cairn-host/PlotAxis.h"

#include "cairn-host/Text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace CairnHost {
namespace {

constexpr double kLeastReach = 6.0;
constexpr double kMostReach = 200.0;
constexpr double kMostSteps = 10.0;
constexpr std::array<double, 7> kSteps = {1.0, 2.0, 3.0, 6.0, 10.0, 20.0, 50.0};
// Of a step: a curve that touches the frame can't be told from one that leaves it.
constexpr double kRoom = 0.1;
constexpr double kLeastFrequency = 1e-6;

} // namespace

SDecibelAxis FitDecibelAxis(const std::vector<const std::vector<double>*>& curves) {
    double min = -kLeastReach;
    double max = kLeastReach;
    for (const std::vector<double>* curve : curves) {
        for (const double value : *curve) {
            if (!std::isfinite(value))
                continue;
            min = std::min(min, std::max(value, -kMostReach));
            max = std::max(max, std::min(value, kMostReach));
        }
    }
    SDecibelAxis axis = {};
    for (const double step : kSteps) {
        // The least reach is an edge, and needs no room.
        const auto edge = [step](double value) {
            return value <= kLeastReach ? std::ceil(value / step) * step
                                        : std::ceil(value / step + kRoom) * step;
        };
        axis = {-edge(-min), edge(max), step};
        if (axis.m_Max - axis.m_Min <= kMostSteps * step)
            break;
    }
    return axis;
}

std::vector<STick> GetFrequencyTicks(double from, double to) {
    std::vector<STick> ticks;
    double decade = std::pow(10.0, std::floor(std::log10(std::max(from, kLeastFrequency))));
    for (; decade <= to; decade *= 10.0) {
        for (int digit = 1; digit <= 9; ++digit) {
            const double frequency = decade * digit;
            if (frequency < from || frequency > to)
                continue;
            const bool labelled = digit == 1 || digit == 2 || digit == 5;
            ticks.push_back({frequency, labelled ? FrequencyText(frequency) : std::string()});
        }
    }
    return ticks;
}

std::string FrequencyText(double frequency) {
    return frequency < 1000.0 ? FormatNumber(frequency) : FormatNumber(frequency / 1000.0) + "k";
}

} // namespace CairnHost
