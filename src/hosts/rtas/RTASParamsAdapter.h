// The parameters of an instance as the host's controls, in the order of their numbers.
#pragma once

#include "core/containers/Collection.h"
#include "dsp/Filter.h"
#include "hosts/rtas/RTASParamAdapter.h"
#include "plugin/interfaces/MIDICCSetting.h"

namespace LatheExt::RTASPlugin {

// TParam is the interface by which the instance sees its parameters.
template <class TParam>
class TRTASParamsAdapter
    : public Lathe::CoreUtilities::TDynamicCollection<
          CRTASParamAdapter, TParam, Lathe::Containers::IVector<TParam>,
          // Adapters have subscribers, and so are never copied.
          Lathe::Core::TNCDynamicVector<CRTASParamAdapter, Lathe::Core::CStepGrowthStrategy>> {
public:
    // Once. There are as many settings as descriptions; the settings and the process outlive this.
    void Setup(CProcess* process, const Lathe::Audio::DSP::IConstParamInfos& infos,
               const Lathe::Audio::Plugin::IConstMIDICCSettings& settings, int firstControlNumber) {
        this->SetCount(infos.GetCount());
        for (int i = 0; i < infos.GetCount(); ++i)
            (*this)[i].Setup(process, infos.GetElement(i), settings.GetElement(i),
                             firstControlNumber + i);
    }
};

using CRTASParamsAdapter = TRTASParamsAdapter<Lathe::DataModel::Objects::ICaptureParam>;
using CConstRTASParamsAdapter = TRTASParamsAdapter<Lathe::DataModel::Objects::IConstCaptureParam>;

} // namespace LatheExt::RTASPlugin
