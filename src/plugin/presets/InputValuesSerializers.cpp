#include "plugin/presets/InputValuesSerializers.h"

#include "core/ownership/Ownership.h"
#include "datamodel/objects/CurveInfo.h"
#include "datamodel/objects/CustomPropertyInfo.h"
#include "datamodel/objects/ParamInfo.h"
#include "datamodel/objects/StringInfo.h"
#include "datamodel/objects/SurfaceInfo.h"
#include "math/Function.h"
#include "serialization/CollectionSerializers.h"
#include "serialization/MemDataObject.h"
#include "serialization/ObjectProbe.h"
#include "serialization/StreamValue.h"
#include "serialization/TypedObject.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

namespace Lathe::Audio::Plugin {

namespace {

using DataModel::TICaptureObjectFactory;
using DataModel::Objects::ICaptureParam;
using DataModel::Objects::IConstCurveInfo;
using DataModel::Objects::IConstCustomPropertyInfo;
using DataModel::Objects::IConstParamInfo;
using DataModel::Objects::IConstStringInfo;
using DataModel::Objects::IConstSurfaceInfo;
using DataModel::Objects::IDynamicPropertyValue;
using Serialization::IReadDataStream;
using Serialization::IWriteDataStream;
using Serialization::MakeElementName;

using IInputString = TICaptureObjectFactory<const char*, IConstStringInfo>;

constexpr const char* CountKey = "count";
constexpr const char* ParamKey = "p";
constexpr const char* StringKey = "s";
constexpr const char* ObjectKey = "obj";

bool WriteInput(IWriteDataStream& output, int index, const ICaptureParam& param) {
    return WriteValue(output, MakeElementName(ParamKey, index).c_str(), param.GetValue());
}

bool WriteInput(IWriteDataStream& output, int index, const IInputString& string) {
    const std::unique_ptr<char[]> text(string.GetValue());
    return output.WriteString(MakeElementName(StringKey, index).c_str(), text.get());
}

template <class I, class TInfo>
bool WriteInput(IWriteDataStream& output, int index,
                const TICaptureObjectFactory<const I&, TInfo>& object) {
    const std::unique_ptr<I> value(object.GetValue());
    return output.WriteObject(MakeElementName(ObjectKey, index).c_str(),
                              Serialization::CTypeSerializer(value.get()));
}

bool ReadFinite(const IReadDataStream& input, const std::string& name, double& value) {
    return ReadValue(input, name.c_str(), value) && std::isfinite(value);
}

// Of a range that is upside down, the maximum wins.
double Clamp(double value, const IConstParamInfo& info) {
    return std::min(std::max(value, info.GetMin()), info.GetMax());
}

void SetCaptured(ICaptureParam& param, double value) {
    param.Capture();
    param.SetValue(value);
    param.Release();
}

const Math::IFunction& GetDefault(const IConstCurveInfo& info) {
    return info.GetDefaultValue();
}

const Math::IBinaryFunction& GetDefault(const IConstSurfaceInfo& info) {
    return info.GetDefaultValue();
}

const IDynamicPropertyValue& GetDefault(const IConstCustomPropertyInfo& info) {
    static const DataModel::Objects::CEmptyDynamicPropertyValue empty;
    const IDynamicPropertyValue* value = info.GetDefaultValue();
    return value ? *value : empty;
}

// Reads one input's typed value.
template <class I, class TInfo>
class TInputObjectDeSerializer : public Serialization::IDeSerialize {
public:
    using Object = TICaptureObjectFactory<const I&, TInfo>;
    using PostCreateCommand = Core::TIArgCommand<I&>;

    TInputObjectDeSerializer(Object& object, PostCreateCommand* postCreate)
        : m_Object(object), m_PostCreate(postCreate) {}

    bool DeSerialize(const IReadDataStream& input) override {
        Serialization::CTypeDeSerializerTester tester;
        tester.DeSerialize(input);
        Core::TOwnership<I> value(tester.HoldsOnlyChanges() ? m_Object.GetValue() : nullptr);
        const bool read =
            Serialization::TRuntimeDeSerializer<I>(value, m_PostCreate).DeSerialize(input);
        if (read && value)
            m_Object.SetValue(*value);
        else if (read || !input.IsIncremental())
            SetDefault();
        return read;
    }
    void SetDefault() {
        const std::unique_ptr<I> value(GetDefault(m_Object.GetInfo()).Clone());
        if (m_PostCreate)
            m_PostCreate->Execute(*value);
        m_Object.SetValue(*value);
    }

private:
    Object& m_Object;
    PostCreateCommand* m_PostCreate;
};

} // namespace

template <class TInputs>
bool TInputValuesSerializer<TInputs>::Serialize(IWriteDataStream& output) const {
    const int count = m_Inputs.GetCount();
    bool result = count == 0 || output.WriteInt(CountKey, &count);
    for (int i = 0; i < count; ++i)
        result &= WriteInput(output, i, m_Inputs.GetElement(i));
    return result;
}

bool CInputParamsDeSerializer::DeSerialize(const IReadDataStream& input) {
    bool result = true;
    for (int i = 0; i < m_Inputs.GetCount(); ++i) {
        ICaptureParam& param = m_Inputs.GetElement(i);
        const IConstParamInfo& info = param.GetInfo();
        double value = 0.0;
        if (ReadFinite(input, MakeElementName(ParamKey, i), value)) {
            SetCaptured(param, Clamp(value, info));
        } else if (!input.IsIncremental()) {
            SetCaptured(param, info.GetDefault());
            result = false;
        }
    }
    return result;
}

bool CInputStringsDeSerializer::DeSerialize(const IReadDataStream& input) {
    bool result = true;
    for (int i = 0; i < m_Inputs.GetCount(); ++i) {
        IInputString& string = m_Inputs.GetElement(i);
        Core::CCharString text;
        if (ReadValue(input, MakeElementName(StringKey, i).c_str(), text)) {
            string.SetValue(text.GetText());
        } else if (!input.IsIncremental()) {
            string.SetValue(string.GetInfo().GetDefaultValue());
            result = false;
        }
    }
    return result;
}

template <class I, class TInfo>
bool TInputObjectsDeSerializer<I, TInfo>::DeSerialize(const IReadDataStream& input) {
    bool result = true;
    for (int i = 0; i < m_Inputs.GetCount(); ++i) {
        TInputObjectDeSerializer<I, TInfo> object(m_Inputs.GetElement(i), m_PostCreate);
        Serialization::CDeSerializeProbe probe(object);
        const bool read = input.ReadObject(MakeElementName(ObjectKey, i).c_str(), probe);
        if (probe.IsFound()) {
            result &= read;
        } else if (!input.IsIncremental()) {
            object.SetDefault();
            result = false;
        }
    }
    return result;
}

void SetToDefaults(Serialization::IDeSerialize& object) {
    object.DeSerialize(Serialization::CMemDataObject());
}

bool ReadObjectOrDefaults(const IReadDataStream& input, const char* name,
                          Serialization::IDeSerialize& object) {
    Serialization::CDeSerializeProbe probe(object);
    const bool read = input.ReadObject(name, probe);
    if (probe.IsFound())
        return read;
    if (!input.IsIncremental())
        SetToDefaults(object);
    return input.IsIncremental();
}

template class TInputValuesSerializer<IInputParams>;
template class TInputValuesSerializer<IInputStrings>;
template class TInputValuesSerializer<IInputCurves>;
template class TInputValuesSerializer<IInputSurfaces>;
template class TInputValuesSerializer<IInputCustomProperties>;
template class TInputObjectsDeSerializer<Math::IFunction, IConstCurveInfo>;
template class TInputObjectsDeSerializer<Math::IBinaryFunction, IConstSurfaceInfo>;
template class TInputObjectsDeSerializer<IDynamicPropertyValue, IConstCustomPropertyInfo>;

} // namespace Lathe::Audio::Plugin
