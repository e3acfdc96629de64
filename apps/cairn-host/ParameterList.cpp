#include "cairn-host/ParameterList.h"

#include "cairn-host/Text.h"

#include <nlohmann/json.hpp>

namespace CairnHost {

std::string ListParameters(const CParameterTable& parameters) {
    CTextTable rows = {
        {"Index", "Name", "Minimum", "Maximum", "Default", "Unit", "Default as text"}};
    for (const SParameter& parameter : parameters.GetParameters())
        rows.push_back({std::to_string(rows.size() - 1), parameter.m_Name,
                        FormatNumber(parameter.m_Min), FormatNumber(parameter.m_Max),
                        FormatNumber(parameter.m_Default), parameter.m_Unit,
                        ValueToText(parameter, parameter.m_Default)});
    return AlignColumns(rows);
}

std::string ListParametersAsJson(const CParameterTable& parameters) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const SParameter& parameter : parameters.GetParameters())
        list.push_back({{"index", list.size()},
                        {"name", parameter.m_Name},
                        {"min", parameter.m_Min},
                        {"max", parameter.m_Max},
                        {"default", parameter.m_Default},
                        {"unit", parameter.m_Unit},
                        {"defaultText", ValueToText(parameter, parameter.m_Default)}});
    // A text that isn't in UTF-8 is shown as well as it can be.
    return list.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

} // namespace CairnHost
