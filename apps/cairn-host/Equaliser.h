// The equaliser's parameters and response curves, without audio and without a plug-in around it.
// What stands behind it is known only here.
#pragma once

#include "cairn-host/Parameters.h"

#include <memory>

namespace CairnHost {

// Made: the parameters can be asked. Prepare: values in force, curves current.
class CEqualiser {
public:
    CEqualiser();
    ~CEqualiser();
    CEqualiser(const CEqualiser&) = delete;
    CEqualiser& operator=(const CEqualiser&) = delete;

    const CParameterTable& GetParameters() const;

    // All parameters not named take their defaults; of several settings of one parameter the last
    // holds.
    void Prepare(double sampleRate, const std::vector<SSetting>& settings);
    // As of the last Prepare.
    double GetValue(int parameter) const;

    // Frequencies go in; linear gain, gain in dB or a phase come out, as the name says.
    int GetCurveCount() const;
    std::string GetCurveName(int curve) const;
    // As of the last Prepare.
    double EvaluateCurve(int curve, double frequency) const;

private:
    struct SState;
    std::unique_ptr<SState> m_State;
};

} // namespace CairnHost
