#include "core/runtime/ObjectsFactory.h"

namespace Lathe::Runtime {

namespace {

std::string MakeKey(const char* classId, const char* interfaceId) {
    return std::string(classId) + "-" + interfaceId;
}

} // namespace

CObjectsFactory::CObjectsFactory() : m_Factories(Containers::NameMapBuckets) {}

CObjectsFactory& CObjectsFactory::GetInstance() {
    static CObjectsFactory instance;
    return instance;
}

void CObjectsFactory::RegisterFactory(const char* classId, const char* interfaceId,
                                      const IObjectFactory& factory) {
    m_Factories[MakeKey(classId, interfaceId)] = &factory;
}

const IObjectFactory* CObjectsFactory::Find(const char* classId, const char* interfaceId) const {
    if (!classId || !interfaceId)
        return nullptr;
    const auto found = m_Factories.find(MakeKey(classId, interfaceId));
    return found == m_Factories.end() ? nullptr : found->second;
}

void* CObjectsFactory::CreateObject(const char* classId, const char* interfaceId) const {
    const IObjectFactory* factory = Find(classId, interfaceId);
    return factory ? factory->CreateObject(classId, interfaceId) : nullptr;
}

} // namespace Lathe::Runtime
