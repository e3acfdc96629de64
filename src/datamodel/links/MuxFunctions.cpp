#include "datamodel/links/MuxFunctions.h"

#include "math/FunctionsOperation.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace Lathe::DataModel::Objects {

namespace {

namespace FunctionsLibrary = Math::FunctionsLibrary;
using CurveOperator = Math::TNFunctionsAggregate<Math::IFunction>;

double GetMax(std::span<const double> values) {
    return values.empty() ? 0.0 : *std::max_element(values.begin(), values.end());
}

double GetMin(std::span<const double> values) {
    return values.empty() ? 0.0 : *std::min_element(values.begin(), values.end());
}

double GetMean(std::span<const double> values) {
    const double sum = std::accumulate(values.begin(), values.end(), 0.0);
    return values.empty() ? 0.0 : sum / static_cast<double>(values.size());
}

template <MuxFunction F>
double GetNegated(std::span<const double> values) {
    return -F(values);
}

// A number without neighbours compares as wanted.
template <Math::PlainBinaryFunction F>
double CompareNeighbours(std::span<const double> values) {
    const auto fails = [](double left, double right) { return F(left, right) < 1.0; };
    const auto failure = std::adjacent_find(values.begin(), values.end(), fails);
    return failure == values.end() ? 1.0 : 0.0;
}

struct SMuxFunction {
    const char* m_Name;
    MuxFunction m_Function;
};

constexpr SMuxFunction MuxFunctions[] = {
    {"max", GetMax},
    {"min", GetMin},
    {"mean", GetMean},
    {"-max", GetNegated<GetMax>},
    {"-min", GetNegated<GetMin>},
    {"-mean", GetNegated<GetMean>},
    {"<", CompareNeighbours<FunctionsLibrary::LowerThan>},
    {"<=", CompareNeighbours<FunctionsLibrary::LowerThanEqual>},
    {">", CompareNeighbours<FunctionsLibrary::GreaterThan>},
    {">=", CompareNeighbours<FunctionsLibrary::GreaterThanEqual>},
    {"=", CompareNeighbours<FunctionsLibrary::Equality>},
};

struct SCurveOperator {
    const char* m_Name;
    const CurveOperator& (*m_GetInstance)();
};

template <Math::PlainBinaryFunction F>
const CurveOperator& GetOperator() {
    static const Math::TFunctionsOperation<F> instance;
    return instance;
}

constexpr SCurveOperator CurveOperators[] = {
    {"+", GetOperator<FunctionsLibrary::Sum>},
    {"-", GetOperator<FunctionsLibrary::Difference>},
    {"*", GetOperator<FunctionsLibrary::Product>},
    {"/", GetOperator<FunctionsLibrary::Division>},
};

// The row of the name, or null.
template <class TRow, std::size_t Count>
const TRow* FindRow(const TRow (&rows)[Count], const char* name) {
    const auto* row = std::find_if(std::begin(rows), std::end(rows), [name](const TRow& candidate) {
        return name && std::strcmp(name, candidate.m_Name) == 0;
    });
    return row == std::end(rows) ? nullptr : row;
}

} // namespace

MuxFunction FindMuxFunction(const char* name) {
    const SMuxFunction* row = FindRow(MuxFunctions, name);
    return row ? row->m_Function : GetMean;
}

const CurveOperator* FindCurveOperator(const char* name) {
    const SCurveOperator* row = FindRow(CurveOperators, name);
    return row ? &row->m_GetInstance() : nullptr;
}

} // namespace Lathe::DataModel::Objects
