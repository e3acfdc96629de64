// The five kinds of proxies, with sources for them and values made of numbers, so that one test
// serves all; and a queue in the hand of a test.
#pragma once

#include "core/Fixtures.h"
#include "core/ownership/Ownership.h"
#include "core/threads/ManualTime.h"
#include "datamodel/Journal.h"
#include "datamodel/objects/capture/CaptureCurve.h"
#include "datamodel/objects/capture/CaptureCustomProperty.h"
#include "datamodel/objects/capture/CaptureParam.h"
#include "datamodel/objects/capture/CaptureString.h"
#include "datamodel/objects/capture/CaptureSurface.h"
#include "datamodel/objects/capture/MTCaptureParam.h"
#include "datamodel/proxies/MakeMTProxy.h"
#include "datamodel/proxies/TimerProxies.h"
#include "math/Constant.h"

namespace Lathe::DataModel::Objects {

struct CNumberProperty : CEmptyDynamicPropertyValue {
    explicit CNumberProperty(int number) : m_Number(number) {}
    CNumberProperty* Clone() const override { return new CNumberProperty(m_Number); }

    int m_Number;
};

inline int GetNumber(double value) {
    return static_cast<int>(value);
}
inline int GetNumber(const char* value) {
    return std::atoi(value);
}
inline int GetNumber(const Math::IFunction& value) {
    return GetNumber(value.Evaluate(0.0));
}
inline int GetNumber(const Math::IBinaryFunction& value) {
    return GetNumber(value.Evaluate(0.0, 0.0));
}
inline int GetNumber(const IDynamicPropertyValue& value) {
    const auto* property = dynamic_cast<const CNumberProperty*>(&value);
    return property ? property->m_Number : 0;
}

template <class TObject>
void SetNumber(TObject& object, int number) {
    if constexpr (requires { object.SetValue(0.5); })
        object.SetValue(number);
    else if constexpr (requires { object.SetValue(""); })
        object.SetValue(std::to_string(number).c_str());
    else if constexpr (requires { object.SetValue(Math::CConstantFunction(0.0)); })
        object.SetValue(Math::CConstantFunction(number));
    else if constexpr (requires { object.SetValue(Math::CConstantBinaryFunction(0.0)); })
        object.SetValue(Math::CConstantBinaryFunction(number));
    else
        object.SetValue(CNumberProperty(number));
}

// Of a source too, which gives a copy.
template <class TObject>
int GetNumberOf(const TObject& object) {
    using Value = decltype(object.GetValue());
    if constexpr (std::is_same_v<Value, char*>)
        return GetNumber(std::unique_ptr<char[]>(object.GetValue()).get());
    else if constexpr (std::is_pointer_v<Value> && !std::is_same_v<Value, const char*>)
        return GetNumber(*std::unique_ptr<std::remove_pointer_t<Value>>(object.GetValue()));
    else
        return GetNumber(object.GetValue());
}

// Changes on any thread; always fires.
template <class T, class TInfo, class TInfoImpl>
class TTestFactory
    : public TCaptureState<TICaptureObjectFactory<T, TInfo>, System::CMTEventProvider> {
public:
    TTestFactory() { SetNumber(*this, 0); }
    const TInfoImpl& GetInfo() const override { return m_Info; }
    typename Core::TValueStorage<T>::Copy GetValue() const override {
        const Core::CAutoLock lock(m_Lock);
        return m_Value.MakeCopy();
    }
    void SetValue(T value) override {
        {
            const Core::CAutoLock lock(m_Lock);
            m_Value.Set(value);
        }
        this->NotifyValueChanged();
    }
    void Capture() override { this->BeginCapture(); }
    void Release() override { this->EndCapture(); }

private:
    TInfoImpl m_Info{"", ""};
    Core::TValueStorage<T> m_Value;
    mutable System::CCriticalSection m_Lock;
};

struct CWideParam : CCaptureParam {
    CWideParam() { GetInfo().SetMax(1e6); }
};
struct CWideMTParam : CMTCaptureParam {
    CWideMTParam() : CMTCaptureParam(CParamInfo(EParamType::Float, 0.0, 1e6, 0.0, "", "", "")) {}
};

// The sources and proxies of a kind, of both families.
template <class TMTSource, class TConstTimer, class TTimer, class TObject, class TConstMT,
          class TMT>
struct TKind {
    using MTSource = TMTSource;
    using ConstTimerProxy = TConstTimer;
    using TimerProxy = TTimer;
    using Object = TObject;
    using ConstMTProxy = TConstMT;
    using MTProxy = TMT;
};
using Kinds = testing::Types<
    TKind<CWideMTParam, CConstCaptureParamTimerProxy, CCaptureParamTimerProxy, CWideParam,
          CConstCaptureParamMTProxy, CCaptureParamMTProxy>,
    TKind<TTestFactory<const Math::IFunction&, IConstCurveInfo, CCurveInfo>,
          CConstCaptureCurveTimerProxy, CCaptureCurveTimerProxy, CCaptureCurve,
          CConstCaptureCurveMTProxy, CCaptureCurveMTProxy>,
    TKind<TTestFactory<const Math::IBinaryFunction&, IConstSurfaceInfo, CSurfaceInfo>,
          CConstCaptureSurfaceTimerProxy, CCaptureSurfaceTimerProxy, CCaptureSurface,
          CConstCaptureSurfaceMTProxy, CCaptureSurfaceMTProxy>,
    TKind<TTestFactory<const char*, IConstStringInfo, CStringInfo>, CConstCaptureStringTimerProxy,
          CCaptureStringTimerProxy, CCaptureString, CConstCaptureStringMTProxy,
          CCaptureStringMTProxy>,
    TKind<TTestFactory<const IDynamicPropertyValue&, IConstCustomPropertyInfo, CCustomPropertyInfo>,
          CConstCaptureCustomPropertyTimerProxy, CCaptureCustomPropertyTimerProxy,
          CCaptureCustomProperty, CConstCaptureCustomPropertyMTProxy,
          CCaptureCustomPropertyMTProxy>>;

// Posted commands wait for Run. Takes no lock, and allocates nothing for a post.
struct CManualInvoker : System::IThreadInvoker {
    CManualInvoker() { m_Queue.reserve(2000); }
    void Invoke(Core::ICommand* command, bool owned) override {
        Core::TOwnership<Core::ICommand>(command, owned)->Execute();
    }
    void Post(Core::ICommand* command, bool owned) override {
        m_Queue.emplace_back(command, owned);
    }
    void Run() {
        for (std::size_t i = 0; i < m_Queue.size(); ++i)
            m_Queue[i]->Execute();
        m_Queue.clear();
    }

    std::vector<Core::TOwnership<Core::ICommand>> m_Queue;
};

} // namespace Lathe::DataModel::Objects
