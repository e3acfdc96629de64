// The description of a curve: what its abscissa and its ordinate are, and its default.
#pragma once

#include "datamodel/objects/FunctionInfo.h"
#include "math/Constant.h"
#include "math/Function.h"

namespace Lathe::DataModel::Objects {

class IConstCurveInfo : public virtual IConstObjectInfo {
public:
    virtual const IConstParamInfo& GetXInfo() const = 0;
    virtual const IConstParamInfo& GetYInfo() const = 0;
    virtual const Math::IFunction& GetDefaultValue() const = 0;
};

struct SCurveAxes {
    CParamInfo m_XInfo;
    CParamInfo m_YInfo;

    void Copy(const IConstCurveInfo& other) {
        m_XInfo.Copy(other.GetXInfo());
        m_YInfo.Copy(other.GetYInfo());
    }
    template <class TOperation>
    void ForEach(TOperation operation) {
        operation(m_XInfo);
        operation(m_YInfo);
    }
};

class CCurveInfo
    : public TFunctionInfo<IConstCurveInfo, SCurveAxes, Math::IFunction, Math::CConstantFunction> {
public:
    CCurveInfo() : CCurveInfo(nullptr, nullptr) {}
    // With empty axes. Takes the default; null means the constant of the Y axis' default.
    CCurveInfo(const char* name, const char* description, Math::IFunction* defaultValue = nullptr)
        : TFunctionInfo(name, description, defaultValue) {}
    CCurveInfo(const IConstParamInfo& xInfo, const IConstParamInfo& yInfo, const char* name,
               const char* description, Math::IFunction* defaultValue = nullptr)
        : CCurveInfo(name, description, defaultValue) {
        SetXInfo(xInfo);
        SetYInfo(yInfo);
    }
    CCurveInfo(const CCurveInfo& other) : CCurveInfo() { Assign(other); }
    CCurveInfo& operator=(const CCurveInfo& other) {
        Assign(other);
        return *this;
    }
    CCurveInfo& operator=(const IConstCurveInfo& other) {
        Assign(other);
        return *this;
    }

    const CParamInfo& GetXInfo() const override { return m_Axes.m_XInfo; }
    virtual CParamInfo& GetXInfo() { return m_Axes.m_XInfo; }
    const CParamInfo& GetYInfo() const override { return m_Axes.m_YInfo; }
    virtual CParamInfo& GetYInfo() { return m_Axes.m_YInfo; }

    void SetXInfo(const IConstParamInfo& info) { m_Axes.m_XInfo.Copy(info); }
    void SetYInfo(const IConstParamInfo& info) { m_Axes.m_YInfo.Copy(info); }
};

} // namespace Lathe::DataModel::Objects
