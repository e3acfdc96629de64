// What the descriptions of curves and of surfaces have in common: names, axes and a default.
#pragma once

#include "core/events/Command.h"
#include "datamodel/objects/NullableText.h"
#include "datamodel/objects/ParamInfo.h"

#include <memory>
#include <utility>

namespace Lathe::DataModel::Objects {

// TInterface is the const interface, with GetDefaultValue. TAxes holds the axes as CParamInfo
// members, m_YInfo among them; its Copy takes the axes of another description, its ForEach calls an
// operation for each. TFunctionInterface and TConstantFunction are the values and the built
// default.
template <class TInterface, class TAxes, class TFunctionInterface, class TConstantFunction>
class TFunctionInfo : public virtual TInterface {
public:
    const char* GetName() const override { return m_Name.Get(); }
    const char* GetDescription() const override { return m_Description.Get(); }
    Core::IEventProvider& GetChangedEvent() const override { return m_Changed; }

    // The given default, or else a constant of the Y axis' default, which follows the axis. Valid
    // until the info changes.
    const TFunctionInterface& GetDefaultValue() const override {
        if (m_DefaultValue)
            return *m_DefaultValue;
        if (!m_LazyDefault)
            m_LazyDefault = std::make_unique<TConstantFunction>(m_Axes.m_YInfo.GetDefault());
        return *m_LazyDefault;
    }

    // Null clears. Both fire the changed event always.
    void SetName(const char* name) {
        m_Name.Set(name);
        m_Changed.Notify();
    }
    void SetDescription(const char* description) {
        m_Description.Set(description);
        m_Changed.Notify();
    }

    TFunctionInfo(const TFunctionInfo&) = delete;
    TFunctionInfo& operator=(const TFunctionInfo&) = delete;

protected:
    // Takes the default, which can be null.
    TFunctionInfo(const char* name, const char* description, TFunctionInterface* defaultValue)
        : m_Name(name),
          m_Description(description),
          m_AxisChangedCommand(*this, &TFunctionInfo::OnAxisChanged),
          m_DefaultValue(defaultValue) {
        Subscribe();
    }
    ~TFunctionInfo() override { Unsubscribe(); }

    // The default becomes a clone of the other's, given or built, and stays as it is from then on.
    void Assign(const TInterface& other) {
        std::unique_ptr<TFunctionInterface> defaultValue(other.GetDefaultValue().Clone());
        Unsubscribe();
        m_Axes.Copy(other);
        m_Description.Set(other.GetDescription());
        m_Name.Set(other.GetName());
        m_LazyDefault.reset();
        m_DefaultValue = std::move(defaultValue);
        Subscribe();
        m_Changed.Notify();
    }

    TAxes m_Axes;

private:
    void Subscribe() {
        m_Axes.ForEach(
            [this](CParamInfo& axis) { axis.GetChangedEvent().AddCommand(m_AxisChangedCommand); });
    }
    void Unsubscribe() {
        m_Axes.ForEach([this](CParamInfo& axis) {
            axis.GetChangedEvent().RemoveCommand(m_AxisChangedCommand);
        });
    }
    void OnAxisChanged() {
        m_LazyDefault.reset();
        m_Changed.Notify();
    }

    CNullableText m_Name;
    CNullableText m_Description;
    mutable Core::CEventProvider m_Changed;
    Core::TCommand<TFunctionInfo> m_AxisChangedCommand;
    std::unique_ptr<TFunctionInterface> m_DefaultValue;
    mutable std::unique_ptr<TFunctionInterface> m_LazyDefault;
};

} // namespace Lathe::DataModel::Objects
