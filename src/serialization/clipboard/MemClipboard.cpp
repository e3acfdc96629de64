#include "serialization/clipboard/MemClipboard.h"

#include <algorithm>
#include <cstddef>

namespace Lathe::System {

namespace {

template <class TItem>
class TFormatIterator : public Containers::IConstValueIterator<const char*> {
public:
    explicit TFormatIterator(const std::vector<TItem>& items) : m_Items(items) {}

    bool IsDone() const override { return m_Index == m_Items.size(); }
    void Next() override { ++m_Index; }
    const char* GetValue() const override { return m_Items[m_Index].first.c_str(); }

private:
    const std::vector<TItem>& m_Items;
    std::size_t m_Index = 0;
};

} // namespace

const CMemClipboard::Item* CMemClipboard::Find(const char* format) const {
    if (!format)
        return nullptr;
    const auto found = std::find_if(m_Items.begin(), m_Items.end(),
                                    [&](const Item& item) { return item.first == format; });
    return found == m_Items.end() ? nullptr : &*found;
}

bool CMemClipboard::Clear() {
    m_Items.clear();
    return true;
}

bool CMemClipboard::SetData(const void* data, int size, const char* format) {
    if (!format || size < 0 || (!data && size > 0))
        return false;
    std::string bytes(static_cast<const char*>(data), static_cast<std::size_t>(size));
    const Item* present = Find(format);
    if (present)
        m_Items[static_cast<std::size_t>(present - m_Items.data())].second = std::move(bytes);
    else
        m_Items.emplace_back(format, std::move(bytes));
    return true;
}

bool CMemClipboard::HasFormat(const char* format) const {
    return Find(format) != nullptr;
}

std::optional<std::string> CMemClipboard::GetData(const char* format) const {
    const Item* item = Find(format);
    return item ? std::optional(item->second) : std::nullopt;
}

std::unique_ptr<Containers::IConstValueIterator<const char*>> CMemClipboard::GetFormats() const {
    return std::make_unique<TFormatIterator<Item>>(m_Items);
}

} // namespace Lathe::System
