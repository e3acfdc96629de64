// The thread proxies of the five kinds, read-only and writable.
//
// "Model shown in the editor": the model's thread sets its parameter; the editor's queue runs the
// update, and the proxy fires there. "Knob turned": the editor calls SetValue, and waits until the
// model's thread has set its parameter; if the parameter took another value, that comes back
// through the queue.
#pragma once

#include "datamodel/objects/DynamicPropertyValue.h"
#include "datamodel/proxies/MTProxyBase.h"
#include "datamodel/proxies/MTProxyValues.h"
#include "math/Function.h"

namespace Lathe::DataModel {

// TObject is the source, a capture object of the kind. The invokers, of which the reader's can be
// null, and the source outlive the proxies.

template <class TObject, class T, class TInfo, class TValues>
using TConstMTProxyBase =
    TMTProxyBase<TIConstCaptureObjectProxy<TObject>, const TObject, T, TInfo, TValues>;

template <class TObject, class T, class TInfo, class TValues>
class TWritableMTProxyBase
    : public TMTProxyBase<TICaptureObjectProxy<TIConstCaptureObject<T, TInfo>, TObject>, TObject, T,
                          TInfo, TValues> {
public:
    void Capture() override { this->BeginCapture(); }
    void Release() override { this->EndCapture(); }

protected:
    using TWritableMTProxyBase::TMTProxyBase::TMTProxyBase;
};

// For parameters and texts.
template <class TObject, class TInfo, class T, class THolder>
class TConstCaptureValueMTProxy final
    : public TConstMTProxyBase<TObject, T, TInfo, TMTProxyValues<T, THolder>> {
public:
    using Source = const TObject;

    TConstCaptureValueMTProxy(System::IThreadInvoker* readerInvoker,
                              System::IThreadInvoker& sourceInvoker, const TObject& source)
        : TConstCaptureValueMTProxy::TMTProxyBase(readerInvoker, sourceInvoker, source) {
        this->Attach();
    }
    ~TConstCaptureValueMTProxy() override { this->Detach(); }
};

template <class TObject, class TInfo, class T, class THolder>
class TCaptureValueMTProxy final
    : public TWritableMTProxyBase<TObject, T, TInfo, TMTProxyValues<T, THolder>> {
public:
    using Source = TObject;

    TCaptureValueMTProxy(System::IThreadInvoker* readerInvoker,
                         System::IThreadInvoker& sourceInvoker, TObject& source)
        : TCaptureValueMTProxy::TWritableMTProxyBase(readerInvoker, sourceInvoker, source) {
        this->Attach();
    }
    ~TCaptureValueMTProxy() override { this->Detach(); }

    // Fires if the value differs, when the source has taken it.
    void SetValue(T value) override {
        const THolder written(value); // The value may be a part of the copy, which goes.
        const bool differs = this->GetValues().Write(written.GetValue());
        this->WriteSource(written.GetValue());
        if (this->GetValues().IsBehind())
            this->PostUpdate(); // A source that keeps what it had fires nothing.
        if (differs)
            this->NotifyValueChanged();
    }
};

// For curves, surfaces and custom properties: I is the interface of the values.
template <class TObject, class TInfo, class I>
class TConstObjectMTProxy final
    : public TConstMTProxyBase<TObject, const I&, TInfo, TMTProxyObjects<I>> {
public:
    using Source = const TObject;

    TConstObjectMTProxy(System::IThreadInvoker* readerInvoker,
                        System::IThreadInvoker& sourceInvoker, const TObject& source)
        : TConstObjectMTProxy::TMTProxyBase(readerInvoker, sourceInvoker, source) {
        this->Attach();
    }
    ~TConstObjectMTProxy() override { this->Detach(); }
};

template <class TObject, class TInfo, class I>
class TObjectMTProxy final
    : public TWritableMTProxyBase<TObject, const I&, TInfo, TMTProxyObjects<I>> {
public:
    using Source = TObject;

    TObjectMTProxy(System::IThreadInvoker* readerInvoker, System::IThreadInvoker& sourceInvoker,
                   TObject& source)
        : TObjectMTProxy::TWritableMTProxyBase(readerInvoker, sourceInvoker, source) {
        this->Attach();
    }
    ~TObjectMTProxy() override { this->Detach(); }

    // Fires as the write comes back through the reader's queue.
    void SetValue(const I& value) override {
        const std::unique_ptr<I> old = this->GetValues().Exchange(value);
        this->WriteSource(value);
    }
};

} // namespace Lathe::DataModel

namespace Lathe::DataModel::Objects {

using CConstCaptureParamMTProxy =
    TConstCaptureValueMTProxy<IConstCaptureParam, IConstParamInfo, double, CParamFloatValueHolder>;
using CCaptureParamMTProxy =
    TCaptureValueMTProxy<ICaptureParam, IConstParamInfo, double, CParamFloatValueHolder>;
using CConstCaptureCurveMTProxy =
    TConstObjectMTProxy<IConstCaptureCurve, IConstCurveInfo, Math::IFunction>;
using CCaptureCurveMTProxy = TObjectMTProxy<ICaptureCurve, IConstCurveInfo, Math::IFunction>;
using CConstCaptureSurfaceMTProxy =
    TConstObjectMTProxy<IConstCaptureSurface, IConstSurfaceInfo, Math::IBinaryFunction>;
using CCaptureSurfaceMTProxy =
    TObjectMTProxy<ICaptureSurface, IConstSurfaceInfo, Math::IBinaryFunction>;
using CConstCaptureStringMTProxy = TConstCaptureValueMTProxy<IConstCaptureString, IConstStringInfo,
                                                             const char*, CStringValueHolder>;
using CCaptureStringMTProxy =
    TCaptureValueMTProxy<ICaptureString, IConstStringInfo, const char*, CStringValueHolder>;
using CConstCaptureCustomPropertyMTProxy =
    TConstObjectMTProxy<IConstCaptureCustomProperty, IConstCustomPropertyInfo,
                        IDynamicPropertyValue>;
using CCaptureCustomPropertyMTProxy =
    TObjectMTProxy<ICaptureCustomProperty, IConstCustomPropertyInfo, IDynamicPropertyValue>;

} // namespace Lathe::DataModel::Objects
