#include "plugin/midi/MIDICCSetting.h"

#include "datamodel/objects/text/ValueCurveNames.h"
#include "serialization/StreamValue.h"

#include <cmath>
#include <cstring>
#include <iterator>
#include <type_traits>

namespace Lathe::Audio::Plugin {

namespace {

using DataModel::Objects::GetValueCurveName;
using DataModel::Objects::ValueCurveCount;
using Serialization::ReadValue;
using Serialization::WriteValue;

constexpr int Version = 3;

// By the number of the type.
constexpr const char* TypeNames[] = {"CC", "NoteOnOff", "Note"};

bool WriteCurve(Serialization::IWriteDataStream& output, Math::EParamValueCurve curve) {
    const char* name = GetValueCurveName(curve);
    return !name || WriteValue(output, "curve", name);
}

bool WriteType(Serialization::IWriteDataStream& output, EMIDIControlType type) {
    const int number = static_cast<int>(type);
    return number >= 0 && number < static_cast<int>(std::size(TypeNames)) &&
           WriteValue(output, "type", TypeNames[number]);
}

template <class T>
bool ReadField(const Serialization::IReadDataStream& input, const char* name,
               Core::TValueStorage<T>& field) {
    T value = field.Get();
    if (!ReadValue(input, name, value))
        return false;
    field.Set(value);
    return true;
}

} // namespace

CMIDICCSetting::CMIDICCSetting(bool automation) {
    m_Fields.m_AutomationEnabled.Set(automation);
    m_Fields.m_AutomationDefault.Set(automation);
}

CMIDICCSetting& CMIDICCSetting::operator=(const CMIDICCSetting& other) {
    Assign(other.m_Fields);
    return *this;
}

void CMIDICCSetting::SetMIDIEnabled(bool enabled) {
    Replace(m_Fields.m_MIDIEnabled, enabled);
}

void CMIDICCSetting::SetType(EMIDIControlType type) {
    Replace(m_Fields.m_Type, type);
}

void CMIDICCSetting::SetChannel(int channel) {
    Replace(m_Fields.m_Channel, channel);
}

void CMIDICCSetting::SetNumber(int number) {
    Replace(m_Fields.m_Number, number);
}

void CMIDICCSetting::SetAutomationEnabled(bool enabled) {
    Replace(m_Fields.m_AutomationEnabled, enabled);
}

void CMIDICCSetting::SetCurve(Math::EParamValueCurve curve) {
    Replace(m_Fields.m_Curve, curve);
}

void CMIDICCSetting::SetMin(double min) {
    Replace(m_Fields.m_Min, min);
}

void CMIDICCSetting::SetMax(double max) {
    Replace(m_Fields.m_Max, max);
}

void CMIDICCSetting::Copy(const IMIDICCSetting& other) {
    SFields fields = m_Fields;
    fields.m_Channel.Set(other.GetChannel());
    fields.m_Number.Set(other.GetNumber());
    fields.m_MIDIEnabled.Set(other.IsMIDIEnabled());
    fields.m_AutomationEnabled.Set(other.IsAutomationEnabled());
    fields.m_Min.Set(other.GetMin());
    fields.m_Max.Set(other.GetMax());
    fields.m_Curve.Set(other.GetCurve());
    fields.m_Type.Set(other.GetType());
    Assign(fields);
}

bool CMIDICCSetting::Serialize(Serialization::IWriteDataStream& output) const {
    bool result = WriteValue(output, "channel", GetChannel());
    result &= WriteValue(output, "version", Version);
    result &= WriteValue(output, "number", GetNumber());
    result &= WriteValue(output, "midiEnabled", IsMIDIEnabled());
    result &= WriteValue(output, "automationEnabled", IsAutomationEnabled());
    result &= WriteCurve(output, GetCurve());
    result &= WriteValue(output, "min", GetMin());
    result &= WriteValue(output, "max", GetMax());
    result &= WriteType(output, GetType());
    return result;
}

bool CMIDICCSetting::DeSerialize(const Serialization::IReadDataStream& input) {
    const SFields before = m_Fields;
    // Changes alone are always written by the present version.
    const bool isFull = !input.IsIncremental();
    int version = 0;
    bool result = ReadValue(input, "version", version);
    result &= ReadField(input, "channel", m_Fields.m_Channel);
    result &= ReadField(input, "number", m_Fields.m_Number);
    result &= ReadSwitches(input, isFull && version <= 2);
    result &= ReadCurve(input);
    result &= ReadField(input, "min", m_Fields.m_Min);
    result &= ReadField(input, "max", m_Fields.m_Max);
    if (!isFull || version >= 2)
        result &= ReadType(input);
    if (m_Fields.Differs(before))
        m_Changed.Notify();
    return result || !isFull;
}

bool CMIDICCSetting::SFields::Differs(const SFields& other) const {
    return !(m_Channel.IsEqual(other.m_Channel.Get()) && m_Number.IsEqual(other.m_Number.Get()) &&
             m_MIDIEnabled.IsEqual(other.m_MIDIEnabled.Get()) &&
             m_AutomationEnabled.IsEqual(other.m_AutomationEnabled.Get()) &&
             m_AutomationDefault.IsEqual(other.m_AutomationDefault.Get()) &&
             m_Min.IsEqual(other.m_Min.Get()) && m_Max.IsEqual(other.m_Max.Get()) &&
             m_Curve.IsEqual(other.m_Curve.Get()) && m_Type.IsEqual(other.m_Type.Get()));
}

template <class T>
void CMIDICCSetting::Replace(Core::TValueStorage<T>& field, T value) {
    bool endsNaN = false;
    if constexpr (std::is_floating_point_v<T>)
        endsNaN = std::isnan(field.Get()) && !std::isnan(value);
    if (!endsNaN && field.IsEqual(value))
        return;
    field.Set(value);
    m_Changed.Notify();
}

void CMIDICCSetting::Assign(const SFields& fields) {
    const bool differs = m_Fields.Differs(fields);
    m_Fields = fields;
    if (differs)
        m_Changed.Notify();
}

// One switch turned both MIDI on and off and, by itself, said nothing of automation.
bool CMIDICCSetting::ReadSwitches(const Serialization::IReadDataStream& input, bool isOld) {
    if (isOld) {
        m_Fields.m_AutomationEnabled.Set(m_Fields.m_AutomationDefault.Get());
        return ReadField(input, "enabled", m_Fields.m_MIDIEnabled);
    }
    const bool result = ReadField(input, "midiEnabled", m_Fields.m_MIDIEnabled);
    return ReadField(input, "automationEnabled", m_Fields.m_AutomationEnabled) && result;
}

bool CMIDICCSetting::ReadCurve(const Serialization::IReadDataStream& input) {
    Core::CCharString name;
    const bool result = ReadValue(input, "curve", name);
    if (!result && input.IsIncremental())
        return false;
    int found = static_cast<int>(Math::EParamValueCurve::Linear);
    for (int i = 0; i < ValueCurveCount; ++i) {
        if (std::strcmp(name.GetText(), GetValueCurveName(Math::EParamValueCurve(i))) == 0)
            found = i;
    }
    m_Fields.m_Curve.Set(Math::EParamValueCurve(found));
    return result;
}

bool CMIDICCSetting::ReadType(const Serialization::IReadDataStream& input) {
    Core::CCharString name;
    const bool result = ReadValue(input, "type", name);
    for (int i = 0; i < static_cast<int>(std::size(TypeNames)); ++i) {
        if (result && std::strcmp(name.GetText(), TypeNames[i]) == 0)
            m_Fields.m_Type.Set(EMIDIControlType(i));
    }
    return result;
}

} // namespace Lathe::Audio::Plugin
