// Where the lines and labels of a plot's axes stand: round numbers that fit the data.
#pragma once

#include <string>
#include <vector>

namespace CairnHost {

struct SDecibelAxis {
    double m_Min;
    double m_Max;
    double m_Step;
};

// The smallest axis of whole steps that holds all finite values with a little room, and at least
// 6 dB to both sides of 0. Values beyond +-200 dB don't widen it further.
SDecibelAxis FitDecibelAxis(const std::vector<const std::vector<double>*>& curves);

struct STick {
    // In the units of its axis.
    double m_Value;
    // Empty on the minor lines.
    std::string m_Label;
};

// From `from` to `to` in Hz: a labelled line at 1, 2 and 5 of each decade, minor lines between.
// Narrow ranges get more labels.
std::vector<STick> GetFrequencyTicks(double from, double to);

// From `from` to `to`, which is more: at most `most` labelled lines of round numbers.
std::vector<STick> GetLinearTicks(double from, double to, int most);

struct SValueRange {
    double m_Min;
    double m_Max;
};
// Holds all finite values, and is never empty. Values beyond +-1e150 don't widen it further.
SValueRange FindValueRange(const std::vector<double>& values);

// "20", "1k", "1.5k".
std::string FrequencyText(double frequency);

} // namespace CairnHost
