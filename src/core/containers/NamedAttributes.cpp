#include "core/containers/NamedAttributes.h"

#include <string_view>

namespace Lathe::Containers {

namespace {

// Over the names or the values of a map of texts.
template <class TMap, auto Member>
class TTextIterator : public IConstValueIterator<const char*> {
public:
    explicit TTextIterator(const TMap& map) : m_Position(map.begin()), m_End(map.end()) {}

    bool IsDone() const override { return m_Position == m_End; }
    void Next() override { ++m_Position; }
    const char* GetValue() const override { return ((*m_Position).*Member).c_str(); }

private:
    typename TMap::const_iterator m_Position;
    typename TMap::const_iterator m_End;
};

template <auto Member, class TMap>
std::unique_ptr<IConstValueIterator<const char*>> MakeIterator(const TMap& map) {
    return std::make_unique<TTextIterator<TMap, Member>>(map);
}

using Entry = std::pair<const std::string, std::string>;

} // namespace

const char* CNamedAttributes::GetValue(const char* name) const {
    if (!name)
        return nullptr;
    const auto found = m_Values.find(std::string_view(name));
    return found == m_Values.end() ? nullptr : found->second.c_str();
}

std::unique_ptr<IConstValueIterator<const char*>> CNamedAttributes::GetNames() const {
    return MakeIterator<&Entry::first>(m_Values);
}

std::unique_ptr<IConstValueIterator<const char*>> CNamedAttributes::GetValues() const {
    return MakeIterator<&Entry::second>(m_Values);
}

void CNamedAttributes::SetValue(const char* name, const char* value) {
    if (name && *name)
        m_Values[name] = std::string(value ? value : "");
}

void CNamedAttributes::RemoveValue(const char* name) {
    if (name)
        m_Values.erase(name);
}

} // namespace Lathe::Containers
