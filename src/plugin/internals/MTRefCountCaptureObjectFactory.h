// The input object: a value that can't be written in one piece (a text, a curve, a surface, a
// custom property), on its way from any thread to the audio thread.
//
// Value written: an item is made of a copy, swapped in under the shared lock, and the old one goes
// to the list of the retired. Next block: the audio thread takes a reference under the shared lock
// and drops the one that it had. Next write, or next PurgeRetired: retired items that nobody else
// holds any more are freed. So the audio thread neither copies nor frees a value.
#pragma once

#include "core/threads/MTEventProvider.h"
#include "datamodel/objects/capture/CaptureState.h"
#include "plugin/interfaces/PluginGUIConnections.h"
#include "plugin/internals/CaptureObjectFactories.h"
#include "plugin/internals/ObjectValues.h"

#include <atomic>
#include <cstring>
#include <type_traits>
#include <utility>
#include <vector>

namespace Lathe::Audio::Plugin {

// T is the type of the values, TInfo their description with the class TInfoImpl. As an ILock it is
// the shared lock, under which the current item and the dirty flag change; no value is made, copied
// or freed under it.
template <class T, class TInfo, class TInfoImpl>
class TMTRefCountCaptureObjectFactory
    : public DataModel::TCaptureState<DataModel::TICaptureObjectFactory<T, TInfo>,
                                      System::CMTEventProvider>,
      public Core::ILock {
public:
    using Copy = typename Core::TIConstValueFactory<T>::Copy;

    // Starts dirty, with the default of the description, which is copied.
    TMTRefCountCaptureObjectFactory(const TInfo& info, Core::ILock& sharedLock)
        : m_SharedLock(sharedLock) {
        m_Info = info;
        m_Current = MakeItem(GetDefaultOf(m_Info));
    }

    const TInfoImpl& GetInfo() const override { return m_Info; }
    // A text that is null reads as "".
    Copy GetValue() const override {
        const CItem item = GetCurrent();
        return CopyValue(item ? item->GetValue() : DSP::GetUnsetValue<T>());
    }
    // Stores a copy and notifies with no lock held; the text that is there already does neither.
    void SetValue(T value) override {
        const bool isNew = !IsCurrent(value);
        if (isNew)
            Replace(MakeItem(value));
        PurgeRetired();
        if (isNew)
            this->NotifyValueChanged();
    }
    // Objects only: hands a clone of the value to the operation, and stores it if that returns
    // true. Under the shared lock as a whole, so that nothing is written meanwhile: not while
    // blocks run.
    template <class TOperation>
    void ModifyValue(TOperation operation) {
        CItem old;
        {
            const Core::CAutoLock lock(m_SharedLock);
            std::unique_ptr<std::remove_pointer_t<Copy>> value(CopyValue(m_Current->GetValue()));
            if (!operation(*value))
                return;
            old = std::exchange(m_Current, MakeItem(*value));
            m_Dirty.store(true, std::memory_order_relaxed);
        }
        Retire(std::move(old));
        this->NotifyValueChanged();
    }
    void Capture() override { this->BeginCapture(); }
    void Release() override { this->EndCapture(); }

    void Lock() override { m_SharedLock.Lock(); }
    void Unlock() override { m_SharedLock.Unlock(); }
    bool TryLock() override { return m_SharedLock.TryLock(); }

    // A new value waits for the audio thread.
    bool IsDirty() const LATHE_REALTIME { return m_Dirty.load(std::memory_order_relaxed); }
    // Under the shared lock: moves a value that waits to its place; false when none does. The item
    // that was there must be one of this object, which holds it on.
    bool TakeItem(DSP::TRefCountValues<T>& values, int index) LATHE_REALTIME {
        if (!IsDirty())
            return false;
        values.SetItem(index, m_Current);
        m_Dirty.store(false, std::memory_order_relaxed);
        return true;
    }
    // Frees the retired items that nobody else holds. Not for the audio thread.
    void PurgeRetired() {
        const Core::CAutoLock lock(m_RetiredLock);
        std::erase_if(m_Retired, [](const CItem& item) { return item->IsUnique(); });
    }

private:
    // None stands for a text that is null.
    using CItem = Core::RefCountItemPtr<T>;

    static CItem MakeItem(T value) {
        if constexpr (std::is_pointer_v<T>) {
            if (!value)
                return {};
        }
        return DSP::MakeRefCountItem(value);
    }
    CItem GetCurrent() const {
        const Core::CAutoLock lock(m_SharedLock);
        return m_Current;
    }
    bool IsCurrent([[maybe_unused]] T value) const {
        if constexpr (std::is_pointer_v<T>) {
            const CItem item = GetCurrent();
            const char* text = item ? item->GetValue() : nullptr;
            return text && value ? std::strcmp(text, value) == 0 : text == value;
        } else {
            return false; // Nothing compares two objects.
        }
    }
    // Until the old item is in the list, this thread holds it: the audio thread is never its last
    // holder.
    void Replace(CItem item) {
        {
            const Core::CAutoLock lock(m_SharedLock);
            std::swap(m_Current, item);
            m_Dirty.store(true, std::memory_order_relaxed);
        }
        Retire(std::move(item));
    }
    void Retire(CItem item) {
        if (!item)
            return;
        const Core::CAutoLock lock(m_RetiredLock);
        m_Retired.push_back(std::move(item));
    }

    CItem m_Current;
    std::vector<CItem> m_Retired;
    System::CCriticalSection m_RetiredLock;
    Core::ILock& m_SharedLock;
    std::atomic<bool> m_Dirty{true};
    TInfoImpl m_Info;
};

template <class T, class TInfo, class TInfoImpl>
using TMTRefCountCaptureObjectFactories =
    TCaptureObjectFactories<TMTRefCountCaptureObjectFactory<T, TInfo, TInfoImpl>,
                            DataModel::TICaptureObjectFactory<T, TInfo>, TIInputObjects<T, TInfo>>;

} // namespace Lathe::Audio::Plugin
