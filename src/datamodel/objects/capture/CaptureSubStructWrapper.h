// One field of a small structure that an object hands out by value, as a capture object: a
// parameter for the width of a size.
#pragma once

#include "datamodel/objects/ParamInfo.h"
#include "datamodel/objects/capture/CaptureWrapper.h"

namespace Lathe::DataModel::Objects {

template <class TObject, class TStruct, class TGet>
struct TFieldReader {
    TStruct (TObject::*m_Getter)() const;
    TGet (TStruct::*m_FieldGetter)() const;

    TGet Read(const TObject& object) const { return ((object.*m_Getter)().*m_FieldGetter)(); }
};

template <class TObject, class TStruct, class TSet>
struct TFieldWriter {
    TStruct (TObject::*m_Getter)() const;
    void (TObject::*m_Setter)(const TStruct&);
    void (TStruct::*m_FieldSetter)(TSet);

    // The other fields go back as they came.
    template <class TValue>
    void Write(TObject& object, TValue value) const {
        if (!m_Setter || !m_FieldSetter)
            return;
        TStruct copy = (object.*m_Getter)();
        (copy.*m_FieldSetter)(FromParamValue<TSet>(value));
        (object.*m_Setter)(copy);
    }
};

template <class TObject, class TConstInfo, class TInfo, class TStruct, class TGet,
          class TEventProvider = Core::CEventProvider>
class TConstCaptureValueSubStructWrapper
    : public TConstCaptureWrapper<TObject, TConstInfo, TInfo, TFieldReader<TObject, TStruct, TGet>,
                                  TEventProvider> {
public:
    using Getter = TStruct (TObject::*)() const;
    using FieldGetter = TGet (TStruct::*)() const;

    // All but the two getters can be null.
    TConstCaptureValueSubStructWrapper(TObject* object, Getter getter, FieldGetter fieldGetter,
                                       Core::IEventProvider* valueChanged = nullptr,
                                       Core::IEventProvider* beginCapture = nullptr,
                                       Core::IEventProvider* endCapture = nullptr)
        : TConstCaptureValueSubStructWrapper::TConstCaptureWrapper(
              object, {getter, fieldGetter}, valueChanged, beginCapture, endCapture) {}
};

template <class TObject, class TConstInfo, class TInfo, class TStruct, class TGet, class TSet,
          class TEventProvider = Core::CEventProvider>
class TCaptureValueSubStructWrapper
    : public TCaptureWrapper<TObject, TConstInfo, TInfo, TFieldReader<TObject, TStruct, TGet>,
                             TFieldWriter<TObject, TStruct, TSet>, TEventProvider> {
public:
    using Getter = TStruct (TObject::*)() const;
    using Setter = void (TObject::*)(const TStruct&);
    using FieldGetter = TGet (TStruct::*)() const;
    using FieldSetter = void (TStruct::*)(TSet);
    using Member = void (TObject::*)();

    // All but the two getters can be null.
    TCaptureValueSubStructWrapper(TObject* object, Getter getter, Setter setter,
                                  FieldGetter fieldGetter, FieldSetter fieldSetter,
                                  Member beginCapture = nullptr, Member endCapture = nullptr,
                                  Core::IEventProvider* valueChanged = nullptr,
                                  Core::IEventProvider* beginCaptureSource = nullptr,
                                  Core::IEventProvider* endCaptureSource = nullptr)
        : TCaptureValueSubStructWrapper::TCaptureWrapper(
              object, {getter, fieldGetter}, {getter, setter, fieldSetter}, beginCapture,
              endCapture, valueChanged, beginCaptureSource, endCaptureSource) {}
};

} // namespace Lathe::DataModel::Objects
