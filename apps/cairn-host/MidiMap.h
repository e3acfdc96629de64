// Which MIDI controller moves which parameter, as users type it.
#pragma once

#include "cairn-host/Parameters.h"

namespace CairnHost {

// The argument of the plug-in's command "map-midi" for a text
// "PARAMETER=cc:N[,channel:N][,min:TEXT][,max:TEXT][,curve:NAME]". Without a channel all count,
// without a minimum or maximum the parameter's own, and the curve is Linear. The plug-in itself
// knows which curves there are.
TResult<std::string> ReadMidiMap(const std::string& text, const CParameterTable& table);

} // namespace CairnHost
