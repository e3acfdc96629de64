// A curve over time that remembers the values of a parameter.
#pragma once

#include "datamodel/objects/CurveInfo.h"
#include "datamodel/overtime/CaptureOverTime.h"
#include "math/SweptValues.h"

namespace Lathe::DataModel::Objects {

struct SCurveFromParam {
    using CSource = IConstCaptureParam;
    using CFunction = Math::IFunction;
    using CHistory = Math::CSweptValues;
    using IConstInfo = IConstCurveInfo;
    using CInfo = CCurveInfo;

    static constexpr int DefaultRefreshTime = 50;
    static constexpr bool DurationFiresValueChanged = false;
    // The values are on the parameter's own axis, and its default is the history's.
    static void TakeInfo(const IConstParamInfo& source, CCurveInfo& info,
                         Math::CSweptValues& history);
};

extern template class TCaptureOverTime<SCurveFromParam>;

// A tick allocates nothing.
class CCurveFromParamOverTime : public TCaptureOverTime<SCurveFromParam> {
public:
    using TCaptureOverTime::TCaptureOverTime;
};

} // namespace Lathe::DataModel::Objects
