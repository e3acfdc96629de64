// Enters this library's functions in the registry of classes that can be made by id.
#include "core/runtime/ObjectsFactory.h"
#include "dsp/algorithm/BiquadFrequencyResponse.h"

namespace Lathe::Audio::DSP {

namespace {

const Runtime::CFactoryRegistration<Algorithm::CBiquadGain, Math::IFunction> s_BiquadGain;
const Runtime::CFactoryRegistration<Algorithm::CBiquadPhaseShift, Math::IFunction>
    s_BiquadPhaseShift;

} // namespace

} // namespace Lathe::Audio::DSP

// Whoever links this library asks the linker for this symbol, and so keeps the registrations above.
extern "C" {
extern const char LatheDSPRegistration;
const char LatheDSPRegistration = 0;
}
