#include "plugin/midi/MIDICCEvents.h"

#include "core/SaturatingCast.h"
#include "datamodel/objects/ParamInfo.h"
#include "plugin/midi/MIDICCMapping.h"
#include "plugin/midi/MIDICCMessage.h"
#include "plugin/midi/MIDIEvent.h"

#include <algorithm>

namespace Lathe::Audio::Plugin {

namespace {

constexpr int MaxValue = 127;

bool IsMatch(const IMIDICCSetting& setting, const IConstMIDICCMessage& message) {
    const int channel = setting.GetChannel();
    return setting.IsMIDIEnabled() && setting.GetType() == EMIDIControlType::CC &&
           (channel == 0 || channel == message.GetChannel()) &&
           setting.GetNumber() == message.GetNumber();
}

// Whoever holds the parameter goes on holding it.
void SetWithinCapture(DataModel::Objects::ICaptureParam& param, double value) {
    const bool wasCaptured = param.IsCaptured();
    param.Capture();
    param.SetValue(value);
    if (!wasCaptured)
        param.Release();
}

} // namespace

bool ApplyMIDIEvent(const MIDI::IConstMIDIEvent& event, const IConstMIDICCSettings& settings,
                    const DSP::IConstParamInfos& infos, IInputParams* params,
                    CMIDICCMessage& message) {
    if (!params || event.GetKind() != MIDI::EMIDIEventKind::ControlChange)
        return false;
    // What a short message lacks reads as -1, and so as all seven bits.
    message.Store(event.GetChannel() + 1, event.GetNumber() & MaxValue,
                  event.GetValue() & MaxValue);
    const double controller = message.GetValue() * (1.0 / MaxValue);
    const int count = std::min({settings.GetCount(), infos.GetCount(), params->GetCount()});
    for (int i = 0; i < count; ++i) {
        const IMIDICCSetting& setting = settings.GetElement(i);
        if (IsMatch(setting, message))
            SetWithinCapture(params->GetElement(i),
                             MapControllerToValue(controller, infos.GetElement(i), setting));
    }
    return true;
}

bool MakeControllerEvent(const IMIDICCSetting& setting,
                         const DataModel::Objects::IConstParamInfo& info, double value,
                         int& lastSent, MIDI::IMIDIEvent& event) {
    if (!setting.IsMIDIEnabled())
        return false;
    const double position = MapValueToController(value, info, setting);
    const int sent = Core::TruncateToInt(0.5 + std::min(position * MaxValue, 1.0 * MaxValue));
    if (sent == lastSent)
        return false;
    lastSent = sent;
    event.SetLength(3);
    event.SetKind(MIDI::EMIDIEventKind::ControlChange);
    // Unsigned, since a setting may hold any number: the channel below the smallest one wraps.
    event.SetChannel(static_cast<int>(static_cast<unsigned>(setting.GetChannel()) - 1U));
    event.SetNumber(setting.GetNumber());
    event.SetValue(sent);
    event.SetTimeStamp(0.0);
    return true;
}

} // namespace Lathe::Audio::Plugin
