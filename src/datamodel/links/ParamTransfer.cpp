#include "datamodel/links/ParamTransfer.h"

#include "datamodel/objects/ParamInfo.h"
#include "math/Function.h"
#include "math/FunctionsLibrary.h"

#include <algorithm>

namespace Lathe::DataModel::Objects {

namespace {

double Apply(double value, const SParamTransfer& transfer, double min, double max) {
    const auto mirror = [&](double x) { return transfer.m_Reverse ? (max - x) + min : x; };
    return transfer.m_MirrorFirst ? transfer.m_Function.Evaluate(mirror(value))
                                  : mirror(transfer.m_Function.Evaluate(value));
}

} // namespace

double TransferParamValue(double value, const SParamTransfer& transfer,
                          const IConstParamInfo& source, const IConstParamInfo& target) {
    using namespace Math::FunctionsLibrary;
    if (!transfer.m_Normalized)
        return Apply(value, transfer, target.GetMin(), target.GetMax());
    const double position = Normalize(value, source.GetMin(), source.GetMax());
    return Denormalize(std::clamp(Apply(position, transfer, 0.0, 1.0), 0.0, 1.0), target.GetMin(),
                       target.GetMax());
}

} // namespace Lathe::DataModel::Objects
