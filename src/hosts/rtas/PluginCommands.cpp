#include "hosts/rtas/PluginCommands.h"

#include "datamodel/objects/ParamInfo.h"
#include "datamodel/objects/text/ValueCurveNames.h"
#include "plugin/internals/AudioPluginInternals.h"
#include "serialization/XmlDataObject.h"

#include <array>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

namespace LatheExt::RTASPlugin {

using namespace Lathe::Audio::Plugin;
using Lathe::DataModel::Objects::GetValueCurveName;
using Lathe::DataModel::Objects::IConstParamInfo;
using Lathe::Math::EParamValueCurve;

namespace {

constexpr const char* PresetRoot = "Preset";
constexpr int MaxController = 127;
constexpr int MaxChannel = 16;

// One line of text.
std::string MakePrintable(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F')
            c = '?';
    }
    return text;
}

bool Fail(std::string& result, const std::string& what) {
    result = MakePrintable(what);
    return false;
}

// The whole text, within the range.
bool ReadNumber(std::string_view text, int min, int max, int& number) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end && number >= min && number <= max;
}

class CPresetTable {
public:
    CPresetTable(IPresetsManager& presets, const IPreset* defaultPreset)
        : m_Presets(presets), m_Default(defaultPreset) {}

    std::string Print() {
        AddFolder("factory", m_Presets.GetFactoryFolder(), m_Presets.GetPresets(), 0, "");
        AddFolder("user", m_Presets.GetUserFolder(), m_Presets.GetUserPresets(),
                  m_Presets.GetPresets().GetCount(), "");
        return m_Text;
    }

private:
    void AddFolder(const char* side, const CPresetFolder& folder, IPresets& presets, int baseIndex,
                   const std::string& path) {
        for (int i = 0; i < folder.GetFoldersCount(); ++i) {
            const std::string name = MakePrintable(folder.GetFolder(i).GetName());
            AddFolder(side, folder.GetFolder(i), presets, baseIndex,
                      path.empty() ? name : path + "/" + name);
        }
        for (int i = 0; i < folder.GetItemsCount(); ++i) {
            const IPreset& preset = presets.GetElement(folder.GetItem(i));
            m_Text += std::to_string(baseIndex + folder.GetItem(i)) + "\t" + side + "\t" + path +
                      "\t" + MakePrintable(preset.GetName()) + "\t" +
                      (&preset == m_Default ? "default" : "") + "\n";
        }
    }

    IPresetsManager& m_Presets;
    const IPreset* m_Default;
    std::string m_Text;
};

bool ListPresets(CAudioPluginInternals& internals, const char*, std::string& result) {
    internals.Refresh();
    result = CPresetTable(internals, internals.GetDefaultPreset()).Print();
    return true;
}

bool GetCurrentPreset(CAudioPluginInternals& internals, const char*, std::string& result) {
    result = MakePrintable(std::unique_ptr<char[]>(internals.GetCurrentPresetName()).get());
    return true;
}

bool ApplyPreset(CAudioPluginInternals& internals, const char* argument, std::string& result) {
    const int factoryCount = internals.GetPresets().GetCount();
    const int count = factoryCount + internals.GetUserPresets().GetCount();
    int index = 0;
    if (!ReadNumber(argument, 0, count - 1, index))
        return Fail(result, "'" + std::string(argument) + "' is no index of a preset");
    IPreset& preset = index < factoryCount
                          ? internals.GetPresets().GetElement(index)
                          : internals.GetUserPresets().GetElement(index - factoryCount);
    preset.Apply();
    return true;
}

// Null when a preset can be read from the file.
const char* FindPresetFault(const char* path) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored))
        return "there is no such file";
    Lathe::Serialization::CXmlDataObject document(PresetRoot);
    if (!document.Load(path))
        return "not a well-formed document";
    return std::strcmp(document.GetRootName(), PresetRoot) == 0 ? nullptr : "not a preset";
}

bool LoadPreset(CAudioPluginInternals& internals, const char* path, std::string& result) {
    if (const char* fault = FindPresetFault(path))
        return Fail(result, std::string(path) + ": " + fault);
    return internals.LoadPreset(path) || Fail(result, std::string(path) + ": can't be read");
}

bool SavePreset(CAudioPluginInternals& internals, const char* path, std::string& result) {
    return internals.SavePreset(path) || Fail(result, std::string(path) + ": can't be written");
}

// What a map-midi asks for.
struct SMapping {
    bool Fail(const char* part, std::string_view text, const std::string& expected) {
        m_Fault = std::string(part) + " '" + std::string(text) + "' is not " + expected;
        return false;
    }

    bool m_IsOutput = false;
    // In the list of its side.
    int m_Param = 0;
    int m_Number = 0;
    int m_Channel = 0;
    double m_Min = 0.0;
    double m_Max = 0.0;
    EParamValueCurve m_Curve = EParamValueCurve::Linear;
    std::string m_Fault;
};

using CFields = std::array<std::string, 6>;

// False when there are too few or too many.
bool SplitFields(std::string_view text, CFields& fields) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::size_t end = text.find('\t');
        if ((end == std::string_view::npos) != (i + 1 == fields.size()))
            return false;
        fields[i] = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return true;
}

// An empty text leaves the value.
bool ReadValue(const char* part, const std::string& text, const IConstParamInfo& info,
               double& value, SMapping& mapping) {
    if (text.empty())
        return true;
    double read = 0.0;
    if (!info.GetValueToText().FromText(text.c_str(), &read) ||
        !(read >= info.GetMin() && read <= info.GetMax()))
        return mapping.Fail(part, text, "a value of the control");
    value = read;
    return true;
}

bool ReadCurve(const std::string& name, SMapping& mapping) {
    if (name.empty())
        return true;
    for (int i = 0; i < Lathe::DataModel::Objects::ValueCurveCount; ++i) {
        if (name == GetValueCurveName(EParamValueCurve(i))) {
            mapping.m_Curve = EParamValueCurve(i);
            return true;
        }
    }
    return mapping.Fail("curve", name, "a curve");
}

bool ReadMapping(CAudioPluginInternals& internals, const CFields& fields, SMapping& mapping) {
    const int inputs = internals.GetInputParamInfos().GetCount();
    const int outputs = internals.GetOutputParamInfos().GetCount();
    int control = 0;
    if (!ReadNumber(fields[0], 1, inputs + outputs, control))
        return mapping.Fail("control", fields[0],
                            "a number from 1 to " + std::to_string(inputs + outputs));
    mapping.m_IsOutput = control > inputs;
    mapping.m_Param = mapping.m_IsOutput ? control - inputs - 1 : control - 1;
    if (!ReadNumber(fields[1], 0, MaxController, mapping.m_Number))
        return mapping.Fail("controller", fields[1], "a number from 0 to 127");
    const int firstChannel = mapping.m_IsOutput ? 1 : 0;
    if (!ReadNumber(fields[2], firstChannel, MaxChannel, mapping.m_Channel))
        return mapping.Fail("channel", fields[2],
                            "a number from " + std::to_string(firstChannel) + " to 16");
    const IConstParamInfo& info =
        (mapping.m_IsOutput ? internals.GetOutputParamInfos() : internals.GetInputParamInfos())
            .GetElement(mapping.m_Param);
    mapping.m_Min = info.GetMin();
    mapping.m_Max = info.GetMax();
    return ReadValue("minimum", fields[3], info, mapping.m_Min, mapping) &&
           ReadValue("maximum", fields[4], info, mapping.m_Max, mapping) &&
           ReadCurve(fields[5], mapping);
}

// The side's own settings from now on: changed defaults no longer replace them.
void ApplyMapping(CAudioPluginInternals& internals, const SMapping& mapping) {
    const IPluginGUIConnections& connections = internals.GetConnections();
    (mapping.m_IsOutput ? connections.GetMIDIOutputDefault() : connections.GetMIDIInputDefault())
        ->SetValue(false);
    IMIDIController& midi = internals.GetMIDIController();
    IMIDICCSetting& setting =
        (mapping.m_IsOutput ? midi.GetOutputSettings() : midi.GetInputSettings())
            .GetElement(mapping.m_Param);
    setting.SetType(EMIDIControlType::CC);
    setting.SetNumber(mapping.m_Number);
    setting.SetChannel(mapping.m_Channel);
    setting.SetMin(mapping.m_Min);
    setting.SetMax(mapping.m_Max);
    setting.SetCurve(mapping.m_Curve);
    setting.SetMIDIEnabled(true);
}

bool MapMIDI(CAudioPluginInternals& internals, const char* argument, std::string& result) {
    CFields fields;
    if (!SplitFields(argument, fields))
        return Fail(result, "a mapping has six fields with tabs between them");
    SMapping mapping;
    if (!ReadMapping(internals, fields, mapping))
        return Fail(result, mapping.m_Fault);
    ApplyMapping(internals, mapping);
    return true;
}

struct SPluginCommand {
    const char* m_Name;
    PluginCommandFunction m_Function;
};
constexpr SPluginCommand Commands[] = {
    {"list-presets", ListPresets}, {"current-preset", GetCurrentPreset},
    {"apply-preset", ApplyPreset}, {"load-preset", LoadPreset},
    {"save-preset", SavePreset},   {"map-midi", MapMIDI},
};

} // namespace

PluginCommandFunction FindPluginCommand(const char* name) {
    for (const SPluginCommand& command : Commands) {
        if (name && std::strcmp(name, command.m_Name) == 0)
            return command.m_Function;
    }
    return nullptr;
}

} // namespace LatheExt::RTASPlugin
