// What the host adaptor builds an instance from.
#pragma once

#include "plugin/interfaces/PluginGUIConnections.h"

namespace Lathe::System {
class ITimerProvider;
}

namespace Lathe::Audio::Plugin {

class IPluginGUI;
class IStaticSettings;

struct CAudioPluginConfig {
    // The instance takes these three. The editor and the model may be null.
    DSP::IFilter* filter = nullptr;
    IPluginGUI* gui = nullptr;
    IAudioPluginModel* model = nullptr;
    // In hertz: the factory default of the rate at which outputs are computed.
    double outputRefreshRate = 50.0;
    // Both are copied, and may be null.
    const DSP::IConstFilterProductInfo* productInfo = nullptr;
    const IConstPackageInfo* packageInfo = nullptr;
    SGUIFeatures guiFeatures{};
    // Both outlive the instance. Null takes the settings of the process, and a timer thread of the
    // instance's own.
    IStaticSettings* staticSettings = nullptr;
    System::ITimerProvider* timerProvider = nullptr;
};

} // namespace Lathe::Audio::Plugin
