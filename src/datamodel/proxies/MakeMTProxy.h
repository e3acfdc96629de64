// The thread proxy that fits an object of which only its interfaces are known.
#pragma once

#include "datamodel/proxies/MTProxies.h"

#include <memory>
#include <utility>

namespace Lathe::DataModel::Objects {

template <class... TProxies>
struct TMTProxyKinds {};

// In the order of asking: of each kind the writable proxy first, since a writable object offers
// both interfaces.
using CMTProxyKinds =
    TMTProxyKinds<CCaptureParamMTProxy, CConstCaptureParamMTProxy, CCaptureCurveMTProxy,
                  CConstCaptureCurveMTProxy, CCaptureSurfaceMTProxy, CConstCaptureSurfaceMTProxy,
                  CCaptureStringMTProxy, CConstCaptureStringMTProxy, CCaptureCustomPropertyMTProxy,
                  CConstCaptureCustomPropertyMTProxy>;

// `ask`, called as ask.template operator()<I>(), gives the object as an I*, or null. `take` is
// given the proxy for the first interface that is there, as a unique_ptr to its class; its result
// is returned. True without a call when the object offers none of the interfaces.
template <class TAsk, class TTake, class... TProxies>
bool MakeMTProxy(TMTProxyKinds<TProxies...>, const TAsk& ask, TTake take,
                 System::IThreadInvoker* readerInvoker, System::IThreadInvoker& sourceInvoker) {
    bool result = true;
    const auto make = [&]<class TProxy>(std::unique_ptr<TProxy> proxy) {
        auto* source = ask.template operator()<typename TProxy::Source>();
        if (!source)
            return false;
        proxy = std::make_unique<TProxy>(readerInvoker, sourceInvoker, *source);
        result = take(std::move(proxy));
        return true;
    };
    (make(std::unique_ptr<TProxies>()) || ...);
    return result;
}

template <class TAsk, class TTake>
bool MakeMTProxy(const TAsk& ask, TTake take, System::IThreadInvoker* readerInvoker,
                 System::IThreadInvoker& sourceInvoker) {
    return MakeMTProxy(CMTProxyKinds(), ask, take, readerInvoker, sourceInvoker);
}

} // namespace Lathe::DataModel::Objects
