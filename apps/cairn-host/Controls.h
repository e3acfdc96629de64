// The parameters of the equaliser as controls of the plug-in: which control a parameter is, and
// what its values are to the host.
#pragma once

#include "cairn-host/Parameters.h"

#include <cstdint>

namespace CairnHost {

class CEqualiser;
class CHostInstance;

// The equaliser's parameters in their order, and behind the last of them "Bypass", Off or On, which
// the plug-in adds. The equaliser outlives the table.
CParameterTable DescribeControls(const CEqualiser& equaliser);

// Bypass is control 1, the first of the equaliser's parameters control 2.
int GetControlNumber(const CParameterTable& table, int parameter);

// The control's value for a setting that the table has read. A controller map can narrow what a
// control spans: what lies beyond is refused.
TResult<std::int32_t> ToControlValue(const CHostInstance& instance, const CParameterTable& table,
                                     const SSetting& setting);

} // namespace CairnHost
