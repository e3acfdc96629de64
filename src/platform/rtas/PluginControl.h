// A plug-in's parameter as the library and the host see it.
#pragma once

#include "core/Realtime.h"
#include "core/text/CharString.h"

#include <atomic>
#include <cstdint>

// Values span all of int32_t, whatever the width of long. Texts are copied into the caller's room
// of `length` characters and a zero, cut where they are longer.
class CPluginControl {
public:
    virtual long GetControlNumber() const = 0;
    virtual long GetValue() const LATHE_REALTIME = 0;
    virtual void SetValue(long value) LATHE_REALTIME = 0;
    virtual long GetNumberOfSteps() const = 0;
    virtual long ConvertStringToValue(const char* text) const = 0;
    virtual bool IsAutomatable() const = 0;
    virtual void GetNameOfLength(char* text, long length) const = 0;
    // Two queries that nothing here asks.
    virtual long GetControlType() const { return 0; }
    virtual long GetOrientation() const { return 0; }
    virtual bool IsContinuous() const = 0;
    virtual void GetValueString(char* text, long length, long value) const = 0;
    virtual long GetHighlightKind() const { return 1; }
    virtual ~CPluginControl() = default;

    // What the value is before anybody sets it.
    long GetDefaultValue() const { return m_DefaultValue; }

protected:
    void SetDefaultValue(long value) { m_DefaultValue = static_cast<std::int32_t>(value); }

private:
    std::int32_t m_DefaultValue = 0;
};

// The library's own kinds, for controls that need nothing of the plug-in. The name has several
// forms, one a line and the longest first, of which the first that fits is given.
class CPluginControl_Stock : public CPluginControl {
public:
    CPluginControl_Stock(std::uint32_t code, const char* names, long defaultValue);

    long GetControlNumber() const override { return m_Number; }
    void SetControlNumber(long number) { m_Number = number; }
    std::uint32_t GetCode() const { return m_Code; }
    long GetValue() const LATHE_REALTIME override {
        return m_Value.load(std::memory_order_relaxed);
    }
    void SetValue(long value) LATHE_REALTIME override;
    bool IsAutomatable() const override { return true; }
    void GetNameOfLength(char* text, long length) const override;

private:
    std::uint32_t m_Code;
    Lathe::Core::CCharString m_Names;
    long m_Number = 0;
    std::atomic<std::int32_t> m_Value;
};

// "Off" at the bottom of the range and "On" above its middle.
class CPluginControl_OnOff : public CPluginControl_Stock {
public:
    CPluginControl_OnOff(std::uint32_t code, const char* names, bool isOnByDefault);

    long GetNumberOfSteps() const override { return 2; }
    bool IsContinuous() const override { return false; }
    long ConvertStringToValue(const char* text) const override;
    void GetValueString(char* text, long length, long value) const override;
};
