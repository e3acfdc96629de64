// Tells apart a host that processes and one that rests, so that work that is done for a resting
// host never overlaps with a block or a preparation.
//
// A block, on the audio thread: BeginBlock, EndBlock. A preparation, on the main thread:
// BeginPreparation, EndPreparation. The timer: BeginIdle on every tick, and if that is true the
// work and then EndIdle.
#pragma once

#include "core/Realtime.h"
#include "core/threads/LockableBool.h"

#include <atomic>

namespace Lathe::Audio::Plugin {

class CHostActivity {
public:
    // Between two calls of BeginIdle.
    static constexpr int s_TickMilliseconds = 50;

    // Waits for the end of idle work, which nothing but a block or a preparation behind a long
    // pause meets.
    void BeginBlock() LATHE_REALTIME;
    void EndBlock() LATHE_REALTIME { m_InBlock.store(false, std::memory_order_release); }
    void BeginPreparation();
    void EndPreparation();

    // True when the host has given no sign for a second and a half: until EndIdle it gives none,
    // or waits.
    bool BeginIdle();
    void EndIdle() { m_RunningFlag.Unlock(); }

private:
    void CountTick();
    bool HasSign() const { return m_PrepareSeen || m_InBlock; }

    // A sign of the host since the last tick.
    std::atomic<bool> m_PrepareSeen{false};
    std::atomic<bool> m_InBlock{false};
    // True while the host is taken to be processing.
    System::CLockableBool m_RunningFlag;
    // Ticks since the last sign; of the timer thread.
    int m_IdleTicks = 0;
};

} // namespace Lathe::Audio::Plugin
