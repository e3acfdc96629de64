// Creation of objects by class id, for readers that find the class of an object in their stream.
//
// Class ids and interface ids are fixed texts, which stored presets hold.
#pragma once

#include <cstring>

namespace Lathe::Runtime {

class IObjectFactory {
public:
    // A new object of the class, seen as the interface and owned by the caller; null when this
    // factory doesn't make it. The pointer is to the interface, whose type the caller knows.
    virtual void* CreateObject(const char* classId, const char* interfaceId) const = 0;
    // The same text as class id and as interface id.
    virtual void* CreateObject(const char* id) const = 0;
    virtual ~IObjectFactory() = default;
};

// The factory of one class. T has a static ClassId() and I a static InterfaceId().
template <class T, class I>
class TObjectFactory : public IObjectFactory {
public:
    void* CreateObject(const char* classId, const char* interfaceId) const override {
        if (std::strcmp(classId, T::ClassId()) != 0 ||
            std::strcmp(interfaceId, I::InterfaceId()) != 0)
            return nullptr;
        return static_cast<I*>(new T); // The caller's, by contract.
    }
    void* CreateObject(const char* id) const override { return CreateObject(id, id); }
    // Part of the factories' layout; it has no effect.
    virtual void Reserved() {}
};

} // namespace Lathe::Runtime
