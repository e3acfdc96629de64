#include "cairn-host/ModuleReport.h"

#include "cairn-host/HostInstance.h"
#include "cairn-host/Module.h"
#include "cairn-host/Text.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <cstring>

namespace CairnHost {
namespace {

constexpr int s_SampleRate = 48000;
constexpr int s_BlockSize = 512;
constexpr std::array<int, 5> s_NameLengths = {31, 16, 12, 8, 4};
constexpr std::uint32_t s_PageTable = 0x5063544C; // 'PcTL'
constexpr std::size_t s_PageEntries = 16;

std::string ToHex(std::uint32_t value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", value);
    return text;
}

std::string DescribeGroup(const RTASGroupInfo& info) {
    std::string text = "Manufacturer  " + std::string(info.manufacturerName) + " (" +
                       CodeToText(info.manufacturerId) + ")\n";
    text += "Product       " + CodeToText(info.productId) + '\n';
    for (const std::string_view line : Split(info.productNames, '\n'))
        text += "              " + std::string(line) + '\n';
    return text;
}

TResult<std::string> DescribeTypes(const CModule& module, int count) {
    CTextTable rows = {
        {"Type", "Identifier", "Product", "Category", "Stems in, out", "Channels in, out"}};
    for (int i = 0; i < count; ++i) {
        RTASTypeInfo info = {};
        info.size = sizeof info;
        info.index = i;
        if (CStatus status = module.Do(RTAS_GET_TYPE_INFO, &info, "telling its types"); !status)
            return status.GetFault();
        rows.push_back(
            {std::to_string(i), std::to_string(info.typeId), CodeToText(info.productId),
             ToHex(info.category),
             std::to_string(info.inputStem) + ", " + std::to_string(info.outputStem),
             std::to_string(info.inputChannels) + ", " + std::to_string(info.outputChannels)});
    }
    return AlignColumns(rows);
}

std::string DescribeControls(const CHostInstance& instance) {
    CTextTable rows = {{"Control", "Kind", "Steps", "Default"}};
    for (const int length : s_NameLengths)
        rows[0].push_back("Up to " + std::to_string(length));
    for (int control = 1; control <= instance.GetControlCount(); ++control) {
        const RTASControlInfo info = instance.GetControlInfo(control);
        rows.push_back({std::to_string(control),
                        info.isMasterBypass != 0 ? "bypass"
                        : info.isSpecial != 0    ? "output"
                                                 : "input",
                        std::to_string(info.steps),
                        instance.ControlToText(control, info.defaultValue, s_NameLengths[0])});
        for (const int length : s_NameLengths)
            rows.back().push_back(instance.GetControlName(control, length));
    }
    return AlignColumns(rows);
}

TResult<std::string> DescribeChunks(const CHostInstance& instance) {
    CTextTable rows = {{"Chunk", "Bytes"}};
    for (const std::uint32_t code : instance.GetChunkCodes()) {
        const TResult<std::string> record = instance.GetChunk(code);
        if (!record)
            return record;
        rows.push_back({CodeToText(code), std::to_string(record->size())});
    }
    return AlignColumns(rows);
}

// Fields of 16 bits: three of a header, the second of which tells the pages, then those of each
// page: its controls, and zeros.
TResult<std::string> DescribePages(const CHostInstance& instance) {
    const std::string table = instance.GetTable(s_PageTable);
    std::vector<std::uint16_t> fields(table.size() / sizeof(std::uint16_t));
    std::memcpy(fields.data(), table.data(), fields.size() * sizeof(std::uint16_t));
    constexpr std::size_t s_Header = 3;
    if (fields.size() < s_Header || fields.size() < s_Header + fields[1] * s_PageEntries)
        return SFault{"the plug-in's page table of " + std::to_string(table.size()) +
                      " bytes is too short"};
    CTextTable rows = {{"Page", "Controls"}};
    for (std::size_t page = 0; page < fields[1]; ++page) {
        std::string controls;
        for (std::size_t i = 0; i < s_PageEntries; ++i) {
            if (const int control = fields[s_Header + page * s_PageEntries + i]; control != 0)
                controls += (controls.empty() ? "" : " ") + std::to_string(control);
        }
        rows.push_back({std::to_string(page + 1), controls});
    }
    return AlignColumns(rows);
}

struct SPresetLine {
    std::string m_Index;
    std::string m_Kind;
    std::string m_Folders; // Joined by '/'.
    std::string m_Name;
    bool m_IsDefault;
};

TResult<std::vector<SPresetLine>> ReadPresets(CHostInstance& instance) {
    const TResult<std::string> text = instance.Command("list-presets");
    if (!text)
        return text.GetFault();
    std::vector<SPresetLine> presets;
    for (const std::string_view line : Split(*text, '\n')) {
        if (line.empty())
            continue;
        const auto fields = Split(line, '\t');
        if (fields.size() != 5)
            return SFault{"the plug-in's list of presets has a line of " +
                          std::to_string(fields.size()) + " fields: expected 5"};
        presets.push_back({std::string(fields[0]), std::string(fields[1]), std::string(fields[2]),
                           std::string(fields[3]), fields[4] == "default"});
    }
    return presets;
}

std::string ToJson(const std::vector<SPresetLine>& presets) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const SPresetLine& preset : presets)
        list.push_back({{"index", ParseInteger(preset.m_Index).value_or(-1)},
                        {"kind", preset.m_Kind},
                        {"folder", preset.m_Folders},
                        {"name", preset.m_Name},
                        {"default", preset.m_IsDefault}});
    return list.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

// A folder stands on a line of its own, where the presets first reach it.
std::string ToTree(const std::vector<SPresetLine>& presets) {
    constexpr std::size_t s_Indent = 2;
    std::string text;
    std::vector<std::string> open;
    for (const SPresetLine& preset : presets) {
        std::vector<std::string> folders = {preset.m_Kind};
        for (const std::string_view folder : Split(preset.m_Folders, '/')) {
            if (!folder.empty())
                folders.emplace_back(folder);
        }
        std::size_t depth = 0;
        while (depth < folders.size() && depth < open.size() && folders[depth] == open[depth])
            ++depth;
        for (; depth < folders.size(); ++depth)
            text += std::string(depth * s_Indent, ' ') + folders[depth] + "/\n";
        text += std::string(depth * s_Indent, ' ') + preset.m_Index + "  " + preset.m_Name +
                (preset.m_IsDefault ? "  (default)\n" : "\n");
        open = std::move(folders);
    }
    return text.empty() ? "no presets\n" : text;
}

} // namespace

TResult<std::string> DescribeModule(const CModule& module) {
    RTASGroupInfo info = {};
    info.size = sizeof info;
    if (CStatus status = module.Do(RTAS_GET_GROUP_INFO, &info, "telling what it is"); !status)
        return status.GetFault();
    CHostInstance instance(module);
    if (CStatus status = instance.Open(s_SampleRate, s_BlockSize); !status)
        return status.GetFault();
    const TResult<int> delay = instance.GetDelay();
    if (!delay)
        return delay.GetFault();
    std::string text = "Module        " + module.GetPath() + '\n' + DescribeGroup(info) +
                       "Latency       " + std::to_string(*delay) + " samples\n";
    for (const TResult<std::string>& part :
         {DescribeTypes(module, info.typeCount), TResult<std::string>(DescribeControls(instance)),
          DescribeChunks(instance), DescribePages(instance)}) {
        if (!part)
            return part;
        text += '\n' + *part;
    }
    return text;
}

TResult<std::string> ListPresets(const CModule& module, bool json) {
    CHostInstance instance(module);
    if (CStatus status = instance.Open(s_SampleRate, s_BlockSize); !status)
        return status.GetFault();
    const TResult<std::vector<SPresetLine>> presets = ReadPresets(instance);
    if (!presets)
        return presets.GetFault();
    return json ? ToJson(*presets) : ToTree(*presets);
}

} // namespace CairnHost
