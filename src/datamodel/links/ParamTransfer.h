// The rule by which links and connections turn the value of one parameter into that of another.
#pragma once

namespace Lathe::Math {
class IFunction;
}

namespace Lathe::DataModel::Objects {

class IConstParamInfo;

struct SParamTransfer {
    const Math::IFunction& m_Function;
    // Mirrors the value in the target's range.
    bool m_Reverse;
    // Function and mirror work on the position, from 0 to 1, in the range of each parameter, and
    // what leaves 0..1 is clamped. Otherwise they get the bare value, and nothing is clamped.
    bool m_Normalized;
    // Mirrors before the function: with the inverse function this is the way back.
    bool m_MirrorFirst = false;
};

// By the ranges that the descriptions have now.
double TransferParamValue(double value, const SParamTransfer& transfer,
                          const IConstParamInfo& source, const IConstParamInfo& target);

} // namespace Lathe::DataModel::Objects
