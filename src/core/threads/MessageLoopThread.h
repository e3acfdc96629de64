// A message loop that its owner starts and stops, and the one that the whole process shares.
#pragma once

#include "core/ownership/SingletonInstance.h"
#include "core/threads/MessageLoop.h"

namespace Lathe::System {

// Scenario: work on a thread of its own
//   loop.Start();
//   loop.Invoke(&load, false);     // has run on the loop's thread
//   loop.AddTimer(100, &garbage);  // runs every 100 ms
//   loop.RemoveTimer(&garbage, false);
//   loop.Stop();
class CMessageLoopThread : public CMessageLoop {
public:
    using CMessageLoop::Start;
    using CMessageLoop::Stop;
};

// A holder of the process-wide loop. The first starts it. The last destroys it, and waits for its
// thread with the holders' lock in hand: no command of that loop makes or lets go of a holder.
using CSharedMessageLoop = Core::TSingletonInstance<CMessageLoopThread, CCriticalSection>;

} // namespace Lathe::System

// The process-wide loop runs from its creation on.
template <>
struct Lathe::Core::TSingletonCreator<Lathe::System::CMessageLoopThread> {
    static System::CMessageLoopThread* Create() {
        auto* loop = new System::CMessageLoopThread; // The singleton's.
        loop->Start();
        return loop;
    }
};
