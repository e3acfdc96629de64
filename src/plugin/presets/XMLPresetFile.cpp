#include "plugin/presets/XMLPresetFile.h"

#include "plugin/presets/PresetOwner.h"

#include <cstddef>

namespace Lathe::Audio::Plugin {

namespace {

constexpr const char* PresetExtension = ".preset";

} // namespace

std::string MakePresetName(const std::filesystem::path& path) {
    const std::string fileName = path.filename().native();
    return fileName.substr(0, fileName.rfind('.'));
}

bool IsPresetFileName(const std::filesystem::path& path) {
    const std::string fileName = path.filename().native();
    const std::size_t dot = fileName.rfind('.');
    return dot != std::string::npos && fileName.substr(dot) == PresetExtension;
}

CXMLPresetFile::CXMLPresetFile(const std::filesystem::path& path, int index, IPresetOwner& owner)
    : m_Path(path), m_Name(MakePresetName(path).c_str()), m_Index(index), m_Owner(&owner) {}

void CXMLPresetFile::Apply() {
    if (!m_Owner)
        return;
    const CXMLPresetFile self(*this);
    self.m_Owner->SetCurrentPreset(self.m_Index, self.GetName());
    self.m_Owner->LoadPreset(self.m_Path.c_str());
}

} // namespace Lathe::Audio::Plugin
