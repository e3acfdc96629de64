// What parameters that read a curve or a surface at a point have in common: the inputs that the
// value is made of, each of which may be missing, and one bracket around the brackets of all.
#pragma once

#include "core/events/Command.h"
#include "datamodel/objects/CurveInfo.h"
#include "datamodel/objects/SurfaceInfo.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/objects/capture/CaptureState.h"

namespace Lathe::DataModel::Objects {

// The axis of the function's values.
inline const IConstParamInfo& GetHeightInfo(const IConstCurveInfo& info) {
    return info.GetYInfo();
}
inline const IConstParamInfo& GetHeightInfo(const IConstSurfaceInfo& info) {
    return info.GetZInfo();
}

// Captured while any of its inputs is; what any of them fires as a change, it fires too. TFunction
// is the const interface of the function's capture object. For one thread at a time.
template <class TFunction>
class TFunctionValueParam
    : public TCaptureState<TIConstCaptureObjectWrapper<double, IConstParamInfo>> {
public:
    ~TFunctionValueParam() override { ForgetInfo(); }

    // The axis of the function's values; without a function, that of the last one.
    const CParamInfo& GetInfo() const override { return m_Info; }

protected:
    // An object that outlives its connection, or null. TObject is its const interface.
    template <class TObject>
    class TInput {
    public:
        explicit TInput(TFunctionValueParam& owner) : m_Owner(owner) {}
        ~TInput() { Unsubscribe(); }
        TInput(const TInput&) = delete;
        TInput& operator=(const TInput&) = delete;

        const TObject* Get() const { return m_Object; }
        void Set(const TObject* object) {
            Replace(object);
            TakeOverCapture();
        }
        // The two steps of Set, of which only the second runs handlers: the bracket of the old
        // object ends, one that the new one is in begins.
        void Replace(const TObject* object) {
            Unsubscribe();
            m_Object = object;
            Subscribe();
        }
        void TakeOverCapture() { SetCaptured(m_Object && m_Object->IsCaptured()); }

    private:
        void Subscribe() {
            if (!m_Object)
                return;
            m_Object->GetValueChangedEvent().AddCommand(m_ValueChangedCommand);
            m_Object->GetBeginCaptureEvent().AddCommand(m_BeginCaptureCommand);
            m_Object->GetEndCaptureEvent().AddCommand(m_EndCaptureCommand);
        }
        void Unsubscribe() {
            if (!m_Object)
                return;
            m_Object->GetValueChangedEvent().RemoveCommand(m_ValueChangedCommand);
            m_Object->GetBeginCaptureEvent().RemoveCommand(m_BeginCaptureCommand);
            m_Object->GetEndCaptureEvent().RemoveCommand(m_EndCaptureCommand);
        }
        void SetCaptured(bool captured) {
            if (captured == m_Captured)
                return;
            m_Captured = captured;
            m_Owner.OnInputCaptured(captured);
        }
        void OnValueChanged() { m_Owner.NotifyValueChanged(); }
        void OnBeginCapture() { SetCaptured(true); }
        void OnEndCapture() { SetCaptured(false); }

        TFunctionValueParam& m_Owner;
        const TObject* m_Object = nullptr;
        bool m_Captured = false;
        Core::TCommand<TInput> m_ValueChangedCommand{*this, &TInput::OnValueChanged};
        Core::TCommand<TInput> m_BeginCaptureCommand{*this, &TInput::OnBeginCapture};
        Core::TCommand<TInput> m_EndCaptureCommand{*this, &TInput::OnEndCapture};
    };
    using CParamInput = TInput<IConstCaptureParam>;

    TFunctionValueParam() = default;

    // Takes the description at once, and whenever it changes.
    void SetFunction(const TFunction* function) {
        ForgetInfo();
        m_Function.Replace(function);
        // Handlers, which may set yet another function, run only from here on.
        if (function) {
            function->GetInfo().GetChangedEvent().AddCommand(m_InfoChangedCommand);
            OnInfoChanged();
        }
        m_Function.TakeOverCapture();
    }
    // The default of the description when the function or an argument is missing.
    template <class... TArguments>
    double Evaluate(const TArguments&... arguments) const {
        if (!m_Function.Get() || (... || !arguments.Get()))
            return m_Info.GetDefault();
        return m_Function.Get()->GetValue().Evaluate(arguments.Get()->GetValue()...);
    }

private:
    void OnInputCaptured(bool captured) {
        m_CapturedInputs += captured ? 1 : -1;
        if (m_CapturedInputs > 0)
            BeginCapture();
        else
            EndCapture();
    }
    void OnInfoChanged() { m_Info.Copy(GetHeightInfo(m_Function.Get()->GetInfo())); }
    void ForgetInfo() {
        if (m_Function.Get())
            m_Function.Get()->GetInfo().GetChangedEvent().RemoveCommand(m_InfoChangedCommand);
    }

    TInput<TFunction> m_Function{*this};
    CParamInfo m_Info;
    int m_CapturedInputs = 0;
    Core::TCommand<TFunctionValueParam> m_InfoChangedCommand{*this,
                                                             &TFunctionValueParam::OnInfoChanged};
};

} // namespace Lathe::DataModel::Objects
