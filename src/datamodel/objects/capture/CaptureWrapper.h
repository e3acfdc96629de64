// What all wrappers have in common: they show a part of another object as a capture object, by a
// reader and a writer that know where in the object the part is.
#pragma once

#include "core/Differs.h"
#include "core/SaturatingCast.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/objects/capture/CaptureState.h"

#include <type_traits>

namespace Lathe::DataModel {

// The value that a description describes.
template <class TConstInfo>
struct TInfoValue {
    using Type = double;
};
template <>
struct TInfoValue<Objects::IConstStringInfo> {
    using Type = const char*;
};

// From what a getter gave: truth is 0 or 1, all other numbers and enumerations go by value.
template <class TGet>
double ToParamValue(TGet value) {
    if constexpr (std::is_enum_v<TGet>)
        return static_cast<double>(static_cast<std::underlying_type_t<TGet>>(value));
    else
        return static_cast<double>(value);
}
inline const char* ToParamValue(const char* value) {
    return value ? value : "";
}

// To what a setter takes: all but 0 and NaN is true, whole numbers and enumerations truncate
// towards zero.
template <class TSet>
TSet FromParamValue(double value) {
    if constexpr (std::is_same_v<TSet, bool>)
        return Core::Differs(value, 0.0);
    else if constexpr (std::is_floating_point_v<TSet>)
        return static_cast<TSet>(value);
    else
        return static_cast<TSet>(Core::TruncateToInt(value));
}
template <class TSet>
TSet FromParamValue(const char* value) {
    return value;
}

// TReader has Read(const TObject&). The events come from the source's providers as far as there
// are any. The object, if not null, and the providers outlive the wrapper or its connection.
template <class TObject, class TConstInfo, class TInfo, class TReader, class TEventProvider>
class TConstCaptureWrapper
    : public TCaptureState<
          TIConstCaptureObjectWrapper<typename TInfoValue<TConstInfo>::Type, TConstInfo>,
          TEventProvider> {
public:
    using Value = typename TInfoValue<TConstInfo>::Type;

    ~TConstCaptureWrapper() override { Unsubscribe(); }

    const TInfo& GetInfo() const override { return m_Info; }
    // Empty until the wrapper's creator fills it.
    TInfo& GetInfo() { return m_Info; }
    // The default of the description once disconnected.
    Value GetValue() const override {
        if (m_Object)
            return ToParamValue(m_Reader.Read(*m_Object));
        if constexpr (std::is_same_v<Value, const char*>)
            return m_Info.GetDefaultValue();
        else
            return m_Info.GetDefault();
    }
    void Disconnect() override {
        Unsubscribe();
        m_Object = nullptr;
        m_ValueChangedSource = m_BeginCaptureSource = m_EndCaptureSource = nullptr;
        this->ForgetCapture();
    }

protected:
    // Each of the providers can be null.
    TConstCaptureWrapper(TObject* object, TReader reader, Core::IEventProvider* valueChanged,
                         Core::IEventProvider* beginCapture, Core::IEventProvider* endCapture)
        : m_Object(object),
          m_Reader(reader),
          m_ValueChangedSource(valueChanged),
          m_BeginCaptureSource(beginCapture),
          m_EndCaptureSource(endCapture),
          m_ValueChangedCommand(*this, &TConstCaptureWrapper::OnValueChanged),
          m_BeginCaptureCommand(*this, &TConstCaptureWrapper::OnBeginCapture),
          m_EndCaptureCommand(*this, &TConstCaptureWrapper::OnEndCapture) {
        ForEachSource([](Core::IEventProvider& source, Core::ICommand& command) {
            source.AddCommand(command);
        });
    }

    TObject* GetObject() const { return m_Object; }
    bool HasValueChangedSource() const { return m_ValueChangedSource != nullptr; }
    bool HasBeginCaptureSource() const { return m_BeginCaptureSource != nullptr; }
    bool HasEndCaptureSource() const { return m_EndCaptureSource != nullptr; }

private:
    template <class TOperation>
    void ForEachSource(TOperation operation) {
        if (m_ValueChangedSource)
            operation(*m_ValueChangedSource, m_ValueChangedCommand);
        if (m_BeginCaptureSource)
            operation(*m_BeginCaptureSource, m_BeginCaptureCommand);
        if (m_EndCaptureSource)
            operation(*m_EndCaptureSource, m_EndCaptureCommand);
    }
    void Unsubscribe() {
        ForEachSource([](Core::IEventProvider& source, Core::ICommand& command) {
            source.RemoveCommand(command);
        });
    }
    void OnValueChanged() { this->NotifyValueChanged(); }
    // A source that begins twice is reported twice.
    void OnBeginCapture() { this->ForceBeginCapture(); }
    void OnEndCapture() { this->ForceEndCapture(); }

    TInfo m_Info;
    TObject* m_Object;
    TReader m_Reader;
    Core::IEventProvider* m_ValueChangedSource;
    Core::IEventProvider* m_BeginCaptureSource;
    Core::IEventProvider* m_EndCaptureSource;
    Core::TCommand<TConstCaptureWrapper> m_ValueChangedCommand;
    Core::TCommand<TConstCaptureWrapper> m_BeginCaptureCommand;
    Core::TCommand<TConstCaptureWrapper> m_EndCaptureCommand;
};

// TWriter has Write(TObject&, Value). Where the source has no value-changed event, SetValue fires
// the wrapper's own; where it does not report captures, the wrapper keeps the flag by itself.
template <class TObject, class TConstInfo, class TInfo, class TReader, class TWriter,
          class TEventProvider>
class TCaptureWrapper
    : public TConstCaptureWrapper<TObject, TConstInfo, TInfo, TReader, TEventProvider>,
      public virtual TICaptureObjectWrapper<typename TInfoValue<TConstInfo>::Type, TConstInfo> {
    using Base = TConstCaptureWrapper<TObject, TConstInfo, TInfo, TReader, TEventProvider>;

public:
    using Member = void (TObject::*)();
    using typename Base::Value;

    const TInfo& GetInfo() const override { return Base::GetInfo(); }
    TInfo& GetInfo() { return Base::GetInfo(); }
    void SetValue(Value value) override {
        if (TObject* object = this->GetObject())
            m_Writer.Write(*object, value);
        if (!this->HasValueChangedSource())
            this->NotifyValueChanged();
    }
    void Capture() override {
        Call(m_BeginCaptureMember);
        if (!m_BeginCaptureMember || !this->HasBeginCaptureSource())
            this->BeginCapture();
    }
    void Release() override {
        Call(m_EndCaptureMember);
        if (!m_EndCaptureMember || !this->HasEndCaptureSource())
            this->EndCapture();
    }

protected:
    // Each of the members and of the providers can be null.
    TCaptureWrapper(TObject* object, TReader reader, TWriter writer, Member beginCapture,
                    Member endCapture, Core::IEventProvider* valueChanged,
                    Core::IEventProvider* beginCaptureSource,
                    Core::IEventProvider* endCaptureSource)
        : Base(object, reader, valueChanged, beginCaptureSource, endCaptureSource),
          m_Writer(writer),
          m_BeginCaptureMember(beginCapture),
          m_EndCaptureMember(endCapture) {}

private:
    void Call(Member member) {
        TObject* object = this->GetObject();
        if (object && member)
            (object->*member)();
    }

    TWriter m_Writer;
    Member m_BeginCaptureMember;
    Member m_EndCaptureMember;
};

} // namespace Lathe::DataModel
