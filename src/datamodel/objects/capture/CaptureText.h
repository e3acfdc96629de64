// A text with a capture state and no description, for widgets and windows.
#pragma once

#include "core/text/CharString.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/objects/capture/CaptureState.h"

namespace Lathe::DataModel {

class CCaptureText : public TCaptureState<TICaptureValue<const char*>> {
public:
    explicit CCaptureText(const char* value = nullptr) : m_Value(value) {}

    const char* GetValue() const override { return m_Value.GetText(); }
    // Stores a copy and fires always; null gives "".
    void SetValue(const char* value) override {
        m_Value = value;
        NotifyValueChanged();
    }
    void Capture() override { BeginCapture(); }
    void Release() override { EndCapture(); }

private:
    Core::CCharString m_Value;
};

} // namespace Lathe::DataModel
