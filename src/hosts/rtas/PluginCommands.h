// The plug-in's own operations, for hosts that know them:
//
//   list-presets         a line for each preset, its fields separated by tabs: its global index,
//                        "factory" or "user", its folders joined by "/", its name, and "default"
//                        for the one that new instances take. "?" stands for control characters in
//                        names.
//   current-preset       the name of the current one.
//   apply-preset INDEX   the preset of that global index becomes the current one.
//   load-preset PATH     from a file anywhere.
//   save-preset PATH     to a file anywhere.
//   map-midi CONTROL CC CHANNEL MIN MAX CURVE, separated by tabs
//                        lets a controller move an input, or sends an output as one. CONTROL is the
//                        library's number; CC is 0 to 127; CHANNEL is 1 to 16, or for an input 0,
//                        any. MIN and MAX are values as texts, or empty for the whole range; CURVE
//                        is a response curve's name, or empty for "Linear".
#pragma once

#include <string>

namespace Lathe::Audio::Plugin {
class CAudioPluginInternals;
}

namespace LatheExt::RTASPlugin {

// Main thread. False when it failed, with a line on what is wrong as result. The argument is not
// null.
using PluginCommandFunction = bool (*)(Lathe::Audio::Plugin::CAudioPluginInternals& internals,
                                       const char* argument, std::string& result);

// Null for a name that is none; the name may be null.
PluginCommandFunction FindPluginCommand(const char* name);

} // namespace LatheExt::RTASPlugin
