// The response of the equaliser with given settings, as a table or as a picture.
#pragma once

#include "cairn-host/Result.h"

#include <string>
#include <vector>

namespace CairnHost {

// As given on the command line.
struct SResponseOptions {
    // Its extension decides: .csv, .png or .svg.
    std::string m_Output;
    // "NAME=VALUE".
    std::vector<std::string> m_Settings;
    // All in Hz.
    double m_SampleRate = 48000.0;
    double m_From = 20.0;
    double m_To = 22000.0;
    // Finer than the columns of a picture.
    int m_Points = 2000;
};

// Equal steps in pitch, with both ends met exactly.
std::vector<double> SpaceFrequencies(double from, double to, int count);

CStatus WriteResponse(const SResponseOptions& options);

} // namespace CairnHost
