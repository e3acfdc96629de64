// The wish of the user to stop: long work asks for it between blocks, so that it ends cleanly and
// leaves no half-written file.
#pragma once

namespace CairnHost {

// From here on an interrupt or a termination signal only leaves the wish.
void WatchForInterrupt();
bool IsInterrupted();
// Ends the program by the signal that was held back, so that a shell sees the true cause.
void FollowInterrupt();

} // namespace CairnHost
