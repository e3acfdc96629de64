// Items in named folders within folders, such as presets as they lie on the disk.
#pragma once

#include "core/text/CharString.h"

#include <vector>

namespace Lathe::Containers {

// TArgument is what an item is handed over as.
template <class TItem, class TArgument = TItem>
class Folder {
public:
    explicit Folder(const char* name = nullptr) : m_Name(name) {}

    const char* GetName() const { return m_Name.GetText(); }

    int GetFoldersCount() const { return static_cast<int>(m_Folders.size()); }
    const Folder& GetFolder(int index) const { return m_Folders[static_cast<std::size_t>(index)]; }
    // Valid until the next one is added.
    Folder& AddFolder(const char* name) { return m_Folders.emplace_back(name); }

    int GetItemsCount() const { return static_cast<int>(m_Items.size()); }
    const TItem& GetItem(int index) const { return m_Items[static_cast<std::size_t>(index)]; }
    void AddItem(TArgument item) { m_Items.push_back(item); }

    // Keeps the name.
    void Clear() {
        m_Folders.clear();
        m_Items.clear();
    }

private:
    Core::CCharString m_Name;
    std::vector<Folder> m_Folders;
    std::vector<TItem> m_Items;
};

} // namespace Lathe::Containers
