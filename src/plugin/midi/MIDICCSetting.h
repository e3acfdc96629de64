// The stock MIDI setting of a parameter, as settings files and presets keep it.
#pragma once

#include "core/events/ValueStorage.h"
#include "core/threads/MTEventProvider.h"
#include "plugin/interfaces/MIDICCSetting.h"
#include "serialization/Serializable.h"

namespace Lathe::Audio::Plugin {

// Any thread may call anything: each field is whole, though not all of them together. Numbers are
// kept as they were set or read, so whoever uses them expects any. A copy has no subscribers, and
// an assignment raises the changed event once if anything differs.
class CMIDICCSetting : public IMIDICCSetting, public virtual Serialization::ISerializable {
public:
    // Whether automation is on, at first and after reading documents that don't tell.
    explicit CMIDICCSetting(bool automation = false);
    CMIDICCSetting(const CMIDICCSetting&) = default;
    CMIDICCSetting& operator=(const CMIDICCSetting& other);

    void SetMIDIEnabled(bool enabled) override;
    bool IsMIDIEnabled() const LATHE_REALTIME override { return m_Fields.m_MIDIEnabled.Get(); }
    EMIDIControlType GetType() const LATHE_REALTIME override { return m_Fields.m_Type.Get(); }
    void SetType(EMIDIControlType type) override;
    int GetChannel() const LATHE_REALTIME override { return m_Fields.m_Channel.Get(); }
    void SetChannel(int channel) override;
    int GetNumber() const LATHE_REALTIME override { return m_Fields.m_Number.Get(); }
    void SetNumber(int number) override;
    void SetAutomationEnabled(bool enabled) override;
    bool IsAutomationEnabled() const LATHE_REALTIME override {
        return m_Fields.m_AutomationEnabled.Get();
    }
    Math::EParamValueCurve GetCurve() const LATHE_REALTIME override {
        return m_Fields.m_Curve.Get();
    }
    void SetCurve(Math::EParamValueCurve curve) override;
    double GetMin() const LATHE_REALTIME override { return m_Fields.m_Min.Get(); }
    // A NaN is never taken; one that was read gives way to any number. So for the maximum.
    void SetMin(double min) override;
    double GetMax() const LATHE_REALTIME override { return m_Fields.m_Max.Get(); }
    void SetMax(double max) override;
    Core::IEventProvider& GetChangedEvent() const override { return m_Changed; }
    void Copy(const IMIDICCSetting& other) override;

    // Leaves out a curve that has no name; fails for a type that has none.
    bool Serialize(Serialization::IWriteDataStream& output) const override;
    // What is missing stays as it is, except that a full stream without a known curve gives
    // Linear. Raises the changed event once if anything differs.
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

private:
    struct SFields {
        bool Differs(const SFields& other) const;

        Core::TValueStorage<int> m_Channel;
        Core::TValueStorage<int> m_Number;
        Core::TValueStorage<bool> m_MIDIEnabled;
        Core::TValueStorage<bool> m_AutomationEnabled;
        Core::TValueStorage<bool> m_AutomationDefault;
        Core::TValueStorage<double> m_Min;
        Core::TValueStorage<double> m_Max;
        Core::TValueStorage<Math::EParamValueCurve> m_Curve{Math::EParamValueCurve::Linear};
        Core::TValueStorage<EMIDIControlType> m_Type;
    };

    template <class T>
    void Replace(Core::TValueStorage<T>& field, T value);
    void Assign(const SFields& fields);
    bool ReadSwitches(const Serialization::IReadDataStream& input, bool isOld);
    bool ReadCurve(const Serialization::IReadDataStream& input);
    bool ReadType(const Serialization::IReadDataStream& input);

    SFields m_Fields;
    mutable System::CMTEventProvider m_Changed;
};

// The kind that belongs to input parameters: their automation is on.
class CInputMIDICCSetting : public CMIDICCSetting {
public:
    CInputMIDICCSetting() : CMIDICCSetting(true) {}
};

} // namespace Lathe::Audio::Plugin
