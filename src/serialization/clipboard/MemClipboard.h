// A clipboard within the process, for programs that have no desktop.
#pragma once

#include "serialization/clipboard/Clipboard.h"

#include <utility>
#include <vector>

namespace Lathe::System {

class CMemClipboard : public IClipboard {
public:
    bool Clear() override;
    bool SetData(const void* data, int size, const char* format) override;
    bool HasFormat(const char* format) const override;
    std::optional<std::string> GetData(const char* format) const override;
    // In the order in which they were first set.
    std::unique_ptr<Containers::IConstValueIterator<const char*>> GetFormats() const override;

private:
    // Format and bytes.
    using Item = std::pair<std::string, std::string>;

    const Item* Find(const char* format) const;

    std::vector<Item> m_Items;
};

} // namespace Lathe::System
