#include "plugin/presets/LegacyPresets.h"

#include "core/Differs.h"
#include "datamodel/objects/ParamInfo.h"
#include "plugin/presets/PresetOwner.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace Lathe::Audio::Plugin {

namespace {

using DataModel::Objects::ICaptureParam;
using DataModel::Objects::IConstParamInfo;
using Values = std::vector<double>;

constexpr int FixedKind = 0;
constexpr int RandomKind = 1;
constexpr double RandomMax = 2147483647.0;

void Seed() {
    std::srand(static_cast<unsigned>(std::clock()));
    std::srand(static_cast<unsigned>(std::rand()));
    for (int skipped = std::rand() % 10; skipped > 0; --skipped)
        std::rand();
}

double MakeRandomValue(const IConstParamInfo& info) {
    return info.GetMin() + (info.GetMax() - info.GetMin()) * std::rand() / RandomMax;
}

// Calls the operation with each parameter of the filter and its value, as far as there are both.
template <class TOperation>
void ForEachParam(IInputParams& params, const Values& values, TOperation operation) {
    const int count = std::min(params.GetCount() - 1, static_cast<int>(values.size()));
    for (int i = 0; i < count; ++i)
        operation(params.GetElement(i + 1), values[static_cast<std::size_t>(i)]);
}

void SetValues(IInputParams& params, const Values& values) {
    ForEachParam(params, values, [](ICaptureParam& param, double value) { param.SetValue(value); });
}

void SetRandomValues(IInputParams& params, const Values& values) {
    Seed();
    ForEachParam(params, values, [](ICaptureParam& param, double value) {
        if (Core::Differs(value, 0.0))
            param.SetValue(MakeRandomValue(param.GetInfo()));
    });
}

} // namespace

CAudioPluginLegacyPreset::CAudioPluginLegacyPreset(IPresetOwner& owner, int index,
                                                   const DSP::ILegacyPreset& preset)
    : m_Owner(&owner), m_Index(index), m_Name(preset.GetName()), m_Kind(preset.GetKind()) {
    for (int i = 0; i < preset.GetValues().GetCount(); ++i)
        m_Values.push_back(preset.GetValues().GetValue(i));
}

void CAudioPluginLegacyPreset::Apply() {
    m_Owner->SetCurrentPreset(m_Index, GetName());
    IInputParams* params = m_Owner->GetInputParams();
    if (!params || params->GetCount() == 0)
        return;
    params->GetElement(0).SetValue(0.0);
    if (m_Kind == FixedKind)
        SetValues(*params, m_Values);
    else if (m_Kind == RandomKind)
        SetRandomValues(*params, m_Values);
}

CAudioPluginLegacyPresets::CAudioPluginLegacyPresets(IPresetOwner& owner,
                                                     const DSP::ILegacyPresets& presets) {
    for (int i = 0; i < presets.GetCount(); ++i)
        m_Presets.emplace_back(owner, i, presets.GetElement(i));
}

} // namespace Lathe::Audio::Plugin
