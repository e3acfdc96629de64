// Presets that a filter names of its own, beside those that lie in files.
#pragma once

#include "core/containers/Vector.h"

namespace Lathe::Audio::DSP {

class ILegacyPreset {
public:
    virtual const char* GetName() const = 0;
    // 0: the values are set as they are. 1: those that aren't 0 are set to random values.
    virtual int GetKind() const = 0;
    // One value a parameter of the filter.
    virtual const Containers::IConstValueVector<double>& GetValues() const = 0;
    virtual ~ILegacyPreset() = default;
};

using ILegacyPresets = Containers::IConstVector<ILegacyPreset>;

} // namespace Lathe::Audio::DSP
