// What the thread proxies of all kinds have in common: the way of values and captures from the
// source's thread to the reader's, and of calls back.
#pragma once

#include "core/events/Command.h"
#include "core/events/EventProvider.h"
#include "core/threads/CriticalSection.h"
#include "core/threads/PostedCommand.h"
#include "core/threads/ThreadInvoker.h"
#include "datamodel/proxies/CaptureObjectProxy.h"

#include <atomic>

namespace Lathe::DataModel {

// Source changed, on whichever thread: the value becomes the pending one, and an update is posted
// to the reader. Reader's queue: the newest pending value becomes the reader's, and value changed
// fires. Written by the reader: the copy takes the value at once; the source has taken it, on its
// own thread, when the call returns.
//
// The source's thread never waits for the reader. It posts; for texts and objects it also takes a
// lock that is held for no longer than a copy of a text or a swap of pointers. For a parameter it
// takes no lock and allocates nothing, but what the reader's queue does for a post.
//
// All calls are for the reader's thread, save that any thread may allow and forbid updates, and
// read a parameter. Any thread may destroy the proxy, though not its own events. That waits for the
// source's thread, and for an update in progress; so the source's thread may only do so where no
// listener of the proxy, which may be running, waits for that thread. The invokers and the source
// outlive the proxy.
//
// TValues is a TMTProxyValues or a TMTProxyObjects; TSource is const for a read-only proxy.
// Subclasses attach last in their constructor, and detach first in their destructor.
template <class TInterface, class TSource, class T, class TInfo, class TValues>
class TMTProxyBase : public TInterface {
public:
    Core::IEventProvider& GetValueChangedEvent() const override { return m_ValueChanged; }
    Core::IEventProvider& GetBeginCaptureEvent() const override { return m_BeginCapture; }
    Core::IEventProvider& GetEndCaptureEvent() const override { return m_EndCapture; }
    const TInfo& GetInfo() const override { return m_Source->GetInfo(); }
    // Without a reader's thread, these two bring the proxy up to date first, and fire.
    T GetValue() const override {
        if (!m_ReaderInvoker)
            Mutable().UpdateValue();
        return m_Values.GetValue();
    }
    bool IsCaptured() const override {
        if (!m_ReaderInvoker)
            Mutable().SynchronizeCapture();
        return m_Captured.load();
    }

    void UpdateValue() override {
        const Core::CAutoLock lock(m_Lock);
        if (m_Values.Update(m_UpdateEnabled))
            m_ValueChanged.Notify();
    }
    void EnableValueUpdate(bool enable) override {
        const Core::CAutoLock lock(m_Lock);
        m_UpdateEnabled = enable;
    }

protected:
    // Without readerInvoker, which can be null, the reader asks.
    TMTProxyBase(System::IThreadInvoker* readerInvoker, System::IThreadInvoker& sourceInvoker,
                 TSource& source)
        : m_ReaderInvoker(readerInvoker),
          m_SourceInvoker(&sourceInvoker),
          m_Source(&source),
          m_ChangedCommand(*this, &TMTProxyBase::OnSourceChanged),
          m_BeginCommand(*this, &TMTProxyBase::OnSourceBeginCapture),
          m_EndCommand(*this, &TMTProxyBase::OnSourceEndCapture),
          m_UpdateCommand(*this, &TMTProxyBase::UpdateValue),
          m_CaptureCommand(*this, &TMTProxyBase::SynchronizeCapture) {}

    void Attach() { SetAttached(true); }
    void Detach() {
        SetAttached(false);
        m_UpdateCommand.Disconnect();
        m_CaptureCommand.Disconnect();
    }

    // For writable proxies: the source's part of each call is done on return.
    TValues& GetValues() { return m_Values; }
    void WriteSource(T value) {
        Core::TArgCommand<Core::TIValue<T>, T> set(*m_Source, &Core::TIValue<T>::SetValue);
        Invoke(new Core::TArgCommandWrapper<T>(set, value));
    }
    void PostUpdate() { Post(m_UpdateCommand); }
    void NotifyValueChanged() { m_ValueChanged.Notify(); }
    void BeginCapture() { SetCaptured(true, &Core::ICapture::Capture, m_BeginCapture); }
    void EndCapture() { SetCaptured(false, &Core::ICapture::Release, m_EndCapture); }

private:
    // Takes the command, runs it on the source's thread, and waits.
    void Invoke(Core::ICommand* command) { m_SourceInvoker->Invoke(command, true); }
    // Where the source's thread doesn't run, nobody else touches the source, and this thread may.
    void SetAttached(bool attached) {
        const auto change = attached ? &TMTProxyBase::OnAttach : &TMTProxyBase::OnDetach;
        Invoke(new Core::TCommand<TMTProxyBase>(*this, change));
        if (m_Attached != attached)
            (this->*change)();
    }
    void OnAttach() {
        m_Source->GetValueChangedEvent().AddCommand(m_ChangedCommand);
        m_Source->GetBeginCaptureEvent().AddCommand(m_BeginCommand);
        m_Source->GetEndCaptureEvent().AddCommand(m_EndCommand);
        m_Values.Start(*m_Source);
        m_SourceCaptured.store(m_Source->IsCaptured());
        m_Captured.store(m_SourceCaptured.load());
        m_Attached = true;
    }
    void OnDetach() {
        m_Source->GetEndCaptureEvent().RemoveCommand(m_EndCommand);
        m_Source->GetBeginCaptureEvent().RemoveCommand(m_BeginCommand);
        m_Source->GetValueChangedEvent().RemoveCommand(m_ChangedCommand);
        m_Attached = false;
    }

    void OnSourceChanged() {
        if (m_Values.Receive(*m_Source))
            PostUpdate();
    }
    void OnSourceBeginCapture() { OnSourceCapture(true); }
    void OnSourceEndCapture() { OnSourceCapture(false); }
    void OnSourceCapture(bool captured) {
        m_SourceCaptured.store(captured);
        if (m_Captured.load() != captured)
            Post(m_CaptureCommand);
    }
    void Post(System::TPostedCommand<TMTProxyBase>& command) {
        if (m_ReaderInvoker)
            command.Post(*m_ReaderInvoker);
    }

    // Brackets that opened and closed since the last time cancel out. Looks again after each store,
    // as the values do.
    void SynchronizeCapture() {
        const bool before = m_Captured.load();
        bool captured = before;
        while (m_SourceCaptured.load() != captured) {
            captured = !captured;
            m_Captured.store(captured);
        }
        if (captured != before)
            (captured ? m_BeginCapture : m_EndCapture).Notify();
    }
    void SetCaptured(bool captured, void (Core::ICapture::*member)(), Core::INotify& event) {
        const bool before = m_Captured.exchange(captured);
        Invoke(new Core::TCommand<Core::ICapture>(*m_Source, member));
        if (before != captured)
            event.Notify();
    }
    // Reading without a reader's thread updates the copy.
    TMTProxyBase& Mutable() const { return const_cast<TMTProxyBase&>(*this); }

    mutable Core::CEventProvider m_ValueChanged;
    mutable Core::CEventProvider m_BeginCapture;
    mutable Core::CEventProvider m_EndCapture;
    System::IThreadInvoker* m_ReaderInvoker;
    System::IThreadInvoker* m_SourceInvoker;
    TValues m_Values;
    // Each stored by one thread, which then looks at the other: in the order of all.
    std::atomic<bool> m_Captured{false};
    std::atomic<bool> m_SourceCaptured{false};
    TSource* m_Source;
    Core::TCommand<TMTProxyBase> m_ChangedCommand;
    Core::TCommand<TMTProxyBase> m_BeginCommand;
    Core::TCommand<TMTProxyBase> m_EndCommand;
    System::TPostedCommand<TMTProxyBase> m_UpdateCommand;
    System::TPostedCommand<TMTProxyBase> m_CaptureCommand;
    System::CCriticalSection m_Lock;
    bool m_UpdateEnabled = true; // Under m_Lock.
    bool m_Attached = false;
};

} // namespace Lathe::DataModel
