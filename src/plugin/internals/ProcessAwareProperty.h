// Custom properties that want to know how audio is processed: they offer an interface, and are
// told.
#pragma once

namespace Lathe::DataModel::Objects {
class IDynamicPropertyValue;
}

namespace Lathe::Audio::Plugin {

struct SProcessData {
    // In samples; 0 when unknown.
    int m_MaxBlockSize = 0;
    // In hertz.
    double m_SampleRate = 0.0;
    int m_Inputs = 0;
    int m_Outputs = 0;

    bool operator==(const SProcessData&) const = default;
};

// Both are reached through the value's QueryInterface.
class ISampleRateProperty {
public:
    static const char* InterfaceId() { return "{574C8AD2-6323-4f69-8F26-2E156B5F914C}"; }

    // In hertz.
    virtual double GetSampleRate() const = 0;
    virtual void SetSampleRate(double rate) = 0;
    virtual ~ISampleRateProperty() = default;
};

class IProcessDataProperty {
public:
    static const char* InterfaceId() { return "{8A9E5CCD-CA2F-4624-9AB6-BFC70768FEBE}"; }

    virtual SProcessData GetProcessData() const = 0;
    virtual void SetProcessData(const SProcessData& data) = 0;
    virtual ~IProcessDataProperty() = default;
};

// Tells a value that nobody else sees yet; a rate that it has already is not set again. False when
// it offers neither interface.
bool WriteProcessData(DataModel::Objects::IDynamicPropertyValue& value, const SProcessData& data);

} // namespace Lathe::Audio::Plugin
