// Capture objects by interface: a typed value, its description, its events and its capture state.
//
// Knob turned in the editor: Capture (begin event), SetValue any number of times (value-changed
// event inside each call that changes something), Release (end event). Capture does not gate
// SetValue, locks nothing and does not count.
#pragma once

#include "core/Capture.h"
#include "core/Disconnect.h"
#include "core/events/Value.h"

namespace Lathe::Math {
class IFunction;
class IBinaryFunction;
} // namespace Lathe::Math

namespace Lathe::DataModel::Objects {
class IConstParamInfo;
class IConstCurveInfo;
class IConstSurfaceInfo;
class IConstStringInfo;
class IConstCustomPropertyInfo;
class IDynamicPropertyValue;
} // namespace Lathe::DataModel::Objects

namespace Lathe::DataModel {

template <class T>
class TIConstCaptureValue : public virtual Core::IValueChangedEventProvider,
                            public virtual Core::TIConstValue<T>,
                            public virtual Core::IConstCapture {};

template <class T>
class TICaptureValue : public virtual Core::TIValue<T>,
                       public virtual TIConstCaptureValue<T>,
                       public virtual Core::ICapture {};

// Texts and references that GetValue gives are the object's own and valid until the next set.
template <class T, class TInfo>
class TIConstCaptureObject : public virtual TIConstCaptureValue<T> {
public:
    virtual const TInfo& GetInfo() const = 0;
};

template <class T, class TInfo>
class TICaptureObject : public virtual TIConstCaptureObject<T, TInfo>,
                        public virtual TICaptureValue<T> {
public:
    const TInfo& GetInfo() const override = 0;
};

// An object that stands for another one and can be cut from it.
template <class T, class TInfo>
class TIConstCaptureObjectWrapper : public virtual TIConstCaptureObject<T, TInfo>,
                                    public virtual Core::IDisconnect {};

template <class T, class TInfo>
class TICaptureObjectWrapper : public virtual TIConstCaptureObjectWrapper<T, TInfo>,
                               public virtual TICaptureObject<T, TInfo> {};

// The second ladder, for values that another thread may replace at any moment: GetValue gives a
// fresh copy, which the caller frees.
template <class T>
class TIConstCaptureValueFactory : public virtual Core::IValueChangedEventProvider,
                                   public virtual Core::TIConstValueFactory<T>,
                                   public virtual Core::IConstCapture {};

template <class T>
class TICaptureValueFactory : public virtual Core::TIValueFactory<T>,
                              public virtual TIConstCaptureValueFactory<T>,
                              public virtual Core::ICapture {};

template <class T, class TInfo>
class TIConstCaptureObjectFactory : public virtual TIConstCaptureValueFactory<T> {
public:
    virtual const TInfo& GetInfo() const = 0;
};

template <class T, class TInfo>
class TICaptureObjectFactory : public virtual TIConstCaptureObjectFactory<T, TInfo>,
                               public virtual TICaptureValueFactory<T> {
public:
    const TInfo& GetInfo() const override = 0;
};

} // namespace Lathe::DataModel

namespace Lathe::DataModel::Objects {

// The five kinds, each with its value type and its description.
using IConstCaptureParam = TIConstCaptureObject<double, IConstParamInfo>;
using ICaptureParam = TICaptureObject<double, IConstParamInfo>;
using IConstCaptureCurve = TIConstCaptureObject<const Math::IFunction&, IConstCurveInfo>;
using ICaptureCurve = TICaptureObject<const Math::IFunction&, IConstCurveInfo>;
using IConstCaptureSurface = TIConstCaptureObject<const Math::IBinaryFunction&, IConstSurfaceInfo>;
using ICaptureSurface = TICaptureObject<const Math::IBinaryFunction&, IConstSurfaceInfo>;
using IConstCaptureString = TIConstCaptureObject<const char*, IConstStringInfo>;
using ICaptureString = TICaptureObject<const char*, IConstStringInfo>;
using IConstCaptureCustomProperty =
    TIConstCaptureObject<const IDynamicPropertyValue&, IConstCustomPropertyInfo>;
using ICaptureCustomProperty =
    TICaptureObject<const IDynamicPropertyValue&, IConstCustomPropertyInfo>;

} // namespace Lathe::DataModel::Objects
