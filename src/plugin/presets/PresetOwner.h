// What a preset acts on when it is applied: the running instance, as far as presets know it.
#pragma once

#include "plugin/interfaces/PluginGUIConnections.h"

namespace Lathe::Audio::Plugin {

class IPresetOwner {
public:
    // Stores both under the lock of the presets, then fires the event of the presets.
    virtual void SetCurrentPreset(int globalIndex, const char* name) = 0;
    // False, and nothing changes, when the file is missing or not well-formed.
    virtual bool LoadPreset(const char* path) = 0;
    // Bypass first, then those of the filter. Null until a host is connected.
    virtual IInputParams* GetInputParams() = 0;
    virtual ~IPresetOwner() = default;
};

} // namespace Lathe::Audio::Plugin
