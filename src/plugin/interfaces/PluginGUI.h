// The editor of one instance.
//
// Instance built: Connect. Host shows the editor: Open with its window, SetVisible. State loaded by
// the host: Suspend, DeSerialize, Resume. Instance shut down: Connect with null.
#pragma once

#include "serialization/Serializable.h"

namespace Lathe::Core {
class IEventProvider;
}

namespace Lathe::Audio::Plugin {

class IPluginGUIConnections;

class IPluginGUI : public virtual Serialization::ISerialize,
                   public virtual Serialization::IDeSerialize {
public:
    // Copies the record; null disconnects.
    virtual void Connect(IPluginGUIConnections* connections) = 0;
    // The native handle of the host's window; true when one was given.
    virtual bool Open(void* parent) = 0;
    virtual void Close() = 0;
    virtual void SetVisible(bool visible) = 0;
    // In pixels of the parent.
    virtual void SetBounds(int left, int top, int right, int bottom) = 0;
    virtual void Redraw() = 0;
    // In pixels.
    virtual void GetSize(int& width, int& height) const = 0;
    virtual const char* GetText() const = 0;
    virtual void* GetNativeWindow() const = 0;
    virtual Core::IEventProvider& GetSizeChangedEvent() const = 0;
    virtual Core::IEventProvider& GetStateChangedEvent() const = 0;
    // From 0, unseen, to 1.
    virtual double GetTransparency() const = 0;
    virtual Core::IEventProvider& GetTransparencyChangedEvent() const = 0;
    // Around the load of a state: the editor's model rests meanwhile.
    virtual void Suspend() = 0;
    virtual void Resume() = 0;
};

} // namespace Lathe::Audio::Plugin
