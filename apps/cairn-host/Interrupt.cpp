#include "cairn-host/Interrupt.h"

#include <csignal>
#include <initializer_list>

namespace CairnHost {
namespace {

volatile std::sig_atomic_t s_Signal = 0;

void OnSignal(int signal) {
    s_Signal = signal;
}

} // namespace

void IgnoreWriteSignals() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void WatchForInterrupt() {
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    // Without a restart, so that opening a pipe that nobody reads doesn't go on waiting.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction present = {};
        sigaction(signal, nullptr, &present);
        if (present.sa_handler != SIG_IGN) // Whoever started the program wants it to go on.
            sigaction(signal, &action, nullptr);
    }
}

bool IsInterrupted() {
    return s_Signal != 0;
}

void FollowInterrupt() {
    if (s_Signal != 0) {
        std::signal(s_Signal, SIG_DFL);
        std::raise(s_Signal);
    }
}

} // namespace CairnHost
