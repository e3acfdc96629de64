// How one parameter follows a MIDI controller, or is sent as one.
#pragma once

#include "core/Realtime.h"
#include "core/containers/Vector.h"
#include "math/ValueCurve.h"

namespace Lathe::Core {
class IEventProvider;
}

namespace Lathe::Audio::Plugin {

// Presets hold the names. Only CC acts; the other two are kept and shown.
enum class EMIDIControlType : int { CC = 0, NoteOnOff = 1, Note = 2 };

// Any thread writes, and the audio thread reads without a lock, each field whole. Every setter
// raises the changed event only when the value differs.
class IMIDICCSetting {
public:
    virtual void SetMIDIEnabled(bool enabled) = 0;
    virtual bool IsMIDIEnabled() const LATHE_REALTIME = 0;
    virtual EMIDIControlType GetType() const LATHE_REALTIME = 0;
    virtual void SetType(EMIDIControlType type) = 0;
    // 1 to 16; 0 means any channel, for input.
    virtual int GetChannel() const LATHE_REALTIME = 0;
    virtual void SetChannel(int channel) = 0;
    // The controller, 0 to 127.
    virtual int GetNumber() const LATHE_REALTIME = 0;
    virtual void SetNumber(int number) = 0;
    // The switch by which the host hears of an output parameter.
    virtual void SetAutomationEnabled(bool enabled) = 0;
    virtual bool IsAutomationEnabled() const LATHE_REALTIME = 0;
    virtual Math::EParamValueCurve GetCurve() const LATHE_REALTIME = 0;
    virtual void SetCurve(Math::EParamValueCurve curve) = 0;
    // The parameter's values at the ends of the controller's travel; a minimum above the maximum
    // turns the travel round.
    virtual double GetMin() const LATHE_REALTIME = 0;
    virtual void SetMin(double min) = 0;
    virtual double GetMax() const LATHE_REALTIME = 0;
    virtual void SetMax(double max) = 0;
    virtual Core::IEventProvider& GetChangedEvent() const = 0;
    virtual ~IMIDICCSetting() = default;
    // Takes all that the operations above set, and raises the event once if anything differs.
    virtual void Copy(const IMIDICCSetting& other) = 0;
};

using IConstMIDICCSettings = Containers::IConstVector<IMIDICCSetting>;
using IMIDICCSettings = Containers::IVector<IMIDICCSetting>;

} // namespace Lathe::Audio::Plugin
