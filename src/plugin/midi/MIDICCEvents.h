// What the control changes of a host do to the input parameters, and which ones the output
// parameters send.
#pragma once

#include "dsp/Filter.h"
#include "plugin/interfaces/MIDICCSetting.h"
#include "plugin/interfaces/PluginGUIConnections.h"

namespace Lathe::Audio::MIDI {
class IConstMIDIEvent;
class IMIDIEvent;
} // namespace Lathe::Audio::MIDI

namespace Lathe::Audio::Plugin {

class CMIDICCMessage;

// Sets every parameter whose setting matches, each within a capture of its own unless it is
// captured already. Acts on as many parameters as all lists have. True when the event was a control
// change, which the message then holds without having raised anything; false without params.
bool ApplyMIDIEvent(const MIDI::IConstMIDIEvent& event, const IConstMIDICCSettings& settings,
                    const DSP::IConstParamInfos& infos, IInputParams* params,
                    CMIDICCMessage& message) LATHE_REALTIME;

// Fills the event with the control change of one output parameter's value. False when the setting
// is off, or when the seven bits are those that were sent last; lastSent is the caller's to keep,
// -1 at first.
bool MakeControllerEvent(const IMIDICCSetting& setting,
                         const DataModel::Objects::IConstParamInfo& info, double value,
                         int& lastSent, MIDI::IMIDIEvent& event) LATHE_REALTIME;

} // namespace Lathe::Audio::Plugin
