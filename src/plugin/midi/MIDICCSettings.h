// Lists of MIDI settings, one for each parameter, and what they hold before anybody changes them.
#pragma once

#include "core/containers/Collection.h"
#include "dsp/Filter.h"
#include "plugin/midi/MIDICCSetting.h"

namespace Lathe::Audio::Plugin {

// The elements are known by their class, so that the list can be stored.
template <class TSetting>
class TMIDICCSettings : public CoreUtilities::TDynamicCollection<TSetting, IMIDICCSetting> {
public:
    using CoreUtilities::TDynamicCollection<TSetting, IMIDICCSetting>::TDynamicCollection;

    const TSetting& GetElement(int index) const LATHE_REALTIME override { return (*this)[index]; }
    TSetting& GetElement(int index) LATHE_REALTIME override { return (*this)[index]; }
};

using CInputMIDICCSettings = TMIDICCSettings<CInputMIDICCSetting>;
using CMIDICCSettings = TMIDICCSettings<CMIDICCSetting>;

// These act on as many settings as both lists have.
void CopyMIDICCSettings(const IConstMIDICCSettings& source, IMIDICCSettings& destination);

// Factory settings: MIDI off, automation on, the whole range. Any channel, and the parameter's
// index as controller, where the controllers of one channel suffice; else on from the controller 0
// of the channel 1, and round again after the last of the channel 16.
void FillInputMIDICCSettings(const DSP::IConstParamInfos& infos, IMIDICCSettings& settings);

// MIDI off, automation off, the whole range; on from the controller 1 of the channel 1.
void FillOutputMIDICCSettings(const DSP::IConstParamInfos& infos, IMIDICCSettings& settings);

} // namespace Lathe::Audio::Plugin
