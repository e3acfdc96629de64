// The presets offered to the user: those of the factory and the user's own, as they lie in their
// folders, and the current one.
//
// The presets of the factory count from 0, the user's own follow; the items of the folders are
// places in the list of their own side.
#pragma once

#include "core/containers/Folder.h"
#include "core/containers/Vector.h"

namespace Lathe::Core {
class IEventProvider;
}

namespace Lathe::Audio::Plugin {

class IPreset {
public:
    virtual const char* GetName() const = 0;
    // Makes it the current one and loads it.
    virtual void Apply() = 0;
    virtual ~IPreset() = default;
    // A preset of its own, which the caller owns and can apply when the lists have moved on.
    virtual IPreset* Clone() const = 0;
};

using IPresets = Containers::IVector<IPreset>;
using CPresetFolder = Containers::Folder<int, int>;

// The lists stay as they are until the next Refresh, SavePreset, SaveAsDefault or ResetDefault,
// which the thread that reads them calls too.
class IPresetsManager {
public:
    virtual IPresets& GetPresets() = 0;
    virtual const CPresetFolder& GetFactoryFolder() const = 0;
    virtual IPresets& GetUserPresets() = 0;
    virtual const CPresetFolder& GetUserFolder() const = 0;
    // Looks for the user's presets anew, and for the default one.
    virtual void Refresh() = 0;
    // A new array, which the caller deletes[].
    virtual char* GetCurrentPresetName() const = 0;
    // Both go round at the ends.
    virtual void PreviousPreset() = 0;
    virtual void NextPreset() = 0;
    virtual Core::IEventProvider& GetPresetChangedEvent() const = 0;
    // False when the file can't be written; what it held before stays then.
    virtual bool SavePreset(const char* path) = 0;
    // False, and nothing changes, when the file is missing or not well-formed.
    virtual bool LoadPreset(const char* path) = 0;
    virtual bool SaveAsDefault() = 0;
    virtual void LoadDefault() = 0;
    // Forgets the user's default.
    virtual void ResetDefault() = 0;
    virtual ~IPresetsManager() = default;
};

} // namespace Lathe::Audio::Plugin
