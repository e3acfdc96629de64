// What tells this product from another one built on the same adaptor.
#pragma once

#include <cstdint>
#include <memory>

namespace Lathe::Audio::DSP {
class CFilterProductInfo;
class IFilter;
} // namespace Lathe::Audio::DSP

namespace Lathe::Audio::Plugin {
class CPackageInfo;
struct SGUIFeatures;
} // namespace Lathe::Audio::Plugin

namespace LatheExt::RTASPlugin {

std::unique_ptr<Lathe::Audio::DSP::IFilter> CreateFilter();
const Lathe::Audio::DSP::CFilterProductInfo& GetProductInfo();
const Lathe::Audio::Plugin::CPackageInfo& GetPackageInfo();
// Codes of four characters, as the library names things.
std::uint32_t GetProductId();
std::uint32_t GetManufacturerId();
// Whether a mono type stands beside a type of more channels.
bool HasMonoVariant();
// In hertz.
double GetOutputRefreshRate();
const Lathe::Audio::Plugin::SGUIFeatures& GetGUIFeatures();

} // namespace LatheExt::RTASPlugin
