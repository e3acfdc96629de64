// The collections of descriptions in which a filter declares its inputs and outputs.
#pragma once

#include "core/containers/Collection.h"
#include "datamodel/objects/CurveInfo.h"
#include "datamodel/objects/CustomPropertyInfo.h"
#include "datamodel/objects/ParamInfo.h"
#include "datamodel/objects/StringInfo.h"
#include "datamodel/objects/SurfaceInfo.h"

namespace Lathe::Audio::DSP {

using DataModel::Objects::CCurveInfo;
using DataModel::Objects::CCustomPropertyInfo;
using DataModel::Objects::CParamInfo;
using DataModel::Objects::CStringInfo;
using DataModel::Objects::CSurfaceInfo;
using DataModel::Objects::IConstCurveInfo;
using DataModel::Objects::IConstCustomPropertyInfo;
using DataModel::Objects::IConstParamInfo;
using DataModel::Objects::IConstStringInfo;
using DataModel::Objects::IConstSurfaceInfo;

using CParamInfos = CoreUtilities::TDynamicCollection<CParamInfo, IConstParamInfo>;
using CStringInfos = CoreUtilities::TDynamicCollection<CStringInfo, IConstStringInfo>;
using CCurveInfos = CoreUtilities::TDynamicCollection<CCurveInfo, IConstCurveInfo>;
using CSurfaceInfos = CoreUtilities::TDynamicCollection<CSurfaceInfo, IConstSurfaceInfo>;
using CCustomPropertyInfos =
    CoreUtilities::TDynamicCollection<CCustomPropertyInfo, IConstCustomPropertyInfo>;

} // namespace Lathe::Audio::DSP
