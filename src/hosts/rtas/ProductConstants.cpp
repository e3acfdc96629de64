#include "hosts/rtas/ProductConstants.h"

#include "dsp/FilterProductInfo.h"
#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "platform/rtas/FourCharCode.h"
#include "plugin/interfaces/PluginGUIConnections.h"
#include "plugin/settings/PackageInfo.h"

namespace LatheExt::RTASPlugin {

namespace {

// An equaliser.
constexpr int Category = 3;

} // namespace

std::unique_ptr<Lathe::Audio::DSP::IFilter> CreateFilter() {
    return std::make_unique<PluginsFilters::CDualCairnEQ>();
}

const Lathe::Audio::DSP::CFilterProductInfo& GetProductInfo() {
    static const Lathe::Audio::DSP::CFilterProductInfo s_Info(
        "Marrow Sound", "Marrow's Cairn EQ 4 (Dual)", "4.1", "", "", Category,
        "MW Cairn EQ 4 (Dual)");
    return s_Info;
}

const Lathe::Audio::Plugin::CPackageInfo& GetPackageInfo() {
    static const Lathe::Audio::Plugin::CPackageInfo s_Info("Marrow Sound", "Marrow's Cairn EQ 4",
                                                           "Dual");
    return s_Info;
}

std::uint32_t GetProductId() {
    return MakeFourCharCode("5455");
}

std::uint32_t GetManufacturerId() {
    return MakeFourCharCode("mrws");
}

bool HasMonoVariant() {
    return false;
}

double GetOutputRefreshRate() {
    return 50.0;
}

const Lathe::Audio::Plugin::SGUIFeatures& GetGUIFeatures() {
    static constexpr Lathe::Audio::Plugin::SGUIFeatures s_Features{true, true, true, true, false};
    return s_Features;
}

} // namespace LatheExt::RTASPlugin
