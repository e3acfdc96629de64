// Pictures of formulas: a line over one variable, colours over two. As .png or .svg.
#pragma once

#include "cairn-host/Result.h"

#include <string>
#include <vector>

namespace CairnHost {

// A variable that runs from one value to a larger one in equal steps, with both ends met exactly.
struct SSweep {
    double GetValue(int step) const;

    std::string m_Name;
    double m_From = 0.0;
    double m_To = 1.0;
    // One less than there are values.
    int m_Steps = 1;
};

struct SFormulaPicture {
    std::string m_Title;
    std::string m_Subtitle;
};

// One value for each step of x; what isn't finite isn't drawn.
CStatus DrawFormulaCurve(const SFormulaPicture& picture, const SSweep& x,
                         const std::vector<double>& values, const std::string& path);

// For each step of y the values over x; what isn't finite stays grey. A fault beyond 32766 steps.
CStatus DrawFormulaSurface(const SFormulaPicture& picture, const SSweep& x, const SSweep& y,
                           const std::vector<double>& values, const std::string& path);

} // namespace CairnHost
