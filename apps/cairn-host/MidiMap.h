// Which MIDI controller moves which parameter, as users type it.
#pragma once

#include "cairn-host/Parameters.h"

namespace CairnHost {

// The argument of the plug-in's command "map-midi" for a text
// "PARAMETER=cc:N[,channel:N][,min:TEXT][,max:TEXT][,curve:NAME]". Without a channel all count.
// The plug-in has defaults for the rest, and knows which curves there are.
TResult<std::string> ReadMidiMap(const std::string& text, const CParameterTable& table);

} // namespace CairnHost
