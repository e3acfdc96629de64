// A preset that lies in a file of its own.
#pragma once

#include "core/text/CharString.h"
#include "plugin/interfaces/PresetsManager.h"

#include <filesystem>
#include <string>

namespace Lathe::Audio::Plugin {

class IPresetOwner;

// The name of the file without its folder and without what follows the last ".", as bytes of
// whatever encoding the file system has.
std::string MakePresetName(const std::filesystem::path& path);
// Exactly ".preset", in small letters; the name before it may be empty.
bool IsPresetFileName(const std::filesystem::path& path);

class CXMLPresetFile : public IPreset {
public:
    // Of nobody: applying it does nothing.
    CXMLPresetFile() = default;
    // The index is the global one.
    CXMLPresetFile(const std::filesystem::path& path, int index, IPresetOwner& owner);

    const char* GetName() const override { return m_Name.GetText(); }
    // The preset itself may be gone when this returns: whoever hears of it may refresh the lists.
    void Apply() override;
    CXMLPresetFile* Clone() const override { return new CXMLPresetFile(*this); }

private:
    std::filesystem::path m_Path;
    Core::CCharString m_Name;
    int m_Index = -1;
    IPresetOwner* m_Owner = nullptr;
};

} // namespace Lathe::Audio::Plugin
