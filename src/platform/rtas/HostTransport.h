// The host's time line, as the library gives access to it during a block.
#pragma once

#include "core/Realtime.h"
#include "platform/rtas/Dispatcher.h"

// Every question returns 0 and fills its arguments, or another number where the host doesn't tell.
class CHostTransport {
public:
    virtual long GetTempo(double* tempo) LATHE_REALTIME = 0;
    virtual long GetMeter(long* numerator, long* denominator) LATHE_REALTIME = 0;
    virtual long IsPlaying(bool* playing) LATHE_REALTIME = 0;
    // While playing, in real time; and the place on the time line.
    virtual long GetRealTimeSamplePosition(long long* samples) LATHE_REALTIME = 0;
    virtual long GetTimeLineLocation(long long* samples) LATHE_REALTIME = 0;
    // 960000 ticks a quarter note, so for the next two.
    virtual long GetTickPosition(long long* ticks) LATHE_REALTIME = 0;
    virtual long GetLoop(bool* looping, long long* startTicks, long long* endTicks)
        LATHE_REALTIME = 0;
    // Bars and beats count from 1; a beat is a quarter note, whatever the meter.
    virtual long GetBarBeatTick(long long samples, long* bar, long* beat, long* tick)
        LATHE_REALTIME = 0;
    virtual ~CHostTransport() = default;
};

// Answers from what the host gave with the block; everything fails without. Bars are counted as if
// the present tempo and meter held for the whole time line.
class CBlockTransport : public CHostTransport {
public:
    void Attach(const RTASTransport* transport, long sampleRate) LATHE_REALTIME;

    long GetTempo(double* tempo) LATHE_REALTIME override;
    long GetMeter(long* numerator, long* denominator) LATHE_REALTIME override;
    long IsPlaying(bool* playing) LATHE_REALTIME override;
    long GetRealTimeSamplePosition(long long* samples) LATHE_REALTIME override;
    long GetTimeLineLocation(long long* samples) LATHE_REALTIME override;
    long GetTickPosition(long long* ticks) LATHE_REALTIME override;
    long GetLoop(bool* looping, long long* startTicks, long long* endTicks) LATHE_REALTIME override;
    long GetBarBeatTick(long long samples, long* bar, long* beat, long* tick)
        LATHE_REALTIME override;

private:
    // False where they can't be told.
    bool GetTicksAt(long long samples, long long* ticks) LATHE_REALTIME;

    const RTASTransport* m_Transport = nullptr;
    long m_SampleRate = 0;
};
