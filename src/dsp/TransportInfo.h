// The host's time line, as a filter may ask for it during a block.
#pragma once

#include "core/Realtime.h"

namespace Lathe::Audio::DSP {

// What the host doesn't tell is 0 or false. Valid for the block that it comes with.
class ITransportInfo {
public:
    // In quarter notes a minute.
    virtual double GetTempo() const LATHE_REALTIME = 0;
    virtual int GetTimeSignatureNumerator() const LATHE_REALTIME = 0;
    virtual int GetTimeSignatureDenominator() const LATHE_REALTIME = 0;
    virtual bool IsPlaying() const LATHE_REALTIME = 0;
    virtual bool IsLooping() const LATHE_REALTIME = 0;
    virtual bool IsRecording() const LATHE_REALTIME = 0;
    // Of the block's first sample, so for the next two.
    virtual long long GetSamplePosition() const LATHE_REALTIME = 0;
    // In seconds.
    virtual double GetTimePosition() const LATHE_REALTIME = 0;
    virtual double GetQuarterNotePosition() const LATHE_REALTIME = 0;
    // In quarter notes, so for the next two.
    virtual double GetBarStart() const LATHE_REALTIME = 0;
    virtual double GetLoopStart() const LATHE_REALTIME = 0;
    virtual double GetLoopEnd() const LATHE_REALTIME = 0;
    // In frames a second.
    virtual int GetFrameRate() const LATHE_REALTIME = 0;
    virtual double GetFrameOffset() const LATHE_REALTIME = 0;
    virtual ~ITransportInfo() = default;
};

} // namespace Lathe::Audio::DSP
