// Read-only capture objects whose value is a formula with live inputs: other capture objects, by
// the names that the formula uses.
//
// Input changed: the formula takes its value, and the object fires value changed. Inputs turned by
// hand: the object is captured from the first one's begin to the last one's end.
#pragma once

#include "core/containers/NameHash.h"
#include "datamodel/objects/capture/CaptureCurve.h"
#include "datamodel/objects/capture/CaptureSurface.h"
#include "datamodel/parametrized/ConstantToCaptureParamAdapter.h"
#include "math/ParametrizedFunction.h"

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

namespace Lathe::DataModel {

// I is the kind of the formula, TBase a read-only capture object over an I, TWrapper the interface
// to which Disconnect belongs. For one thread at a time.
template <class I, class TBase, class TWrapper>
class TParametrizedCaptureObject : public TBase, public virtual TWrapper {
public:
    // Takes the formula, which is not null.
    explicit TParametrizedCaptureObject(Math::TIParametrizedFunction<I>* formula);
    ~TParametrizedCaptureObject() override;

    // Cuts all inputs and forgets their captures, without an event; the formula keeps what it has.
    void Disconnect() override;
    // Each takes the place of the input of that kind that had the name. The object is not owned
    // and outlives this one or its connection. A name that the formula doesn't use changes nothing
    // but the captures.
    virtual void ConnectParam(const char* name, const Objects::IConstCaptureParam& object);
    virtual void ConnectCurve(const char* name, const Objects::IConstCaptureCurve& object);
    virtual void ConnectSurface(const char* name, const Objects::IConstCaptureSurface& object);

private:
    template <class TObject>
    class TInput;
    template <class TObject>
    using Inputs = std::unordered_map<std::string, std::unique_ptr<TInput<TObject>>,
                                      Containers::CNameHash, std::equal_to<>>;

    template <class TObject>
    void Connect(Inputs<TObject>& inputs, const char* name, const TObject& object);
    template <class TObject>
    void TakeValue(const char* name, const TObject& object);
    bool SetInput(const char* name, double value);
    bool SetInput(const char* name, const Math::IFunction& function);
    bool SetInput(const char* name, const Math::IBinaryFunction& function);
    void AddCapture();
    void RemoveCapture();

    std::unique_ptr<Math::TIParametrizedFunction<I>> m_Formula;
    Inputs<Objects::IConstCaptureParam> m_ParamInputs;
    Inputs<Objects::IConstCaptureCurve> m_CurveInputs;
    Inputs<Objects::IConstCaptureSurface> m_SurfaceInputs;
    int m_CaptureCount = 0;
};

} // namespace Lathe::DataModel

namespace Lathe::DataModel::Objects {

using CParametrizedCaptureParam =
    TParametrizedCaptureObject<Math::IConstant, CConstantToCaptureParamAdapter,
                               TIConstCaptureObjectWrapper<double, IConstParamInfo>>;
using CParametrizedCaptureCurve = TParametrizedCaptureObject<
    Math::IFunction, CConstCaptureCurve,
    TIConstCaptureObjectWrapper<const Math::IFunction&, IConstCurveInfo>>;
using CParametrizedCaptureSurface = TParametrizedCaptureObject<
    Math::IBinaryFunction, CConstCaptureSurface,
    TIConstCaptureObjectWrapper<const Math::IBinaryFunction&, IConstSurfaceInfo>>;

} // namespace Lathe::DataModel::Objects
