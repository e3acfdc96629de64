// The wish of the user to stop: long work asks for it between blocks, so that it ends cleanly and
// leaves no half-written file.
#pragma once

namespace CairnHost {

// Makes writing to a reader that went away, or past the largest size of a file, an error like any
// other.
void IgnoreWriteSignals();
// From here on an interrupt or a termination signal only leaves the wish; a second one ends the
// program at once.
void WatchForInterrupt();
bool IsInterrupted();
// Ends the program by the signal that was held back, so that a shell sees the true cause.
void FollowInterrupt();

} // namespace CairnHost
