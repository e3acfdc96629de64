// What all one-way links have in common: a link listens to its source, and plays the changes and
// the capture bracket of the source again on its target.
//
// Knob dragged that drives a parameter through a link: source Capture - target Capture; source
// SetValue - Update, by which the subclass writes the target; source Release - target Release.
#pragma once

#include "core/Disconnect.h"
#include "core/Enable.h"
#include "core/events/Command.h"

namespace Lathe::DataModel {

// TSource is a TIConstCaptureObject, TTarget a TICaptureObject. Runs on the thread on which the
// source fires. Handlers of the events that a link causes may call any operation of the link.
//
// A subclass that overrides Update or a hook calls Join at the end of its constructor, and
// Disconnect in its destructor.
template <class TSource, class TTarget>
class TBaseCaptureObjectLink : public Core::IEnable, public Core::IDisconnectAndPause {
public:
    TBaseCaptureObjectLink(const TBaseCaptureObjectLink&) = delete;
    TBaseCaptureObjectLink& operator=(const TBaseCaptureObjectLink&) = delete;

    bool GetEnabled() const override { return m_Enabled; }
    Core::IEventProvider& GetEnabledChangedEvent() const override { return m_EnabledChanged; }
    ~TBaseCaptureObjectLink() override { Cut(); }
    // Switched off, a link gives back the capture that it holds; switched on, it takes over capture
    // and value of the source.
    void SetEnabled(bool enabled) override {
        if (enabled == m_Enabled)
            return;
        Switch(enabled);
        m_EnabledChanged.Notify();
    }
    // Leaving the pause takes over capture and value of the source.
    void SetPaused(bool paused) override {
        if (paused == m_Paused)
            return;
        m_Paused = paused;
        if (m_Paused || !m_Enabled)
            return;
        Switch(false);
        Switch(true);
    }
    // From both ends.
    void Disconnect() override { Cut(); }

    TSource* GetSource() const { return m_Source; }
    TTarget* GetTarget() const { return m_Target; }
    // Neither end is owned, either can be null, and each is disconnected before it dies.
    void SetSource(TSource* source) {
        const bool enabled = m_Enabled;
        Switch(false);
        BeforeSourceChange();
        Unsubscribe();
        m_Source = source;
        Subscribe();
        AfterSourceChange();
        Switch(enabled);
    }
    // A capture that the link holds is given back to the old target.
    void SetTarget(TTarget* target) {
        ReplaceTarget(target);
        if (!m_OnModifyOnly && m_Target)
            OnSourceValueChanged();
    }
    // With it only a change of the source writes the target; joining, switching on and the setters
    // of the link don't.
    void SetOnModifyOnly(bool onModifyOnly) { m_OnModifyOnly = onModifyOnly; }

protected:
    TBaseCaptureObjectLink() = default;

    // Brings the target up to date; nothing when an end that it needs is missing.
    virtual void Update() = 0;
    // The link has a source, and its capture is taken over already.
    virtual void OnEnabled() {}
    // The capture is given back already.
    virtual void OnDisabled() {}
    // GetSource and GetTarget give the old end before the change, the new one after it. What a hook
    // does with an end's events, it does after all that may call handlers when it unsubscribes, and
    // before it when it subscribes: handlers may change the end once more.
    virtual void BeforeSourceChange() {}
    virtual void AfterSourceChange() {}
    virtual void BeforeTargetChange() {}
    virtual void AfterTargetChange() {}
    virtual void OnSourceBeginCapture() {
        if (!IsActive() || !m_Target)
            return;
        m_TargetCaptured = true;
        m_Target->Capture();
    }
    virtual void OnSourceValueChanged() {
        if (IsActive())
            Update();
    }
    virtual void OnSourceEndCapture() {
        if (!IsActive() || !m_Target)
            return;
        m_TargetCaptured = false;
        m_Target->Release();
    }

    void Join(TSource* source, TTarget* target) {
        SetSource(source);
        SetTarget(target);
    }
    bool IsOnModifyOnly() const { return m_OnModifyOnly; }
    bool IsPaused() const { return m_Paused; }
    bool IsActive() const { return m_Enabled && !m_Paused; }
    // Whether the link holds a capture on the target.
    bool HasCapturedTarget() const { return m_TargetCaptured; }
    void GiveBackCapture() {
        if (!m_TargetCaptured)
            return;
        m_TargetCaptured = false;
        if (m_Target)
            m_Target->Release();
    }

private:
    // Without the event.
    void Switch(bool enabled) {
        if (enabled == m_Enabled)
            return;
        m_Enabled = enabled;
        if (!m_Source)
            return;
        if (enabled)
            TakeOver();
        else {
            GiveBackCapture();
            OnDisabled();
        }
    }
    void TakeOver() {
        if (m_Source->IsCaptured())
            OnSourceBeginCapture();
        OnEnabled();
        if (!m_OnModifyOnly)
            OnSourceValueChanged();
    }
    void ReplaceTarget(TTarget* target) {
        if (target != m_Target)
            GiveBackCapture();
        BeforeTargetChange();
        m_Target = target;
        AfterTargetChange();
    }
    void Cut() {
        ReplaceTarget(nullptr);
        SetSource(nullptr);
    }
    void Subscribe() {
        if (!m_Source)
            return;
        m_Source->GetValueChangedEvent().AddCommand(m_ValueChangedCommand);
        m_Source->GetBeginCaptureEvent().AddCommand(m_BeginCaptureCommand);
        m_Source->GetEndCaptureEvent().AddCommand(m_EndCaptureCommand);
    }
    void Unsubscribe() {
        if (!m_Source)
            return;
        m_Source->GetValueChangedEvent().RemoveCommand(m_ValueChangedCommand);
        m_Source->GetBeginCaptureEvent().RemoveCommand(m_BeginCaptureCommand);
        m_Source->GetEndCaptureEvent().RemoveCommand(m_EndCaptureCommand);
    }

    using Command = Core::TCommand<TBaseCaptureObjectLink>;

    TSource* m_Source = nullptr;
    TTarget* m_Target = nullptr;
    bool m_OnModifyOnly = false;
    bool m_TargetCaptured = false;
    Command m_ValueChangedCommand{*this, &TBaseCaptureObjectLink::OnSourceValueChanged};
    Command m_BeginCaptureCommand{*this, &TBaseCaptureObjectLink::OnSourceBeginCapture};
    Command m_EndCaptureCommand{*this, &TBaseCaptureObjectLink::OnSourceEndCapture};
    bool m_Enabled = true;
    bool m_Paused = false;
    mutable Core::CEventProvider m_EnabledChanged;
};

} // namespace Lathe::DataModel
