// What a formula gives: a value, a table over one or two variables, or a picture of either.
#pragma once

#include "cairn-host/Result.h"

#include <string>
#include <vector>

namespace CairnHost {

// As given on the command line.
struct SFormulaOptions {
    std::string m_Formula;
    // "NAME=VALUE".
    std::vector<std::string> m_Params;
    // "NAME=FROM:TO:STEPS"; without them the formula is a constant.
    std::string m_X;
    std::string m_Y;
    // Its extension decides: .csv, .png or .svg; empty for text.
    std::string m_Output;
};

struct SFormulaAnswer {
    // For standard output; empty when there is a file.
    std::string m_Text;
    // The names that the formula leaves free, a line for each kind.
    std::vector<std::string> m_Notes;
};

TResult<SFormulaAnswer> EvaluateFormula(const SFormulaOptions& options);

} // namespace CairnHost
