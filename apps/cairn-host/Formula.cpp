#include "cairn-host/Formula.h"

#include "cairn-host/FormulaPlot.h"
#include "cairn-host/OutputFile.h"
#include "cairn-host/Text.h"
#include "math/FormulaBuilders.h"
#include "math/Function.h"
#include "math/ParametrizedFunction.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <map>
#include <memory>

namespace CairnHost {
namespace {

using Lathe::Math::IBinaryFunction;
using Lathe::Math::IConstant;
using Lathe::Math::IFunction;
using Lathe::Math::TIParametrizedFunction;

// A picture of colours has a pixel for each value, and 32767 of them side by side at most.
constexpr int s_MaxSteps = 32000;
// As a text they take some 500 MiB.
constexpr std::size_t s_MaxValues = 1200000;
// Letters of a formula in the title of its picture.
constexpr std::size_t s_TitleLength = 72;

using CParamValues = std::map<std::string, double>;

std::optional<double> ParseNumber(std::string_view text) {
    text = Trim(text);
    if (text.size() > 1 && text.front() == '+' && text[1] != '-')
        text.remove_prefix(1);
    double value = 0.0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

TResult<CParamValues> ReadParams(const std::vector<std::string>& params) {
    CParamValues values;
    for (const std::string& param : params) {
        const std::size_t equals = param.find('=');
        const std::string name(Trim(std::string_view(param).substr(0, equals)));
        if (equals == std::string::npos || name.empty())
            return SFault{"--param " + param + ": expected NAME=VALUE"};
        const std::optional<double> value = ParseNumber(std::string_view(param).substr(equals + 1));
        if (!value)
            return SFault{"--param " + param + ": expected a number behind the ="};
        values[name] = *value;
    }
    return values;
}

// Neither a number nor one that goes by a name.
bool IsVariable(const std::string& name) {
    const std::unique_ptr<IFunction> itself(Lathe::Math::BuildFunction(name.c_str(), name.c_str()));
    return itself && itself->Evaluate(0.0) < itself->Evaluate(1.0);
}

TResult<SSweep> ReadSweep(const std::string& option, const std::string& text) {
    const SFault fault = {option + ' ' + text + ": expected NAME=FROM:TO:STEPS"};
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos)
        return fault;
    SSweep sweep;
    sweep.m_Name = Trim(std::string_view(text).substr(0, equals));
    const std::vector<std::string_view> fields =
        Split(std::string_view(text).substr(equals + 1), ':');
    if (sweep.m_Name.empty() || fields.size() != 3)
        return fault;
    const std::optional<double> from = ParseNumber(fields[0]);
    const std::optional<double> to = ParseNumber(fields[1]);
    const std::optional<std::int64_t> steps = ParseInteger(Trim(fields[2]));
    if (!from || !to || !steps)
        return fault;
    if (!IsVariable(sweep.m_Name))
        return SFault{option + ' ' + text + ": \"" + sweep.m_Name + "\" can't be a variable"};
    if (!(*from < *to))
        return SFault{option + ' ' + text + ": expected FROM below TO"};
    if (!std::isfinite((*to - *from) * s_MaxSteps))
        return SFault{option + ' ' + text + ": expected FROM closer to TO"};
    if (*steps < 1 || *steps > s_MaxSteps)
        return SFault{option + ' ' + text + ": expected 1 to " + std::to_string(s_MaxSteps) +
                      " steps"};
    sweep.m_From = *from;
    sweep.m_To = *to;
    sweep.m_Steps = static_cast<int>(*steps);
    return sweep;
}

// Sorted; deletes the iterator.
std::vector<std::string> TakeNames(Lathe::Containers::IConstValueIterator<const char*>* iterator) {
    const std::unique_ptr<Lathe::Containers::IConstValueIterator<const char*>> names(iterator);
    std::vector<std::string> result;
    for (; !names->IsDone(); names->Next())
        result.emplace_back(names->GetValue());
    std::sort(result.begin(), result.end());
    return result;
}

template <class I>
CStatus SetParams(TIParametrizedFunction<I>& formula, const CParamValues& values) {
    for (const auto& [name, value] : values) {
        if (!formula.SetParam(name.c_str(), value))
            return SFault{"--param " + name + ": the formula has no free name \"" + name + '"'};
    }
    return {};
}

void AddNote(std::vector<std::string>& notes, const char* kind,
             const std::vector<std::string>& names, const char* explanation) {
    if (names.empty())
        return;
    std::string line = kind;
    for (const std::string& name : names)
        line += (&name == &names.front() ? ": " : ", ") + name;
    notes.push_back(line + explanation);
}

template <class I>
std::vector<std::string> DescribeFreeNames(const TIParametrizedFunction<I>& formula,
                                           const CParamValues& values) {
    std::vector<std::string> names = TakeNames(formula.GetParamNames());
    for (std::string& name : names) {
        const auto given = values.find(name);
        name += given == values.end() ? " = 0 (not given)" : " = " + FormatExactly(given->second);
    }
    std::vector<std::string> notes;
    AddNote(notes, "free names", names, "");
    AddNote(notes, "free curves", TakeNames(formula.GetCurveParamNames()),
            " (each gives its argument)");
    AddNote(notes, "free surfaces", TakeNames(formula.GetSurfaceParamNames()),
            " (each gives the mean of its arguments)");
    return notes;
}

// A formula with its names set; a sentence about what is wrong otherwise.
template <class I>
CStatus Prepare(TIParametrizedFunction<I>* formula, const SFormulaOptions& options,
                const CParamValues& values, std::vector<std::string>& notes) {
    if (!formula)
        return SFault{'"' + options.m_Formula + "\": isn't a valid formula"};
    if (CStatus status = SetParams(*formula, values); !status)
        return status;
    notes = DescribeFreeNames(*formula, values);
    return {};
}

// Columns side by side, with a header.
struct STable {
    std::vector<std::string> m_Names;
    std::vector<std::vector<double>> m_Columns;
};

std::string ToText(const STable& table) {
    CTextTable rows = {table.m_Names};
    for (std::size_t row = 0; row < table.m_Columns.front().size(); ++row) {
        std::vector<std::string>& cells = rows.emplace_back();
        for (const std::vector<double>& column : table.m_Columns)
            cells.push_back(FormatExactly(column[row]));
    }
    return AlignColumns(rows);
}

CStatus WriteCsv(const STable& table, const std::string& path) {
    COutputFile file;
    if (CStatus status = file.Open(path); !status)
        return status;
    std::string line;
    for (const std::string& name : table.m_Names)
        line += (line.empty() ? "" : ",") + QuoteCsvField(name);
    for (std::size_t row = 0; row < table.m_Columns.front().size(); ++row) {
        line += '\n';
        if (!file.Write(line.data(), line.size()))
            return file.GetFault();
        line.clear();
        for (const std::vector<double>& column : table.m_Columns)
            line += (line.empty() ? "" : ",") + FormatExactly(column[row]);
    }
    line += '\n';
    file.Write(line.data(), line.size());
    return file.Commit();
}

// Pictures show what their font has: plain letters.
SFormulaPicture DescribePicture(const SFormulaOptions& options,
                                const std::vector<std::string>& notes) {
    SFormulaPicture picture = {OneLine(options.m_Formula), notes.empty() ? "" : notes.front()};
    for (std::string* text : {&picture.m_Title, &picture.m_Subtitle}) {
        std::replace_if(
            text->begin(), text->end(), [](char letter) { return letter < ' ' || letter > '~'; },
            '?');
        if (text->size() > s_TitleLength)
            text->replace(s_TitleLength - 3, std::string::npos, "...");
    }
    return picture;
}

bool HasExtension(const std::string& path, const char* extension) {
    return EqualsIgnoringCase(std::filesystem::path(path).extension().string(), extension);
}

CStatus CheckOutput(const SFormulaOptions& options) {
    const std::string& path = options.m_Output;
    if (path.empty())
        return {};
    if (!HasExtension(path, ".csv") && !HasExtension(path, ".png") && !HasExtension(path, ".svg"))
        return SFault{path + ": unknown extension: expected .csv, .png or .svg"};
    if (options.m_X.empty())
        return SFault{path + ": a single value makes no file: give --x"};
    return {};
}

std::vector<double> GetValues(const SSweep& sweep) {
    std::vector<double> values;
    for (int step = 0; step <= sweep.m_Steps; ++step)
        values.push_back(sweep.GetValue(step));
    return values;
}

TResult<SFormulaAnswer> EvaluateConstant(const SFormulaOptions& options,
                                         const CParamValues& params) {
    const std::unique_ptr<TIParametrizedFunction<IConstant>> formula(
        Lathe::Math::BuildParametrizedConstant(options.m_Formula.c_str()));
    SFormulaAnswer answer;
    if (CStatus status = Prepare(formula.get(), options, params, answer.m_Notes); !status)
        return status.GetFault();
    answer.m_Text = FormatExactly(formula->GetFunction()->Evaluate()) + '\n';
    return answer;
}

// Where the table goes, if it is to be a text.
CStatus Deliver(const SFormulaOptions& options, const STable& table, std::string& text) {
    if (!options.m_Output.empty())
        return WriteCsv(table, options.m_Output);
    text = ToText(table);
    return {};
}

TResult<SFormulaAnswer> EvaluateCurve(const SFormulaOptions& options, const CParamValues& params,
                                      const SSweep& x) {
    const std::unique_ptr<TIParametrizedFunction<IFunction>> formula(
        Lathe::Math::BuildParametrizedFunction(options.m_Formula.c_str(), x.m_Name.c_str()));
    SFormulaAnswer answer;
    if (CStatus status = Prepare(formula.get(), options, params, answer.m_Notes); !status)
        return status.GetFault();
    std::vector<double> places = GetValues(x);
    std::vector<double> values;
    for (const double place : places)
        values.push_back(formula->GetFunction()->Evaluate(place));
    const bool picture = !options.m_Output.empty() && !HasExtension(options.m_Output, ".csv");
    const CStatus status =
        picture ? DrawFormulaCurve(DescribePicture(options, answer.m_Notes), x, values,
                                   options.m_Output)
                : Deliver(options, {{x.m_Name, "value"}, {std::move(places), std::move(values)}},
                          answer.m_Text);
    return status ? TResult<SFormulaAnswer>(std::move(answer)) : status.GetFault();
}

TResult<SFormulaAnswer> EvaluateSurface(const SFormulaOptions& options, const CParamValues& params,
                                        const SSweep& x, const SSweep& y) {
    const std::unique_ptr<TIParametrizedFunction<IBinaryFunction>> formula(
        Lathe::Math::BuildParametrizedBinaryFunction(options.m_Formula.c_str(), x.m_Name.c_str(),
                                                     y.m_Name.c_str()));
    SFormulaAnswer answer;
    if (CStatus status = Prepare(formula.get(), options, params, answer.m_Notes); !status)
        return status.GetFault();
    STable table = {{x.m_Name, y.m_Name, "value"}, std::vector<std::vector<double>>(3)};
    const std::vector<double> xs = GetValues(x);
    for (const double yPlace : GetValues(y)) {
        for (const double xPlace : xs) {
            table.m_Columns[0].push_back(xPlace);
            table.m_Columns[1].push_back(yPlace);
            table.m_Columns[2].push_back(formula->GetFunction()->Evaluate(xPlace, yPlace));
        }
    }
    const bool picture = !options.m_Output.empty() && !HasExtension(options.m_Output, ".csv");
    const CStatus status = picture ? DrawFormulaSurface(DescribePicture(options, answer.m_Notes), x,
                                                        y, table.m_Columns[2], options.m_Output)
                                   : Deliver(options, table, answer.m_Text);
    return status ? TResult<SFormulaAnswer>(std::move(answer)) : status.GetFault();
}

} // namespace

TResult<SFormulaAnswer> EvaluateFormula(const SFormulaOptions& options) {
    if (CStatus status = CheckOutput(options); !status)
        return status.GetFault();
    const TResult<CParamValues> params = ReadParams(options.m_Params);
    if (!params)
        return params.GetFault();
    if (options.m_X.empty())
        return options.m_Y.empty() ? EvaluateConstant(options, *params)
                                   : SFault{"--y " + options.m_Y + ": needs --x beside it"};
    const TResult<SSweep> x = ReadSweep("--x", options.m_X);
    if (!x)
        return x.GetFault();
    if (options.m_Y.empty())
        return EvaluateCurve(options, *params, *x);
    const TResult<SSweep> y = ReadSweep("--y", options.m_Y);
    if (!y)
        return y.GetFault();
    if (x->m_Name == y->m_Name)
        return SFault{"--y " + options.m_Y + ": expected another name than that of --x"};
    if (static_cast<std::size_t>(x->m_Steps + 1) * static_cast<std::size_t>(y->m_Steps + 1) >
        s_MaxValues)
        return SFault{"--x " + options.m_X + " --y " + options.m_Y + ": expected at most " +
                      std::to_string(s_MaxValues) + " values in all"};
    return EvaluateSurface(options, *params, *x, *y);
}

} // namespace CairnHost
