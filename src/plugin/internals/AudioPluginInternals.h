// The running instance in its final form.
#pragma once

#include "plugin/internals/AudioPluginInternalsBase.h"

namespace Lathe::Audio::Plugin {

class CAudioPluginInternals final : public CAudioPluginInternalsBase {
public:
    using CAudioPluginInternalsBase::CAudioPluginInternalsBase;
};

} // namespace Lathe::Audio::Plugin
