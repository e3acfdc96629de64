// The output object: what readers on other threads see of a text, a curve, a surface or a custom
// property that the filter keeps up to date.
//
// Outputs published: under the shared lock the object is pointed at the filter's value; without it
// the event runs. Reader: takes the shared lock, for a copy or for as long as it uses the value, so
// that the value can't move meanwhile; the publisher only tries, and comes back.
#pragma once

#include "core/threads/MTEventProvider.h"
#include "datamodel/objects/capture/CaptureState.h"
#include "plugin/interfaces/PluginGUIConnections.h"
#include "plugin/internals/CaptureObjectFactories.h"
#include "plugin/internals/ObjectValues.h"

#include <atomic>
#include <type_traits>

namespace Lathe::Audio::Plugin {

// T is the type of the values, TInfo their description with the class TInfoImpl. As an ILock it is
// the shared lock.
template <class T, class TInfo, class TInfoImpl>
class TMTCaptureObjectFactory
    : public DataModel::TCaptureState<DataModel::TIConstCaptureObjectFactory<T, TInfo>,
                                      System::CMTEventProvider>,
      public Core::ILock {
public:
    using Copy = typename Core::TIConstValueFactory<T>::Copy;

    // Starts with the default of the description, which is copied.
    TMTCaptureObjectFactory(const TInfo& info, Core::ILock& sharedLock) : m_SharedLock(sharedLock) {
        m_Info = info;
        ShowDefault();
    }

    const TInfoImpl& GetInfo() const override { return m_Info; }
    // A text that is null reads as "".
    Copy GetValue() const override {
        const Core::CAutoLock lock(m_SharedLock);
        if constexpr (std::is_pointer_v<T>)
            return CopyValue(m_Value);
        else
            return CopyValue(*m_Value);
    }

    void Lock() override { m_SharedLock.Lock(); }
    void Unlock() override { m_SharedLock.Unlock(); }
    bool TryLock() override { return m_SharedLock.TryLock(); }

    // Under the shared lock: shows a value that stays where it is until it is shown no more.
    void Show(T value) LATHE_REALTIME {
        Aim(value);
        m_Dirty.store(true, std::memory_order_relaxed);
    }
    // Under the shared lock: lets go of what is shown, without an event.
    void ShowDefault() { Aim(GetDefaultOf(m_Info)); }
    // Without the shared lock: runs the event if anything was shown since the last call.
    void NotifyShown() LATHE_REALTIME {
        if (m_Dirty.exchange(false, std::memory_order_relaxed))
            this->NotifyValueChanged();
    }

private:
    void Aim(T value) LATHE_REALTIME {
        if constexpr (std::is_pointer_v<T>)
            m_Value = value;
        else
            m_Value = &value;
    }

    // The description, which never changes again, owns the default for as long as the object lives:
    // whoever publishes has nothing to free.
    TInfoImpl m_Info;
    std::conditional_t<std::is_pointer_v<T>, T, std::add_pointer_t<T>> m_Value = nullptr;
    Core::ILock& m_SharedLock;
    std::atomic<bool> m_Dirty{false};
};

template <class T, class TInfo, class TInfoImpl>
using TConstMTCaptureObjectFactories =
    TCaptureObjectFactories<TMTCaptureObjectFactory<T, TInfo, TInfoImpl>,
                            DataModel::TIConstCaptureObjectFactory<T, TInfo>,
                            TIOutputObjects<T, TInfo>>;

} // namespace Lathe::Audio::Plugin
