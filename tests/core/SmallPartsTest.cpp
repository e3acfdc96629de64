// Proves that the capture bracket and the enable switch tell of each change once, after it, and
// that the memory log keeps copies, in order, of the messages within its detail limit.
#include "core/Capture.h"
#include "core/Enable.h"
#include "core/Fixtures.h"
#include "core/MessageLog.h"

TEST(CaptureTest, CaptureAndEnableFireOnTransitions) {
    Lathe::Core::CCapture capture;
    Lathe::Core::CEnable enable;
    std::string log;
    CActionCommand begin([&] { log += capture.IsCaptured() ? 'B' : '!'; });
    CActionCommand end([&] { log += capture.IsCaptured() ? '!' : 'E'; });
    CActionCommand changed([&] { log += enable.GetEnabled() ? '1' : '0'; });
    capture.GetBeginCaptureEvent().AddCommand(begin);
    capture.GetEndCaptureEvent().AddCommand(end);
    enable.GetEnabledChangedEvent().AddCommand(changed);
    for (const bool on : {true, false, false, true, true, false}) {
        on ? capture.Capture() : capture.Release();
        enable.SetEnabled(on);
    }
    EXPECT_EQ(log, "BE0B1E0");
}

TEST(MessageLogTest, KeepsCopiesWithinTheDetailLimit) {
    Lathe::CoreUtilities::CMemMessageLog log(1);
    std::string kept;
    for (char text[] = "0"; text[0] < '4'; ++text[0])
        log.Log(Lathe::CoreUtilities::EMessageLevel::Warning, text, text[0] - '0');
    for (const auto& message : log.GetMessages())
        kept += message.m_Text.GetText();
    EXPECT_EQ(kept, "01");
}
