// A dictionary of texts by name, such as the attributes of an element.
#pragma once

#include "core/containers/Iterator.h"
#include "core/containers/NameHash.h"
#include "core/containers/Vector.h"

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

namespace Lathe::Containers {

class IConstNamedAttributes : public virtual IConstCount {
public:
    // Null for a name that isn't there and for a null name; valid until the next change.
    virtual const char* GetValue(const char* name) const = 0;
    // Both run in the same order, in which the names have no order.
    virtual std::unique_ptr<IConstValueIterator<const char*>> GetNames() const = 0;
    virtual std::unique_ptr<IConstValueIterator<const char*>> GetValues() const = 0;
};

class INamedAttributes : public virtual IConstNamedAttributes {
public:
    // Copies both. Replaces the text of a name that is there; ignores a null or empty name; takes a
    // null value as the empty text.
    virtual void SetValue(const char* name, const char* value) = 0;
    virtual void RemoveValue(const char* name) = 0;
    virtual void Clear() = 0;
};

class CNamedAttributes : public INamedAttributes {
public:
    CNamedAttributes() : m_Values(NameMapBuckets) {}

    int GetCount() const LATHE_REALTIME override { return static_cast<int>(m_Values.size()); }
    const char* GetValue(const char* name) const override;
    std::unique_ptr<IConstValueIterator<const char*>> GetNames() const override;
    std::unique_ptr<IConstValueIterator<const char*>> GetValues() const override;

    void SetValue(const char* name, const char* value) override;
    void RemoveValue(const char* name) override;
    void Clear() override { m_Values.clear(); }

private:
    std::unordered_map<std::string, std::string, CNameHash, std::equal_to<>> m_Values;
};

} // namespace Lathe::Containers
