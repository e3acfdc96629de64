// Proves that the capture bracket and the enable switch tell of each change once, after it.
#include "core/Capture.h"
#include "core/Enable.h"
#include "core/events/ActionCommand.h"

#include <gtest/gtest.h>

#include <string>

using namespace Lathe::Core;

TEST(CaptureTest, FiresOnlyOnTransitions) {
    CCapture capture;
    std::string log;
    CActionCommand begin([&] { log += capture.IsCaptured() ? 'B' : '!'; });
    CActionCommand end([&] { log += capture.IsCaptured() ? '!' : 'E'; });
    capture.GetBeginCaptureEvent().AddCommand(begin);
    capture.GetEndCaptureEvent().AddCommand(end);
    for (const bool press : {false, true, true, false, false, true, false})
        press ? capture.Capture() : capture.Release();
    EXPECT_EQ(log, "BEBE");
}

TEST(EnableTest, StartsOnAndFiresOnChange) {
    CEnable enable;
    std::string log;
    CActionCommand changed([&] { log += enable.GetEnabled() ? '1' : '0'; });
    enable.GetEnabledChangedEvent().AddCommand(changed);
    for (const bool value : {true, false, false, true, true, false})
        enable.SetEnabled(value);
    EXPECT_EQ(log, "010");
}
