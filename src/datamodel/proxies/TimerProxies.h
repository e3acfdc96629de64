// The timer proxies of the five kinds, read-only and writable.
//
// "Meter moves": the audio thread sets the source a thousand times a second; every 50 ms the proxy
// fires once, on the timer's thread, with the newest value. "Knob turned": SetValue goes through to
// the source at once, on the caller's thread, and doesn't come back.
#pragma once

#include "datamodel/objects/DynamicPropertyValue.h"
#include "datamodel/proxies/TimerProxyBase.h"
#include "math/Function.h"

namespace Lathe::DataModel {

template <class TSource, class T, class TInfo>
using TConstTimerProxyBase =
    TTimerProxyBase<TIConstCaptureObjectTimerProxy<TIConstCaptureObject<T, TInfo>>, const TSource,
                    T, TInfo>;

template <class TSource, class T, class TInfo>
class TWritableTimerProxyBase
    : public TTimerProxyBase<
          TICaptureObjectTimerProxy<TIConstCaptureObject<T, TInfo>, TICaptureObject<T, TInfo>>,
          TSource, T, TInfo> {
public:
    // Fires always; for a parameter only when the copy changes, or was behind its source.
    void SetValue(T value) override { this->Write(value); }
    void Capture() override { this->BeginCapture(); }
    void Release() override { this->EndCapture(); }

protected:
    using TWritableTimerProxyBase::TTimerProxyBase::TTimerProxyBase;
};

// For curves, surfaces, texts and custom properties. As for those below, the source and the timer
// outlive the proxy.
template <class T, class TInfo>
class TConstCaptureObjectTimerProxy final
    : public TConstTimerProxyBase<TIConstCaptureObjectFactory<T, TInfo>, T, TInfo> {
public:
    TConstCaptureObjectTimerProxy(const TIConstCaptureObjectFactory<T, TInfo>& source,
                                  System::ITimerProvider& timer)
        : TConstCaptureObjectTimerProxy::TTimerProxyBase(source, timer) {
        this->Attach();
    }
    ~TConstCaptureObjectTimerProxy() override { this->Detach(); }
};

template <class T, class TInfo>
class TCaptureObjectTimerProxy final
    : public TWritableTimerProxyBase<TICaptureObjectFactory<T, TInfo>, T, TInfo> {
public:
    TCaptureObjectTimerProxy(TICaptureObjectFactory<T, TInfo>& source,
                             System::ITimerProvider& timer)
        : TCaptureObjectTimerProxy::TWritableTimerProxyBase(source, timer) {
        this->Attach();
    }
    ~TCaptureObjectTimerProxy() override { this->Detach(); }
};

} // namespace Lathe::DataModel

namespace Lathe::DataModel::Objects {

class CConstCaptureParamTimerProxy final
    : public TConstTimerProxyBase<IConstCaptureParam, double, IConstParamInfo> {
public:
    CConstCaptureParamTimerProxy(const IConstCaptureParam& source, System::ITimerProvider& timer)
        : TTimerProxyBase(source, timer) {
        Attach();
    }
    ~CConstCaptureParamTimerProxy() override { Detach(); }
};

class CCaptureParamTimerProxy final
    : public TWritableTimerProxyBase<ICaptureParam, double, IConstParamInfo> {
public:
    CCaptureParamTimerProxy(ICaptureParam& source, System::ITimerProvider& timer)
        : TWritableTimerProxyBase(source, timer) {
        Attach();
    }
    ~CCaptureParamTimerProxy() override { Detach(); }
};

using CConstCaptureCurveTimerProxy =
    TConstCaptureObjectTimerProxy<const Math::IFunction&, IConstCurveInfo>;
using CCaptureCurveTimerProxy = TCaptureObjectTimerProxy<const Math::IFunction&, IConstCurveInfo>;
using CConstCaptureSurfaceTimerProxy =
    TConstCaptureObjectTimerProxy<const Math::IBinaryFunction&, IConstSurfaceInfo>;
using CCaptureSurfaceTimerProxy =
    TCaptureObjectTimerProxy<const Math::IBinaryFunction&, IConstSurfaceInfo>;
using CConstCaptureStringTimerProxy = TConstCaptureObjectTimerProxy<const char*, IConstStringInfo>;
using CCaptureStringTimerProxy = TCaptureObjectTimerProxy<const char*, IConstStringInfo>;
using CConstCaptureCustomPropertyTimerProxy =
    TConstCaptureObjectTimerProxy<const IDynamicPropertyValue&, IConstCustomPropertyInfo>;
using CCaptureCustomPropertyTimerProxy =
    TCaptureObjectTimerProxy<const IDynamicPropertyValue&, IConstCustomPropertyInfo>;

} // namespace Lathe::DataModel::Objects
