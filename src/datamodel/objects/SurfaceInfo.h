// The description of a surface: what its two variables and its height are, and its default.
#pragma once

#include "datamodel/objects/FunctionInfo.h"
#include "math/Constant.h"
#include "math/Function.h"

namespace Lathe::DataModel::Objects {

class IConstSurfaceInfo : public virtual IConstObjectInfo {
public:
    virtual const IConstParamInfo& GetXInfo() const = 0;
    virtual const IConstParamInfo& GetYInfo() const = 0;
    virtual const IConstParamInfo& GetZInfo() const = 0;
    virtual const Math::IBinaryFunction& GetDefaultValue() const = 0;
};

struct SSurfaceAxes {
    CParamInfo m_XInfo;
    CParamInfo m_YInfo;
    CParamInfo m_ZInfo;

    void Copy(const IConstSurfaceInfo& other) {
        m_XInfo.Copy(other.GetXInfo());
        m_YInfo.Copy(other.GetYInfo());
        m_ZInfo.Copy(other.GetZInfo());
    }
    template <class TOperation>
    void ForEach(TOperation operation) {
        operation(m_XInfo);
        operation(m_YInfo);
        operation(m_ZInfo);
    }
};

// The built default is the Y axis' default, as for curves, not the Z axis'.
class CSurfaceInfo : public TFunctionInfo<IConstSurfaceInfo, SSurfaceAxes, Math::IBinaryFunction,
                                          Math::CConstantBinaryFunction> {
public:
    CSurfaceInfo() : CSurfaceInfo(nullptr, nullptr) {}
    // With empty axes. Takes the default; null means the constant of the Y axis' default.
    CSurfaceInfo(const char* name, const char* description,
                 Math::IBinaryFunction* defaultValue = nullptr)
        : TFunctionInfo(name, description, defaultValue) {}
    CSurfaceInfo(const IConstParamInfo& xInfo, const IConstParamInfo& yInfo,
                 const IConstParamInfo& zInfo, const char* name, const char* description,
                 Math::IBinaryFunction* defaultValue = nullptr)
        : CSurfaceInfo(name, description, defaultValue) {
        SetXInfo(xInfo);
        SetYInfo(yInfo);
        SetZInfo(zInfo);
    }
    CSurfaceInfo(const CSurfaceInfo& other) : CSurfaceInfo() { Assign(other); }
    CSurfaceInfo& operator=(const CSurfaceInfo& other) {
        Assign(other);
        return *this;
    }
    CSurfaceInfo& operator=(const IConstSurfaceInfo& other) {
        Assign(other);
        return *this;
    }

    const CParamInfo& GetXInfo() const override { return m_Axes.m_XInfo; }
    virtual CParamInfo& GetXInfo() { return m_Axes.m_XInfo; }
    const CParamInfo& GetYInfo() const override { return m_Axes.m_YInfo; }
    virtual CParamInfo& GetYInfo() { return m_Axes.m_YInfo; }
    const CParamInfo& GetZInfo() const override { return m_Axes.m_ZInfo; }
    virtual CParamInfo& GetZInfo() { return m_Axes.m_ZInfo; }

    void SetXInfo(const IConstParamInfo& info) { m_Axes.m_XInfo.Copy(info); }
    void SetYInfo(const IConstParamInfo& info) { m_Axes.m_YInfo.Copy(info); }
    void SetZInfo(const IConstParamInfo& info) { m_Axes.m_ZInfo.Copy(info); }
};

} // namespace Lathe::DataModel::Objects
