#include "datamodel/parametrized/ParametrizedCaptureObject.h"

#include <utility>

namespace Lathe::DataModel {

// An input for as long as this lives. Nothing here is touched after a call to the owner, whose
// handlers may connect another object under the name.
template <class I, class TBase, class TWrapper>
template <class TObject>
class TParametrizedCaptureObject<I, TBase, TWrapper>::TInput {
public:
    TInput(TParametrizedCaptureObject& owner, const char* name, const TObject& object)
        : m_Owner(&owner),
          m_Name(name),
          m_Object(&object),
          m_ValueChanged(*this, &TInput::OnValueChanged),
          m_BeginCapture(*this, &TInput::OnBeginCapture),
          m_EndCapture(*this, &TInput::OnEndCapture) {
        object.GetValueChangedEvent().AddCommand(m_ValueChanged);
        object.GetBeginCaptureEvent().AddCommand(m_BeginCapture);
        object.GetEndCaptureEvent().AddCommand(m_EndCapture);
    }
    ~TInput() {
        m_Object->GetValueChangedEvent().RemoveCommand(m_ValueChanged);
        m_Object->GetBeginCaptureEvent().RemoveCommand(m_BeginCapture);
        m_Object->GetEndCaptureEvent().RemoveCommand(m_EndCapture);
    }
    TInput(const TInput&) = delete;
    TInput& operator=(const TInput&) = delete;

    // True while this input counts among the captured ones. An object may begin twice, and end
    // what it began before it was connected.
    bool IsCounted() const { return m_Counted; }
    void OnBeginCapture() {
        if (!std::exchange(m_Counted, true))
            m_Owner->AddCapture();
    }

private:
    void OnValueChanged() { m_Owner->TakeValue(m_Name.c_str(), *m_Object); }
    void OnEndCapture() {
        if (std::exchange(m_Counted, false))
            m_Owner->RemoveCapture();
    }

    TParametrizedCaptureObject* m_Owner;
    std::string m_Name;
    const TObject* m_Object;
    Core::TCommand<TInput> m_ValueChanged;
    Core::TCommand<TInput> m_BeginCapture;
    Core::TCommand<TInput> m_EndCapture;
    bool m_Counted = false;
};

template <class I, class TBase, class TWrapper>
TParametrizedCaptureObject<I, TBase, TWrapper>::TParametrizedCaptureObject(
    Math::TIParametrizedFunction<I>* formula)
    : TBase(formula->GetFunction(), false), m_Formula(formula) {}

template <class I, class TBase, class TWrapper>
TParametrizedCaptureObject<I, TBase, TWrapper>::~TParametrizedCaptureObject() = default;

template <class I, class TBase, class TWrapper>
void TParametrizedCaptureObject<I, TBase, TWrapper>::Disconnect() {
    m_ParamInputs.clear();
    m_CurveInputs.clear();
    m_SurfaceInputs.clear();
    m_CaptureCount = 0;
    this->ForgetCapture();
}

template <class I, class TBase, class TWrapper>
void TParametrizedCaptureObject<I, TBase, TWrapper>::ConnectParam(
    const char* name, const Objects::IConstCaptureParam& object) {
    Connect(m_ParamInputs, name, object);
}

template <class I, class TBase, class TWrapper>
void TParametrizedCaptureObject<I, TBase, TWrapper>::ConnectCurve(
    const char* name, const Objects::IConstCaptureCurve& object) {
    Connect(m_CurveInputs, name, object);
}

template <class I, class TBase, class TWrapper>
void TParametrizedCaptureObject<I, TBase, TWrapper>::ConnectSurface(
    const char* name, const Objects::IConstCaptureSurface& object) {
    Connect(m_SurfaceInputs, name, object);
}

// The capture of the earlier object goes behind that of the new one, so that a bracket that both
// keep open stays open.
template <class I, class TBase, class TWrapper>
template <class TObject>
void TParametrizedCaptureObject<I, TBase, TWrapper>::Connect(Inputs<TObject>& inputs,
                                                             const char* name,
                                                             const TObject& object) {
    auto& input = inputs[name];
    const bool wasCounted = input && input->IsCounted();
    input = std::make_unique<TInput<TObject>>(*this, name, object);
    if (object.IsCaptured())
        input->OnBeginCapture();
    if (wasCounted)
        RemoveCapture();
    TakeValue(name, object);
}

template <class I, class TBase, class TWrapper>
template <class TObject>
void TParametrizedCaptureObject<I, TBase, TWrapper>::TakeValue(const char* name,
                                                               const TObject& object) {
    if (SetInput(name, object.GetValue()))
        this->NotifyValueChanged();
}

template <class I, class TBase, class TWrapper>
bool TParametrizedCaptureObject<I, TBase, TWrapper>::SetInput(const char* name, double value) {
    return m_Formula->SetParam(name, value);
}

template <class I, class TBase, class TWrapper>
bool TParametrizedCaptureObject<I, TBase, TWrapper>::SetInput(const char* name,
                                                              const Math::IFunction& function) {
    return m_Formula->SetCurveParam(name, function);
}

template <class I, class TBase, class TWrapper>
bool TParametrizedCaptureObject<I, TBase, TWrapper>::SetInput(
    const char* name, const Math::IBinaryFunction& function) {
    return m_Formula->SetSurfaceParam(name, function);
}

template <class I, class TBase, class TWrapper>
void TParametrizedCaptureObject<I, TBase, TWrapper>::AddCapture() {
    if (++m_CaptureCount == 1)
        this->BeginCapture();
}

template <class I, class TBase, class TWrapper>
void TParametrizedCaptureObject<I, TBase, TWrapper>::RemoveCapture() {
    if (--m_CaptureCount == 0)
        this->EndCapture();
}

template class TParametrizedCaptureObject<
    Math::IConstant, Objects::CConstantToCaptureParamAdapter,
    TIConstCaptureObjectWrapper<double, Objects::IConstParamInfo>>;
template class TParametrizedCaptureObject<
    Math::IFunction, Objects::CConstCaptureCurve,
    TIConstCaptureObjectWrapper<const Math::IFunction&, Objects::IConstCurveInfo>>;
template class TParametrizedCaptureObject<
    Math::IBinaryFunction, Objects::CConstCaptureSurface,
    TIConstCaptureObjectWrapper<const Math::IBinaryFunction&, Objects::IConstSurfaceInfo>>;

} // namespace Lathe::DataModel
