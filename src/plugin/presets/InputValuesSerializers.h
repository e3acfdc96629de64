// The stored form of an instance's inputs: "count", then one value for each, named by its kind and
// its index. Without inputs of a kind, nothing.
//
// Readers go by what the instance has, never by the count that a stream claims, and set each input
// at most once: to what the stream holds, else to the default of the description, and not at all
// where an incremental stream holds nothing. They return false where a stream that isn't
// incremental lacks something or where a value can't be made of what it holds.
#pragma once

#include "core/events/Command.h"
#include "plugin/interfaces/PluginGUIConnections.h"
#include "serialization/Serializable.h"

namespace Lathe::Audio::Plugin {

// TInputs is one of the five vectors of inputs.
template <class TInputs>
class TInputValuesSerializer : public Serialization::ISerialize {
public:
    explicit TInputValuesSerializer(const TInputs& inputs) : m_Inputs(inputs) {}
    bool Serialize(Serialization::IWriteDataStream& output) const override;

private:
    const TInputs& m_Inputs;
};

using CInputParamsSerializer = TInputValuesSerializer<IInputParams>;
using CInputStringsSerializer = TInputValuesSerializer<IInputStrings>;
using CInputCurvesSerializer = TInputValuesSerializer<IInputCurves>;
using CInputSurfacesSerializer = TInputValuesSerializer<IInputSurfaces>;
using CInputCustomPropertiesSerializer = TInputValuesSerializer<IInputCustomProperties>;

// Sets within Capture and Release, and clamps to the range. What isn't finite is taken as missing,
// so that the audio thread never sees it.
class CInputParamsDeSerializer : public Serialization::IDeSerialize {
public:
    explicit CInputParamsDeSerializer(IInputParams& inputs) : m_Inputs(inputs) {}
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

private:
    IInputParams& m_Inputs;
};

class CInputStringsDeSerializer : public Serialization::IDeSerialize {
public:
    explicit CInputStringsDeSerializer(IInputStrings& inputs) : m_Inputs(inputs) {}
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

private:
    IInputStrings& m_Inputs;
};

// Values are of the interface I. A null in the stream gives the default; a value that can't be made
// or fails to read itself does so too, but changes nothing if the stream is incremental.
template <class I, class TInfo>
class TInputObjectsDeSerializer : public Serialization::IDeSerialize {
public:
    using Inputs = TIInputObjects<const I&, TInfo>;
    using PostCreateCommand = Core::TIArgCommand<I&>;

    // The command, not owned, gets each new value before that value reads itself, and each default.
    explicit TInputObjectsDeSerializer(Inputs& inputs, PostCreateCommand* postCreate = nullptr)
        : m_Inputs(inputs), m_PostCreate(postCreate) {}
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

private:
    Inputs& m_Inputs;
    PostCreateCommand* m_PostCreate;
};

using CInputCurvesDeSerializer =
    TInputObjectsDeSerializer<Math::IFunction, DataModel::Objects::IConstCurveInfo>;
using CInputSurfacesDeSerializer =
    TInputObjectsDeSerializer<Math::IBinaryFunction, DataModel::Objects::IConstSurfaceInfo>;
using CInputCustomPropertiesDeSerializer =
    TInputObjectsDeSerializer<DataModel::Objects::IDynamicPropertyValue,
                              DataModel::Objects::IConstCustomPropertyInfo>;

// Reads the object from an empty stream: each of its values gets its default.
void SetToDefaults(Serialization::IDeSerialize& object);
// Reads the object of that name. Where the stream has none, an incremental one changes nothing, and
// any other sets the object to its defaults and returns false.
bool ReadObjectOrDefaults(const Serialization::IReadDataStream& input, const char* name,
                          Serialization::IDeSerialize& object);

} // namespace Lathe::Audio::Plugin
