// What the stock curve, surface and custom property have in common: a value that is always there
// and that the object keeps as a clone.
#pragma once

#include "core/ownership/Ownership.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/objects/capture/CaptureState.h"

namespace Lathe::DataModel::Objects {

// I is the interface of the values, TInfo the description with its const interface TConstInfo.
template <class I, class TConstInfo, class TInfo>
class TConstCaptureClone : public TCaptureState<TIConstCaptureObject<const I&, TConstInfo>> {
public:
    const TInfo& GetInfo() const override { return m_Info; }
    TInfo& GetInfo() { return m_Info; }
    const I& GetValue() const override { return *m_Value; }

protected:
    // The value is not null.
    TConstCaptureClone(const I* value, bool owned) : m_Info("", ""), m_Value(value, owned) {}

    // Fires always: nothing compares two values.
    void ReplaceValue(const I& value) {
        m_Value.Set(value.Clone(), true);
        this->NotifyValueChanged();
    }

private:
    TInfo m_Info;
    Core::TOwnershipWithClone<const I> m_Value;
};

// The writable sister of the read-only class TConstObject.
template <class TConstObject, class I, class TConstInfo, class TInfo>
class TCaptureClone : public TConstObject, public virtual TICaptureObject<const I&, TConstInfo> {
public:
    using TConstObject::TConstObject;

    const TInfo& GetInfo() const override { return TConstObject::GetInfo(); }
    TInfo& GetInfo() { return TConstObject::GetInfo(); }
    // Stores a clone, and fires the value-changed event always.
    void SetValue(const I& value) override { this->ReplaceValue(value); }
    void Capture() override { this->BeginCapture(); }
    void Release() override { this->EndCapture(); }
};

} // namespace Lathe::DataModel::Objects
