// The stock string objects, read-only and writable.
#pragma once

#include "core/text/CharString.h"
#include "datamodel/objects/StringInfo.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/objects/capture/CaptureState.h"

namespace Lathe::DataModel::Objects {

class CConstCaptureString : public TCaptureState<IConstCaptureString> {
public:
    explicit CConstCaptureString(const char* value = nullptr) : m_Value(value) {}

    const CStringInfo& GetInfo() const override { return m_Info; }
    CStringInfo& GetInfo() { return m_Info; }
    const char* GetValue() const override { return m_Value.GetText(); }

protected:
    CStringInfo m_Info;
    Core::CCharString m_Value;
};

class CCaptureString : public CConstCaptureString, public virtual ICaptureString {
public:
    using CConstCaptureString::CConstCaptureString;

    const CStringInfo& GetInfo() const override { return m_Info; }
    CStringInfo& GetInfo() { return m_Info; }
    // Stores a copy and fires, if the text differs; null counts as "".
    void SetValue(const char* value) override;
    void Capture() override { BeginCapture(); }
    void Release() override { EndCapture(); }

protected:
    // The store alone, without comparison or event.
    virtual void AssignValue(const char* value) { m_Value = value; }
};

} // namespace Lathe::DataModel::Objects
