// What input and output objects do alike with values of every kind: where a description has its
// default, and how a value is copied for a caller.
#pragma once

#include "core/text/CharString.h"
#include "dsp/FilterInfos.h"
#include "dsp/values/RefCountValues.h"

namespace Lathe::Audio::Plugin {

template <class TInfo>
decltype(auto) GetDefaultOf(const TInfo& info) {
    return info.GetDefaultValue();
}
// The empty value where the description has none.
inline const DataModel::Objects::IDynamicPropertyValue&
GetDefaultOf(const DataModel::Objects::CCustomPropertyInfo& info) {
    const auto* value = info.GetDefaultValue();
    return value ? *value : DSP::GetUnsetValue<const DataModel::Objects::IDynamicPropertyValue&>();
}

// The caller's, who frees a text with delete[], and an object with delete.
inline char* CopyValue(const char* value) {
    return Core::NewText(value);
}
template <class I>
I* CopyValue(const I& value) {
    return value.Clone();
}

} // namespace Lathe::Audio::Plugin
