#include "cairn-host/MidiMap.h"

#include "cairn-host/Controls.h"
#include "cairn-host/Text.h"

#include "datamodel/objects/text/ValueCurveNames.h"

#include <array>
#include <optional>

namespace CairnHost {
namespace {

constexpr int s_MaxController = 127;
constexpr int s_MaxChannel = 16;

enum EKey : std::size_t { CC, Channel, Min, Max, Curve, KeyCount };
constexpr std::array<const char*, KeyCount> s_Keys = {"cc", "channel", "min", "max", "curve"};

using CFields = std::array<std::optional<std::string>, KeyCount>;

TResult<CFields> ReadFields(std::string_view text) {
    CFields fields;
    for (const std::string_view piece : Split(text, ',')) {
        const std::size_t colon = piece.find(':');
        const std::string_view key = Trim(piece.substr(0, colon));
        std::size_t index = 0;
        while (index < KeyCount && !EqualsIgnoringCase(key, s_Keys[index]))
            ++index;
        if (index == KeyCount || colon == std::string_view::npos)
            return SFault{'"' + std::string(piece) +
                          "\": expected cc:N, channel:N, min:TEXT, max:TEXT or curve:NAME"};
        if (fields[index])
            return SFault{'"' + std::string(piece) + "\": " + s_Keys[index] + " is there twice"};
        fields[index] = Trim(piece.substr(colon + 1));
    }
    return fields;
}

CStatus CheckWhole(const CFields& fields, EKey key, int from, int to) {
    const auto number = ParseInteger(*fields[key]);
    if (number && *number >= from && *number <= to)
        return {};
    return SFault{std::string(s_Keys[key]) + " \"" + *fields[key] +
                  "\": expected a whole number from " + std::to_string(from) + " to " +
                  std::to_string(to)};
}

// As the plug-in writes it.
TResult<std::string> FindCurve(const std::string& name) {
    using namespace Lathe::DataModel::Objects;
    std::string names;
    for (int i = 0; i < ValueCurveCount; ++i) {
        const char* known = GetValueCurveName(Lathe::Math::EParamValueCurve(i));
        if (EqualsIgnoringCase(name, known))
            return std::string(known);
        names += (i == 0 ? "" : i + 1 < ValueCurveCount ? ", " : " or ") + std::string(known);
    }
    return SFault{std::string(s_Keys[Curve]) + " \"" + name + "\": expected " + names};
}

TResult<std::string> MakeCommand(const std::string& text, const CParameterTable& table) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos)
        return SFault{"expected PARAMETER=cc:N, such as \"Mid (1)=cc:7\""};
    const TResult<int> parameter = table.Find(std::string_view(text).substr(0, equals));
    if (!parameter)
        return parameter.GetFault();
    TResult<CFields> fields = ReadFields(std::string_view(text).substr(equals + 1));
    if (!fields)
        return fields.GetFault();
    if (!(*fields)[CC])
        return SFault{"expected cc:N"};
    if (!(*fields)[Channel])
        (*fields)[Channel] = "0";
    if (CStatus status = CheckWhole(*fields, CC, 0, s_MaxController); !status)
        return status.GetFault();
    if (CStatus status = CheckWhole(*fields, Channel, 0, s_MaxChannel); !status)
        return status.GetFault();
    for (const EKey key : {Min, Max}) {
        if (!(*fields)[key])
            continue;
        const TResult<double> value = table.ReadValue(*parameter, *(*fields)[key]);
        if (!value)
            return SFault{std::string(s_Keys[key]) + " " + value.GetFault().m_Text};
        (*fields)[key] = FormatExactly(*value);
    }
    if ((*fields)[Curve]) {
        const TResult<std::string> curve = FindCurve(*(*fields)[Curve]);
        if (!curve)
            return curve;
        (*fields)[Curve] = *curve;
    }
    std::string command = std::to_string(GetControlNumber(table, *parameter));
    for (const auto& field : *fields)
        command += '\t' + field.value_or("");
    return command;
}

} // namespace

TResult<std::string> ReadMidiMap(const std::string& text, const CParameterTable& table) {
    TResult<std::string> command = MakeCommand(text, table);
    if (!command)
        return SFault{"--midi-map \"" + text + "\": " + command.GetFault().m_Text};
    return command;
}

} // namespace CairnHost
