// Two parameters that are kept in step in both directions.
//
// First moved: the second takes what the curve makes of it. If the second can't hold that and the
// constraint is on, the first takes back what the second holds, so that both move only as far as
// both can. Second moved: the same the other way round, by the inverse of the curve.
#pragma once

#include "core/Disconnect.h"
#include "core/Enable.h"
#include "core/Reverse.h"
#include "core/events/Command.h"
#include "datamodel/objects/capture/CaptureObject.h"

namespace Lathe::Math {
enum class EParamValueCurve : int;
}

namespace Lathe::DataModel::Objects {

// Runs on the thread on which the parameters fire. Handlers of the events that it causes may call
// any of its operations. Starts switched off. While it is on and not paused, the setters bring the
// second parameter into step at once.
class CCaptureParamConnection final : public Core::IEnable,
                                      public Core::IDisconnectAndPause,
                                      public Core::IReverse {
public:
    CCaptureParamConnection();
    ~CCaptureParamConnection() override;
    CCaptureParamConnection(const CCaptureParamConnection&) = delete;
    CCaptureParamConnection& operator=(const CCaptureParamConnection&) = delete;

    bool GetEnabled() const override { return m_Enabled; }
    Core::IEventProvider& GetEnabledChangedEvent() const override { return m_EnabledChanged; }
    // Switched on, it takes over the capture of either side, and the first's value. Switched off,
    // it ends the captures that it forwarded.
    void SetEnabled(bool enabled) override;
    // In the pause values stay where they are; captures are forwarded all the same.
    void SetPaused(bool paused) override;
    // From both parameters.
    void Disconnect() override;
    void SetReverse(bool reverse) override;
    bool IsReversed() const override { return m_Reverse; }
    Core::IEventProvider& GetReverseChangedEvent() const override { return m_ReverseChanged; }

    // Neither is owned, either can be null, and each is disconnected before it dies.
    void SetFirst(ICaptureParam* first) { Replace(m_First, first); }
    void SetSecond(ICaptureParam* second) { Replace(m_Second, second); }
    void SetResponseCurve(Math::EParamValueCurve curve);
    // The curve works on positions in the two ranges instead of bare values.
    void SetNormalized(bool normalized);
    // Off at first. From the next change on; without effect in difference mode.
    void SetConstraint(bool constraint) { m_Constraint = constraint; }
    // Each side takes the steps of the other, not its values.
    void SetDiff(bool diff);
    bool IsDiff() const { return m_Diff; }

private:
    // The flag and what it stands for, without the event.
    void Switch(bool enabled);
    void Join();
    void Part();
    void Replace(ICaptureParam*& side, ICaptureParam* param);
    void Unsubscribe();

    // From first to second, or back: what events and setters ask for.
    void Sync(bool forward);
    void Pass(bool forward);
    void MoveOther(bool forward);
    double Map(double value, bool forward) const;
    void ReadPreviousValues();

    void OnFirstValueChanged() { Sync(true); }
    void OnFirstBeginCapture();
    void OnFirstEndCapture();
    void OnSecondValueChanged() { Sync(false); }
    void OnSecondBeginCapture();
    void OnSecondEndCapture();

    struct SCommands {
        Core::TCommand<CCaptureParamConnection> m_ValueChanged;
        Core::TCommand<CCaptureParamConnection> m_BeginCapture;
        Core::TCommand<CCaptureParamConnection> m_EndCapture;

        void Unsubscribe(const ICaptureParam* param);
        // Once, however often it is called.
        void Subscribe(const ICaptureParam* param);
    };

    ICaptureParam* m_First = nullptr;
    ICaptureParam* m_Second = nullptr;
    SCommands m_FirstCommands;
    SCommands m_SecondCommands;
    bool m_Enabled = false;
    // Both shared, never owned.
    const Math::IFunction* m_Function = nullptr;
    const Math::IFunction* m_InverseFunction = nullptr;
    bool m_Reverse = false;
    mutable Core::CEventProvider m_ReverseChanged;
    bool m_Normalized = false;
    bool m_Constraint = false;
    // Of passes in progress: 2 while the constraint pushes back.
    int m_Depth = 0;
    bool m_Diff = false;
    // At the end of the last synchronisation.
    double m_FirstPrevious = 0.0;
    double m_SecondPrevious = 0.0;
    mutable Core::CEventProvider m_EnabledChanged;
    bool m_Paused = false;
    // The side whose capture was forwarded to the other.
    bool m_SecondCaptured = false;
    bool m_FirstCaptured = false;
};

} // namespace Lathe::DataModel::Objects
