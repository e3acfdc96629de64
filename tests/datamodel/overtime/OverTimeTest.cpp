// Proves what histories of parameters and curves remember and when they tell, how an animated
// parameter moves its target and follows it, and what parameters at a point of a curve or a surface
// show of their inputs.

#include "core/threads/Event.h"
#include "core/threads/ManualTime.h"
#include "core/threads/MessageLoopThread.h"
#include "datamodel/Journal.h"
#include "datamodel/objects/capture/CaptureCurve.h"
#include "datamodel/objects/capture/CaptureParam.h"
#include "datamodel/objects/capture/CaptureSurface.h"
#include "datamodel/overtime/CaptureCurveValueParam.h"
#include "datamodel/overtime/CaptureParamAnimation.h"
#include "datamodel/overtime/CaptureSurfaceFromCurveOverTime.h"
#include "datamodel/overtime/CaptureSurfaceValueParam.h"
#include "datamodel/overtime/CurveFromParamOverTime.h"
#include "math/PlainFunction.h"

#include <limits>
#include <memory>

namespace Lathe::DataModel::Objects {

namespace {

using Math::CConstantFunction;

constexpr auto GetNow = &CManualTimerProvider::GetNow;

class OverTime : public testing::Test {
protected:
    OverTime() {
        m_Param.GetInfo() = CParamInfo(EParamType::Float, -100.0, 100.0, 7.0, "level", "dB", "");
        m_Curve.GetInfo().SetXInfo(CParamInfo(EParamType::Float, 0, 1, 0, "frequency", "", ""));
        m_Curve.GetInfo().SetYInfo(CParamInfo(EParamType::Float, -1, 1, 0.5, "gain", "", ""));
    }
    void Advance(int milliseconds) { m_Timers.Advance(milliseconds); }

    CManualTimerProvider m_Timers;
    CCaptureParam m_Param;
    CCaptureCurve m_Curve{new CConstantFunction(2.0)};
};

TEST_F(OverTime, HistoriesShowThePastOfTheirSource) {
    CCurveFromParamOverTime curve(&m_Param, &m_Timers, GetNow);
    CCaptureSurfaceFromCurveOverTime surface(&m_Curve, &m_Timers, GetNow);
    CJournal curveEvents(curve), surfaceEvents(surface);
    const auto at = [&](double time) { return curve.GetValue().Evaluate(time); };
    EXPECT_EQ(at(-0.1), 7.0) << "the parameter's default";
    EXPECT_EQ(surface.GetValue().Evaluate(-0.1, 0.3), 0.5) << "that of the curve's y";
    EXPECT_STREQ(surface.GetInfo().GetXInfo().GetName(), "time");
    EXPECT_STREQ(surface.GetInfo().GetYInfo().GetName(), "frequency");
    EXPECT_STREQ(surface.GetInfo().GetZInfo().GetName(), "gain");
    EXPECT_STREQ(curve.GetInfo().GetYInfo().GetName(), "level");
    for (int step = 1; step <= 4; ++step) {
        m_Param.SetValue(10.0 * step);
        m_Curve.SetValue(CConstantFunction(step));
        Advance(50);
    }
    EXPECT_EQ(curveEvents.Take() + "," + surfaceEvents.Take(), "vvvv,vv");
    EXPECT_NEAR(at(-0.075), 25.0, 1e-9);
    EXPECT_NEAR(surface.GetValue().Evaluate(-0.05, 0.3), 3.0, 1e-9);
    curve.SetPaused(true);
    m_Param.SetValue(80.0);
    Advance(2000);
    EXPECT_EQ(at(0.0), 40.0);
    curve.SetPaused(false);
    Advance(50);
    EXPECT_NEAR(at(-1.025), 60.0, 1e-9) << "a line across the gap";
    curve.Disconnect();
    Advance(50);
    curve.Connect(m_Param);
    EXPECT_EQ(at(0.0), 80.0) << "what is remembered stays";
    CCurveFromParamOverTime frozen(&m_Param, &m_Timers, [] { return std::uint64_t{1}; });
    CJournal frozenEvents(frozen);
    Advance(50);
    m_Param.SetValue(90.0);
    Advance(50);
    EXPECT_EQ(frozen.GetValue().Evaluate(0.0), 80.0) << "a clock that stands still loses points";
    EXPECT_EQ(frozenEvents.Take(), "vv") << "but no events";
    EXPECT_EQ(curveEvents.Take(), "vvv") << "none while it was cut";
    surfaceEvents.Take();
    curve.SetDuration(100), surface.SetDuration(100);
    EXPECT_EQ(curveEvents.Take() + "," + surfaceEvents.Take(), ",v");
}

TEST_F(OverTime, HistoriesHoldTheirDurationAndForgetAtAnother) {
    // Duration and refresh time in ms, and how many points there is room for.
    const int cases[][3] = {{5000, 50, 128}, {10000, 50, 256}, {1001, 1, 1024}, {64, 1, 64}};
    for (const auto& [duration, period, room] : cases) {
        CCurveFromParamOverTime curve(&m_Param, &m_Timers, GetNow);
        const auto at = [&](double time) { return curve.GetValue().Evaluate(time); };
        curve.SetRefreshTime(period == 1 ? -5 : period);
        curve.SetDuration(duration);
        EXPECT_EQ(curve.GetDuration(), duration);
        EXPECT_EQ(curve.GetInfo().GetXInfo().GetMin(), -duration / 1000.0);
        Advance(period * room);
        EXPECT_LT(at(1e-9 - 0.001 * period * (room - 1)), 1.0) << room;
        EXPECT_EQ(at(-0.001 * period * room), 7.0) << "the oldest are gone";
        curve.SetRefreshTime(period);
        EXPECT_EQ(at(0.0), 7.0) << "forgotten";
        Advance(period);
        curve.SetDuration(std::numeric_limits<int>::max());
        EXPECT_EQ(at(0.0), 7.0) << "forgotten";
        curve.SetDuration(-5);
        EXPECT_EQ(curve.GetDuration(), 0);
    }
    EXPECT_EQ(m_Timers.GetCount(), 0);
}

TEST_F(OverTime, AnimationsGlideAndFollow) {
    CCaptureParamAnimation animation(&m_Timers, &m_Param, GetNow);
    CJournal events(animation), targetEvents(m_Param);
    const auto check = [&](int milliseconds, double own, double target) {
        Advance(milliseconds);
        EXPECT_EQ(animation.GetValue(), own);
        EXPECT_NEAR(m_Param.GetValue(), target, 1e-9);
    };
    animation.SetValue(1.0);
    check(0, 1.0, 0.0);
    check(100, 1.0, 0.4);
    check(150, 1.0, 1.0);
    EXPECT_EQ(events.Take(), "v") << "the steps of the target are not its own";
    m_Param.SetValue(0.5);
    check(0, 0.5, 0.5);
    animation.SetValue(200.0);
    check(300, 200.0, 100.0); // The target limits.
    m_Param.SetValue(0.0);
    // The bracket stays open around the transition.
    events.Take(), targetEvents.Take();
    animation.Capture();
    animation.SetValue(10.0);
    animation.Release();
    check(250, 10.0, 10.0);
    EXPECT_EQ(events.Take() + "," + targetEvents.Take(), "bve,bvvvvve");
    m_Param.GetInfo().SetMax(50.0);
    EXPECT_EQ(animation.GetInfo().GetMax(), 50.0);
    // A handler that moves the target meanwhile doesn't change what is being set.
    CActionCommand meddle([&] { m_Param.SetValue(40.0); });
    animation.GetValueChangedEvent().AddCommand(meddle);
    animation.SetValue(20.0);
    check(0, 20.0, 40.0);
    check(250, 20.0, 20.0);
}

TEST_F(OverTime, AnimationsCanBeSwitchedPausedAndCut) {
    m_Param.SetValue(3.0);
    CCaptureParamAnimation animation(&m_Timers, nullptr, GetNow);
    CJournal journal(animation.GetEnableChangedEvent());
    animation.SetValue(8.0);
    animation.Connect(m_Param);
    EXPECT_EQ(animation.GetValue(), 3.0);
    animation.SetValue(4.0);
    animation.SetEnable(false);
    animation.SetEnable(false);
    EXPECT_EQ(m_Param.GetValue(), 4.0) << "what is under way arrives";
    animation.SetDuration(100);
    animation.SetValue(5.0);
    EXPECT_EQ(m_Param.GetValue(), 5.0) << "at once";
    animation.SetEnable(true);
    EXPECT_EQ(journal.Take(), "cc");
    animation.SetPaused(true);
    animation.SetValue(6.0);
    Advance(300);
    EXPECT_EQ(m_Param.GetValue(), 5.0);
    animation.SetPaused(false);
    Advance(50);
    EXPECT_NEAR(m_Param.GetValue(), 5.5, 1e-9) << "half of the new duration";
    animation.Disconnect();
    animation.SetValue(9.0);
    m_Param.SetValue(2.0);
    Advance(300);
    EXPECT_EQ(animation.GetValue(), 9.0) << "held";
    EXPECT_EQ(m_Param.GetValue(), 2.0);
    animation.SetRefreshTime(0);
    EXPECT_EQ(animation.GetRefreshTime(), 1) << "or its thread would never sleep";
}

TEST_F(OverTime, ParamsAtAPointFollowAllTheirInputs) {
    CCaptureParam x, y;
    for (CCaptureParam* param : {&x, &y})
        param->GetInfo().SetMax(10.0);
    CCaptureSurface surface(new Math::TBinaryFunction<Math::FunctionsLibrary::Difference>);
    surface.GetInfo().SetZInfo(CParamInfo(EParamType::Float, 0, 1, 0.25, "height", "", ""));
    m_Curve.SetValue(Math::TFunction<Math::FunctionsLibrary::Square>());
    CCaptureCurveValueParam atCurve(nullptr, &x);
    CCaptureSurfaceValueParam atSurface(&surface, &x, nullptr);
    EXPECT_EQ(atCurve.GetValue(), 0.0);
    EXPECT_EQ(atSurface.GetValue(), 0.25) << "the default while an input is missing";
    atCurve.SetCurve(&m_Curve);
    atSurface.SetY(&y);
    m_Curve.GetInfo().GetYInfo().SetUnit("dB");
    EXPECT_STREQ(atCurve.GetInfo().GetName(), "gain");
    EXPECT_STREQ(atCurve.GetInfo().GetUnit(), "dB");
    CJournal curveEvents(atCurve), surfaceEvents(atSurface);
    const auto check = [&](const char* events) {
        EXPECT_EQ(curveEvents.Take() + "," + surfaceEvents.Take(), events);
    };
    x.SetValue(3.0), y.SetValue(1.0);
    check("v,vv");
    EXPECT_EQ(atCurve.GetValue(), 9.0);
    EXPECT_EQ(atSurface.GetValue(), 2.0);
    // One bracket around all.
    x.Capture(), m_Curve.Capture(), surface.Capture(), y.Capture();
    check("b,b");
    x.Release(), surface.Release();
    check(",");
    m_Curve.Release();
    atSurface.SetY(&x);
    check("e,e");
    atSurface.SetX(&y);
    check(",b");
    atCurve.Disconnect(), atSurface.Disconnect();
    check(",e");
    x.SetValue(5.0), m_Curve.SetValue(CConstantFunction(1.0)), surface.Capture();
    m_Curve.GetInfo().GetYInfo().SetDefault(0.75);
    check(",");
    EXPECT_EQ(atCurve.GetValue(), 0.5);
}

// Nothing of what was connected meanwhile is told of later changes, which the sanitizers watch.
TEST_F(OverTime, HandlersMayConnectOtherObjects) {
    CCaptureParam other;
    CCaptureCurve otherCurve(new CConstantFunction(3.0));
    {
        CCaptureParamAnimation animation(&m_Timers, nullptr, GetNow);
        CCaptureCurveValueParam atCurve(nullptr, &m_Param);
        CActionCommand connect([&] { animation.Connect(other); });
        CActionCommand set([&] { atCurve.SetCurve(&otherCurve); });
        animation.GetInfo().GetChangedEvent().AddCommand(connect);
        atCurve.GetBeginCaptureEvent().AddCommand(set);
        animation.Connect(m_Param);
        m_Param.SetValue(5.0);
        EXPECT_EQ(animation.GetValue(), 0.0) << "only the present target counts";
        m_Curve.Capture();
        atCurve.SetCurve(&m_Curve);
        EXPECT_EQ(atCurve.GetValue(), 3.0);
        EXPECT_FALSE(atCurve.IsCaptured());
    }
    m_Param.SetValue(6.0), m_Param.GetInfo().SetMax(9.0);
    m_Curve.GetInfo().SetName(""), otherCurve.GetInfo().SetName("");
}

// The ticks' thread still runs, and their objects go on this one: the thread sanitizer watches.
TEST_F(OverTime, TicksEndBeforeTheirObjects) {
    System::CMessageLoopThread loop;
    System::CEvent ticked;
    std::unique_ptr<CCaptureSurfaceFromCurveOverTime> surface;
    std::unique_ptr<CCaptureParamAnimation> animation;
    CActionCommand onTick([&] { ticked.Set(); }), create([&] {
        m_Param.GetValueChangedEvent().AddCommand(onTick);
        surface = std::make_unique<CCaptureSurfaceFromCurveOverTime>(&m_Curve, &loop);
        animation = std::make_unique<CCaptureParamAnimation>(&loop, &m_Param);
        surface->SetRefreshTime(1), animation->SetRefreshTime(1);
        animation->SetDuration(3'600'000);
        animation->SetValue(100.0);
    });
    loop.Start();
    loop.Invoke(&create, false);
    ticked.Wait(-1);
    animation.reset(), surface.reset();
}

} // namespace

} // namespace Lathe::DataModel::Objects
