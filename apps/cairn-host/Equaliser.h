// The equaliser as the rest of the program sees it: parameters, blocks of audio and response
// curves. What stands behind it is known only here.
#pragma once

#include "cairn-host/Parameters.h"

#include <memory>

namespace CairnHost {

// Made: the parameters can be asked. Prepare: values in force, curves current. Then blocks, each of
// them with the moves that begin at its first frame.
class CEqualiser {
public:
    CEqualiser();
    ~CEqualiser();
    CEqualiser(const CEqualiser&) = delete;
    CEqualiser& operator=(const CEqualiser&) = delete;

    const CParameterTable& GetParameters() const;

    // All parameters not named take their defaults; of several settings of one parameter the last
    // holds. The signal state is that of a new filter.
    void Prepare(double sampleRate, int maxBlockSize, const std::vector<SSetting>& settings);
    // The value of the last Prepare or move.
    double GetValue(int parameter) const;

    // The parameter ramps to the value over the next block. A later move of it before that block
    // takes the place of this one.
    void MoveTo(const SSetting& setting);
    // At most the largest block's number of frames, from 1 on. Inputs are only read.
    void Process(float* inputLeft, float* inputRight, float* outputLeft, float* outputRight,
                 int frames);

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
