// Many-to-many links: whatever happens to one of the sources is replayed on all of the targets.
//
// One source turned by hand: its Capture captures the targets, each of its changes writes them
// (Update), its Release releases them. The targets' own events on the way are nobody's gesture, so
// an object may stand among the sources and among the targets, and more than once in either.
#pragma once

#include "core/Disconnect.h"
#include "core/Enable.h"
#include "core/events/Command.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace Lathe::DataModel {

// TTarget, a capture object, is a TSource that can be written. For one thread at a time. Starts
// enabled. A handler that runs on the way may add ends, and switch, pause and disconnect the link,
// but not destroy it.
template <class TSource, class TTarget>
class TMultipleCaptureObjectLink : public Core::IEnable, public Core::IDisconnectAndPause {
public:
    TMultipleCaptureObjectLink() = default;
    TMultipleCaptureObjectLink(const TMultipleCaptureObjectLink&) = delete;
    TMultipleCaptureObjectLink& operator=(const TMultipleCaptureObjectLink&) = delete;

    bool GetEnabled() const override { return m_Enabled; }
    Core::IEventProvider& GetEnabledChangedEvent() const override { return m_EnabledChanged; }
    ~TMultipleCaptureObjectLink() override { Clear(); }
    // On: takes over a capture of the sources and writes the targets. Off: gives the capture back.
    void SetEnabled(bool enabled) override {
        if (enabled == m_Enabled)
            return;
        m_Enabled = enabled;
        if (m_Enabled)
            Start();
        else
            Stop();
        m_EnabledChanged.Notify();
    }
    // Going on is as switching off and on, without the event.
    void SetPaused(bool paused) override {
        if (paused == m_Paused)
            return;
        m_Paused = paused;
        if (IsActive())
            Stop();
        if (IsActive())
            Start();
    }
    // Gives the capture back and forgets all ends; the link stays as enabled as it was.
    void Disconnect() override { Clear(); }

    // The ends are not owned and outlive the link or its connection. Null is ignored. A new end
    // counts from the next event on: nothing is written before the ends are complete.
    void AddSource(const TSource* source) {
        if (!source)
            return;
        BeforeSourceChange();
        m_Sources.push_back(std::make_unique<CSource>(*this, *source));
        AfterSourceChange();
    }
    void AddTarget(TTarget* target) {
        if (!target)
            return;
        BeforeTargetChange();
        m_Targets.push_back(target);
        AfterTargetChange();
    }

protected:
    // Writes the targets. The source that changed; null when there is none, as on switching on.
    virtual void Update(const TSource* changed) = 0;
    // For subclasses that keep something along with the state and the ends; such a subclass calls
    // Disconnect in its destructor.
    virtual void OnEnabled() {}
    virtual void OnDisabled() {}
    virtual void BeforeSourceChange() {}
    virtual void AfterSourceChange() {}
    virtual void BeforeTargetChange() {}
    virtual void AfterTargetChange() {}
    virtual void OnSourceBeginCapture(const TSource* source) {
        // A listener before this one may have ended the gesture.
        if (IsActive() && !m_CapturingTargets && source->IsCaptured())
            CaptureTargets(source);
    }
    virtual void OnSourceValueChanged(const TSource* source) { UpdateOnce(source); }
    virtual void OnSourceEndCapture(const TSource* source) {
        if (IsActive() && !m_ReleasingTargets)
            ReleaseTargets(source);
    }

    // Update, unless the link is off, paused or within an update already.
    void UpdateOnce(const TSource* changed) {
        if (!IsActive() || m_InUpdate)
            return;
        m_InUpdate = true;
        Update(changed);
        m_InUpdate = false;
    }
    int GetSourceCount() const { return static_cast<int>(m_Sources.size()); }
    // In the order of adding.
    const TSource& GetSource(int index) const {
        return m_Sources[static_cast<std::size_t>(index)]->GetObject();
    }
    // Calls the operation for each target other than the object that changed; ends early when an
    // event on the way switches, pauses or cuts the link off.
    template <class TOperation>
    void ForEachTarget(const TSource* changed, TOperation operation) {
        for (std::size_t i = 0; i < m_Targets.size() && IsActive(); ++i) {
            if (m_Targets[i] != changed)
                operation(*m_Targets[i]);
        }
    }

private:
    // The subscriptions to one source, for as long as this lives.
    class CSource {
    public:
        CSource(TMultipleCaptureObjectLink& link, const TSource& object)
            : m_Object(&object),
              m_ValueChanged(link.m_ValueChangedCommand, &object),
              m_BeginCapture(link.m_BeginCaptureCommand, &object),
              m_EndCapture(link.m_EndCaptureCommand, &object) {
            object.GetValueChangedEvent().AddCommand(m_ValueChanged);
            object.GetBeginCaptureEvent().AddCommand(m_BeginCapture);
            object.GetEndCaptureEvent().AddCommand(m_EndCapture);
        }
        ~CSource() {
            m_Object->GetValueChangedEvent().RemoveCommand(m_ValueChanged);
            m_Object->GetBeginCaptureEvent().RemoveCommand(m_BeginCapture);
            m_Object->GetEndCaptureEvent().RemoveCommand(m_EndCapture);
        }
        CSource(const CSource&) = delete;
        CSource& operator=(const CSource&) = delete;

        const TSource& GetObject() const { return *m_Object; }

    private:
        const TSource* m_Object;
        Core::TArgCommandWrapper<const TSource*> m_ValueChanged;
        Core::TArgCommandWrapper<const TSource*> m_BeginCapture;
        Core::TArgCommandWrapper<const TSource*> m_EndCapture;
    };
    using SourceCommand = Core::TArgCommand<TMultipleCaptureObjectLink, const TSource*>;

    bool IsActive() const { return m_Enabled && !m_Paused; }
    bool IsAnySourceCaptured() const {
        return std::any_of(m_Sources.begin(), m_Sources.end(),
                           [](const auto& source) { return source->GetObject().IsCaptured(); });
    }
    void Start() {
        if (!m_Paused && IsAnySourceCaptured())
            CaptureTargets(nullptr);
        OnEnabled();
        UpdateOnce(nullptr);
    }
    void Stop() {
        GiveBackCapture();
        OnDisabled();
    }
    void GiveBackCapture() {
        if (m_SourceCaptured)
            ReleaseTargets(nullptr);
    }
    void Clear() {
        BeforeSourceChange();
        m_Sources.clear();
        AfterSourceChange();
        // Without sources, nothing that the release sets off comes back here.
        GiveBackCapture();
        BeforeTargetChange();
        m_Targets.clear();
        AfterTargetChange();
    }
    // Each of the two ends early when an event on the way starts the other.
    void CaptureTargets(const TSource* source) {
        m_SourceCaptured = true;
        m_CapturingTargets = true;
        for (std::size_t i = 0; i < m_Targets.size() && m_SourceCaptured; ++i) {
            if (m_Targets[i] != source && !m_Targets[i]->IsCaptured())
                m_Targets[i]->Capture();
        }
        m_CapturingTargets = false;
    }
    void ReleaseTargets(const TSource* source) {
        m_SourceCaptured = false;
        m_ReleasingTargets = true;
        for (std::size_t i = 0; i < m_Targets.size() && !m_SourceCaptured; ++i) {
            if (m_Targets[i] != source && m_Targets[i]->IsCaptured())
                m_Targets[i]->Release();
        }
        m_ReleasingTargets = false;
    }

    SourceCommand m_ValueChangedCommand{*this, &TMultipleCaptureObjectLink::OnSourceValueChanged};
    SourceCommand m_BeginCaptureCommand{*this, &TMultipleCaptureObjectLink::OnSourceBeginCapture};
    SourceCommand m_EndCaptureCommand{*this, &TMultipleCaptureObjectLink::OnSourceEndCapture};
    std::vector<std::unique_ptr<CSource>> m_Sources;
    std::vector<TTarget*> m_Targets;
    bool m_Enabled = true;
    bool m_Paused = false;
    bool m_InUpdate = false;
    bool m_CapturingTargets = false;
    bool m_ReleasingTargets = false;
    mutable Core::CEventProvider m_EnabledChanged;
    bool m_SourceCaptured = false;
};

} // namespace Lathe::DataModel
