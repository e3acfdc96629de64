// The description of a double: its domain, its names, how it is shown and how it is moved.
#pragma once

#include "core/Realtime.h"
#include "core/ownership/Ownership.h"
#include "datamodel/objects/NullableText.h"
#include "datamodel/objects/ObjectInfo.h"
#include "datamodel/objects/ParamType.h"
#include "datamodel/objects/text/LinearPositionMapper.h"
#include "datamodel/objects/text/ParamText.h"

namespace Lathe::DataModel::Objects {

class IConstParamInfo : public virtual IConstObjectInfo {
public:
    virtual EParamType GetType() const = 0;
    // Such as "dB", "Hz" or "Octave". This and the other texts can be null.
    virtual const char* GetUnit() const = 0;
    virtual const IParamValueToText& GetValueToText() const = 0;
    virtual const IParamPositionMapper& GetPositionMapper() const LATHE_REALTIME = 0;
    // The range is inclusive.
    virtual double GetMin() const LATHE_REALTIME = 0;
    virtual double GetDefault() const LATHE_REALTIME = 0;
    virtual double GetMax() const LATHE_REALTIME = 0;
};

// The type and the three numbers fire the changed event only when they differ, so that a NaN is
// never taken; all others fire it always.
class IParamInfo : public virtual IConstParamInfo, public virtual IObjectInfo {
public:
    virtual void SetType(EParamType type) = 0;
    void SetName(const char* name) override = 0;
    virtual void SetUnit(const char* unit) = 0;
    void SetDescription(const char* description) override = 0;
    virtual void SetMin(double min) = 0;
    virtual void SetDefault(double value) = 0;
    virtual void SetMax(double max) = 0;
    // Destroys the old object if it was owned and is not the new one. Null gives the default of
    // the type, as does a null mapper below.
    virtual void SetValueToText(IParamValueToText* valueToText, bool owned) = 0;
    using IObjectInfo::Copy;
    // Copies all fields, clones the text conversion and the mapper, and fires once.
    virtual void Copy(const IConstParamInfo& other) = 0;
    virtual void SetPositionMapper(IParamPositionMapper* mapper, bool owned) = 0;

    IParamInfo() = default;
    IParamInfo(const IParamInfo&) = default;
    IParamInfo& operator=(const IParamInfo& other) {
        Copy(other);
        return *this;
    }
    IParamInfo& operator=(const IConstParamInfo& other) {
        Copy(other);
        return *this;
    }
};

// Keeps a linear mapper in step with type and range, and uses it unless another is given. A clone
// that came in by Copy does not follow later changes of the range.
class CParamInfo : public IParamInfo {
public:
    // A Float with the range and the default 0, and null texts.
    CParamInfo() : CParamInfo(EParamType::Float, 0.0, 0.0, 0.0, nullptr, nullptr, nullptr) {}
    // Takes valueToText and mapper. Null gives the pattern "{value}" with the format of the type,
    // and the linear mapper.
    CParamInfo(EParamType type, double min, double max, double defaultValue, const char* name,
               const char* unit, const char* description, IParamValueToText* valueToText = nullptr,
               IParamPositionMapper* mapper = nullptr);
    CParamInfo(const CParamInfo& other) : CParamInfo() { Copy(other); }
    explicit CParamInfo(const IConstParamInfo& other) : CParamInfo() { Copy(other); }
    CParamInfo& operator=(const CParamInfo& other) {
        Copy(other);
        return *this;
    }
    using IParamInfo::operator=;

    const char* GetName() const override { return m_Name.Get(); }
    const char* GetDescription() const override { return m_Description.Get(); }
    Core::IEventProvider& GetChangedEvent() const override { return m_Changed; }
    EParamType GetType() const override { return m_Type; }
    const char* GetUnit() const override { return m_Unit.Get(); }
    const IParamValueToText& GetValueToText() const override { return *m_ValueToText; }
    const IParamPositionMapper& GetPositionMapper() const LATHE_REALTIME override {
        return *m_PositionMapper;
    }
    double GetMin() const LATHE_REALTIME override { return m_Min; }
    double GetDefault() const LATHE_REALTIME override { return m_Default; }
    double GetMax() const LATHE_REALTIME override { return m_Max; }

    void SetType(EParamType type) override;
    void SetName(const char* name) override;
    void SetUnit(const char* unit) override;
    void SetDescription(const char* description) override;
    void SetMin(double min) override;
    void SetDefault(double value) override;
    void SetMax(double max) override;
    void SetValueToText(IParamValueToText* valueToText, bool owned) override;
    void Copy(const IConstObjectInfo& other) override;
    void Copy(const IConstParamInfo& other) override;
    void SetPositionMapper(IParamPositionMapper* mapper, bool owned) override;

private:
    void TakeValueToText(IParamValueToText* valueToText, bool owned);
    void TakePositionMapper(IParamPositionMapper* mapper, bool owned);
    void SetText(CNullableText& field, const char* text);

    EParamType m_Type;
    CNullableText m_Name;
    CNullableText m_Unit;
    CNullableText m_Description;
    double m_Min;
    double m_Max;
    double m_Default;
    CLinearPositionMapper m_LinearMapper;
    Core::TOwnership<IParamValueToText> m_ValueToText;
    Core::TOwnership<IParamPositionMapper> m_PositionMapper;
    mutable Core::CEventProvider m_Changed;
};

} // namespace Lathe::DataModel::Objects
