// The model of one instance: what its model files make of its values.
#pragma once

#include "serialization/Serializable.h"

namespace Lathe::Core {
class IEventProvider;
}

namespace Lathe::AppEngine {
class ISkinModel;
}

namespace Lathe::Audio::Plugin {

class IPluginGUIConnections;

// Each of the three models is null when it isn't loaded. Any thread may call.
class IAudioPluginModel : public virtual Serialization::ISerializable {
public:
    virtual void Enable(bool enabled) = 0;
    // True when no model is loaded.
    virtual bool IsEnabled() const = 0;
    // Loads the models that the connections name; null unloads them.
    virtual void Connect(IPluginGUIConnections* connections) = 0;
    virtual const AppEngine::ISkinModel* GetModel() const = 0;
    virtual AppEngine::ISkinModel* GetModel() = 0;
    virtual const AppEngine::ISkinModel* GetSharedModel() const = 0;
    virtual AppEngine::ISkinModel* GetSharedModel() = 0;
    virtual const AppEngine::ISkinModel* GetGlobalModel() const = 0;
    virtual AppEngine::ISkinModel* GetGlobalModel() = 0;
    // The persistent state as a whole has changed.
    virtual Core::IEventProvider& GetStateChangedEvent() const = 0;
    // One persistent value has changed.
    virtual Core::IEventProvider& GetValueChangedEvent() const = 0;
};

} // namespace Lathe::Audio::Plugin
