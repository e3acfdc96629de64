#include "plugin/midi/MIDICCSettings.h"

#include "datamodel/objects/ParamInfo.h"

#include <algorithm>

namespace Lathe::Audio::Plugin {

namespace {

constexpr int ChannelCount = 16;
constexpr int ControllerCount = 128;

int GetCommonCount(const Containers::IConstCount& a, const Containers::IConstCount& b) {
    return std::min(a.GetCount(), b.GetCount());
}

// The setting takes the controller that lies that many behind the controller 0 of the channel 1.
void SetController(int position, IMIDICCSetting& setting) {
    setting.SetChannel(position / ControllerCount % ChannelCount + 1);
    setting.SetNumber(position % ControllerCount);
}

void SetRange(const DataModel::Objects::IConstParamInfo& info, IMIDICCSetting& setting) {
    setting.SetMin(info.GetMin());
    setting.SetMax(info.GetMax());
}

} // namespace

void CopyMIDICCSettings(const IConstMIDICCSettings& source, IMIDICCSettings& destination) {
    const int count = GetCommonCount(source, destination);
    for (int i = 0; i < count; ++i)
        destination.GetElement(i).Copy(source.GetElement(i));
}

void FillInputMIDICCSettings(const DSP::IConstParamInfos& infos, IMIDICCSettings& settings) {
    const int count = GetCommonCount(infos, settings);
    for (int i = 0; i < count; ++i) {
        CInputMIDICCSetting setting;
        SetController(i, setting);
        if (count <= ControllerCount)
            setting.SetChannel(0);
        SetRange(infos.GetElement(i), setting);
        settings.GetElement(i).Copy(setting);
    }
}

void FillOutputMIDICCSettings(const DSP::IConstParamInfos& infos, IMIDICCSettings& settings) {
    const int count = GetCommonCount(infos, settings);
    for (int i = 0; i < count; ++i) {
        CMIDICCSetting setting;
        SetController(i + 1, setting);
        SetRange(infos.GetElement(i), setting);
        settings.GetElement(i).Copy(setting);
    }
}

} // namespace Lathe::Audio::Plugin
