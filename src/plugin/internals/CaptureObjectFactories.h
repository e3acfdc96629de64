// Vectors of input or of output objects: one object per description, all with one lock.
#pragma once

#include "core/Lock.h"
#include "core/Realtime.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace Lathe::Audio::Plugin {

// IVectorOf is the vector of I as which the TObjects are seen. GetElement carries no `override`:
// with a read-only vector the mutable one overrides nothing.
template <class TObject, class I, class IVectorOf>
class TCaptureObjectFactories : public IVectorOf {
public:
    // The lock outlives the objects.
    template <class TInfos>
    TCaptureObjectFactories(const TInfos& infos, Core::ILock& lock) {
        for (int i = 0; i < infos.GetCount(); ++i)
            m_Objects.push_back(std::make_unique<TObject>(infos.GetElement(i), lock));
    }

    int GetCount() const LATHE_REALTIME { return static_cast<int>(m_Objects.size()); }
    const I& GetElement(int index) const LATHE_REALTIME { return (*this)[index]; }
    I& GetElement(int index) LATHE_REALTIME { return (*this)[index]; }

    TObject& operator[](int index) LATHE_REALTIME {
        return *m_Objects[static_cast<std::size_t>(index)];
    }
    const TObject& operator[](int index) const LATHE_REALTIME {
        return *m_Objects[static_cast<std::size_t>(index)];
    }

private:
    std::vector<std::unique_ptr<TObject>> m_Objects;
};

// Calls the operation with each object in order.
template <class TFactories, class TOperation>
void ForEachObject(TFactories& factories, TOperation operation) {
    const int count = factories.GetCount();
    for (int i = 0; i < count; ++i)
        operation(factories[i]);
}

} // namespace Lathe::Audio::Plugin
