// A picture of level curves against frequency, as .png or .svg.
#pragma once

#include "cairn-host/Result.h"

#include <string>
#include <vector>

namespace CairnHost {

enum class ELineStyle : int {
    Strong,       // Solid and thick.
    StrongDashed, // For a curve that lies on a strong one.
    Dashed,       // The rest are thin and translucent.
    Dotted,
    DashDotted,
};

struct SPlotSeries {
    std::string m_Name;
    // Red, green and blue from 0 to 1.
    double m_Colour[3];
    ELineStyle m_Style;
    // The legend has one row for each number.
    int m_LegendRow;
    // In dB, one for each frequency; what isn't finite isn't drawn.
    std::vector<double> m_Values;
};

struct SPlot {
    std::string m_Title;
    std::string m_Subtitle;
    // In Hz, ascending; at least two.
    std::vector<double> m_Frequencies;
    // In the order of the legend.
    std::vector<SPlotSeries> m_Series;
    // In Hz; what lies beyond is marked as out of reach.
    double m_Nyquist;
};

CStatus DrawPlot(const SPlot& plot, const std::string& path);

} // namespace CairnHost
