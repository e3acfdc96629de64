#include "plugin/presets/PresetLists.h"

#include "core/text/CharString.h"
#include "plugin/interfaces/AudioPluginDataPath.h"
#include "plugin/presets/LegacyPresets.h"

#include <algorithm>
#include <cstddef>
#include <system_error>
#include <utility>
#include <vector>

namespace Lathe::Audio::Plugin {

namespace {

namespace fs = std::filesystem;

constexpr const char* DefaultName = "Default";

// A link may lead to the whole disk, and links among folders multiply the ways through them.
constexpr std::size_t MaxDepth = 32;
constexpr int MaxFolders = 1024;

std::vector<fs::directory_entry> ReadEntries(const fs::path& path) {
    std::vector<fs::directory_entry> entries;
    std::error_code error;
    for (fs::directory_iterator entry(path, error); !error && entry != fs::directory_iterator();
         entry.increment(error))
        entries.push_back(*entry);
    return entries;
}

bool IsFolder(const fs::directory_entry& entry) {
    std::error_code ignored;
    return entry.is_directory(ignored);
}

class CFolderScan {
public:
    CFolderScan(CPresetFiles& list, IPresetOwner& owner, int baseIndex)
        : m_List(list), m_Owner(owner), m_BaseIndex(baseIndex) {}

    void Scan(const fs::path& path, CPresetFolder& folder) {
        if (m_FoldersLeft == 0 || m_OpenFolders.size() == MaxDepth || IsOpen(path))
            return;
        --m_FoldersLeft;
        const std::vector<fs::directory_entry> entries = ReadEntries(path);
        m_OpenFolders.push_back(path);
        for (const fs::directory_entry& entry : entries)
            if (IsFolder(entry))
                Scan(entry.path(), folder.AddFolder(entry.path().filename().c_str()));
        m_OpenFolders.pop_back();
        for (const fs::directory_entry& entry : entries)
            if (!IsFolder(entry) && IsPresetFileName(entry.path()))
                AddFile(entry.path(), folder);
    }

private:
    bool IsOpen(const fs::path& path) const {
        return std::any_of(m_OpenFolders.begin(), m_OpenFolders.end(), [&](const fs::path& open) {
            std::error_code ignored;
            return fs::equivalent(path, open, ignored);
        });
    }
    void AddFile(const fs::path& path, CPresetFolder& folder) {
        const int place = m_List.GetCount();
        m_List.SetCount(place + 1);
        m_List[place] = CXMLPresetFile(path, m_BaseIndex + place, m_Owner);
        folder.AddItem(place);
    }

    CPresetFiles& m_List;
    IPresetOwner& m_Owner;
    int m_BaseIndex;
    // From the root to the present one.
    std::vector<fs::path> m_OpenFolders;
    int m_FoldersLeft = MaxFolders;
};

// Among those directly in the folder; null when there is none.
IPreset* FindDefault(const CPresetFolder& folder, IPresets& presets) {
    for (int i = 0; i < folder.GetItemsCount(); ++i) {
        IPreset& preset = presets.GetElement(folder.GetItem(i));
        if (Core::CCharString(preset.GetName()) == DefaultName)
            return &preset;
    }
    return nullptr;
}

} // namespace

void ScanFolder(const fs::path& path, CPresetFolder& folder, CPresetFiles& list,
                IPresetOwner& owner, int baseIndex) {
    CFolderScan(list, owner, baseIndex).Scan(path, folder);
}

CPresetLists::CPresetLists(IPresetOwner& owner, const DSP::ILegacyPresets& legacyPresets,
                           const IAudioPluginDataPath& dataPath)
    : m_Owner(owner), m_UserFolderPath(dataPath.GetUserPresetsFolder()) {
    if (legacyPresets.GetCount() > 0) {
        m_Presets = std::make_unique<CAudioPluginLegacyPresets>(owner, legacyPresets);
        for (int i = 0; i < m_Presets->GetCount(); ++i)
            m_FactoryPresets.AddItem(i);
    } else {
        auto files = std::make_unique<CPresetFiles>();
        ScanFolder(dataPath.GetFactoryPresetsFolder(), m_FactoryPresets, *files, owner, 0);
        m_Presets = std::move(files);
    }
    Refresh();
}

void CPresetLists::Refresh() {
    m_DefaultPreset = nullptr;
    m_UserPresets.Clear();
    m_UserPresetFiles.SetCount(0, true);
    ScanFolder(m_UserFolderPath, m_UserPresets, m_UserPresetFiles, m_Owner, m_Presets->GetCount());
    m_DefaultPreset = FindDefault(m_UserPresets, m_UserPresetFiles);
    if (!m_DefaultPreset)
        m_DefaultPreset = FindDefault(m_FactoryPresets, *m_Presets);
}

IPreset* CPresetLists::FindByIndex(int globalIndex) {
    const int factoryCount = m_Presets->GetCount();
    if (globalIndex < 0 || globalIndex >= GetCount())
        return nullptr;
    if (globalIndex < factoryCount)
        return &m_Presets->GetElement(globalIndex);
    return &m_UserPresetFiles.GetElement(globalIndex - factoryCount);
}

int CPresetLists::WrapIndex(int index) const {
    const int count = GetCount();
    if (index >= count)
        return 0;
    return index < 0 ? std::max(count - 1, 0) : index;
}

} // namespace Lathe::Audio::Plugin
