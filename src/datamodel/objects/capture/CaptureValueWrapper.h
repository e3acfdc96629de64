// A getter, or a getter and a setter, of any object as a capture object: a parameter over numbers,
// truth and enumerations, or a string.
#pragma once

#include "datamodel/objects/ParamInfo.h"
#include "datamodel/objects/StringInfo.h"
#include "datamodel/objects/capture/CaptureWrapper.h"

namespace Lathe::DataModel {

template <class TObject, class TGet>
struct TMemberReader {
    TGet (TObject::*m_Getter)() const;

    TGet Read(const TObject& object) const { return (object.*m_Getter)(); }
};

template <class TObject, class TSet>
struct TMemberWriter {
    // Null swallows writes.
    void (TObject::*m_Setter)(TSet);

    template <class TValue>
    void Write(TObject& object, TValue value) const {
        if (m_Setter)
            (object.*m_Setter)(FromParamValue<TSet>(value));
    }
};

// TEventProvider is System::CMTEventProvider for objects that change on another thread.
template <class TObject, class TConstInfo, class TInfo, class TGet,
          class TEventProvider = Core::CEventProvider>
class TConstCaptureValueWrapper
    : public TConstCaptureWrapper<TObject, TConstInfo, TInfo, TMemberReader<TObject, TGet>,
                                  TEventProvider> {
public:
    using Getter = TGet (TObject::*)() const;

    // All but the getter can be null.
    TConstCaptureValueWrapper(TObject* object, Getter getter,
                              Core::IEventProvider* valueChanged = nullptr,
                              Core::IEventProvider* beginCapture = nullptr,
                              Core::IEventProvider* endCapture = nullptr)
        : TConstCaptureValueWrapper::TConstCaptureWrapper(object, {getter}, valueChanged,
                                                          beginCapture, endCapture) {}
};

template <class TObject, class TConstInfo, class TInfo, class TGet, class TSet,
          class TEventProvider = Core::CEventProvider>
class TCaptureValueWrapper
    : public TCaptureWrapper<TObject, TConstInfo, TInfo, TMemberReader<TObject, TGet>,
                             TMemberWriter<TObject, TSet>, TEventProvider> {
public:
    using Getter = TGet (TObject::*)() const;
    using Setter = void (TObject::*)(TSet);
    using Member = void (TObject::*)();

    // All but the getter can be null.
    TCaptureValueWrapper(TObject* object, Getter getter, Setter setter,
                         Member beginCapture = nullptr, Member endCapture = nullptr,
                         Core::IEventProvider* valueChanged = nullptr,
                         Core::IEventProvider* beginCaptureSource = nullptr,
                         Core::IEventProvider* endCaptureSource = nullptr)
        : TCaptureValueWrapper::TCaptureWrapper(object, {getter}, {setter}, beginCapture,
                                                endCapture, valueChanged, beginCaptureSource,
                                                endCaptureSource) {}
};

} // namespace Lathe::DataModel
