// The process-wide registry of object factories.
//
// At static initialisation: each class that can be made by id has a static TObjectFactory, and a
// CFactoryRegistration that enters it. Afterwards the registry is only read, from any thread.
#pragma once

#include "core/containers/NameHash.h"
#include "core/runtime/ObjectFactory.h"

#include <functional>
#include <string>
#include <unordered_map>

namespace Lathe::Runtime {

class CObjectsFactory : public IObjectFactory {
public:
    static CObjectsFactory& GetInstance();

    // The factory stays its owner's and must live to the end of the process. One class can be
    // registered under several interfaces.
    void RegisterFactory(const char* classId, const char* interfaceId,
                         const IObjectFactory& factory);

    // Whether the pair is known; false for null ids.
    bool HasFactory(const char* classId, const char* interfaceId) const {
        return Find(classId, interfaceId) != nullptr;
    }
    // Null for an unknown pair, and for null ids.
    void* CreateObject(const char* classId, const char* interfaceId) const override;
    void* CreateObject(const char* id) const override { return CreateObject(id, id); }

private:
    CObjectsFactory();

    const IObjectFactory* Find(const char* classId, const char* interfaceId) const;

    std::unordered_map<std::string, const IObjectFactory*, Containers::CNameHash, std::equal_to<>>
        m_Factories;
};

// A new T of the class, seen as I and owned by the caller, or null.
template <class I>
I* CreateObject(const char* classId) {
    return static_cast<I*>(CObjectsFactory::GetInstance().CreateObject(classId, I::InterfaceId()));
}

// A static object of this class enters the factory of T as I before main.
template <class T, class I>
class CFactoryRegistration {
public:
    CFactoryRegistration() {
        static const TObjectFactory<T, I> factory;
        CObjectsFactory::GetInstance().RegisterFactory(T::ClassId(), I::InterfaceId(), factory);
    }
};

} // namespace Lathe::Runtime
