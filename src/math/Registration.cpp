// Enters every function class into the factory of objects before main.

#include "core/runtime/ObjectsFactory.h"
#include "math/Constant.h"
#include "math/FunctionComposition.h"
#include "math/FunctionProxy.h"
#include "math/FunctionsCombination.h"
#include "math/FunctionsComposition.h"
#include "math/FunctionsOperation.h"
#include "math/PlainFunction.h"
#include "math/SweptCurvesFunction.h"
#include "math/SweptValues.h"

#include <cstddef>
#include <iterator>
#include <tuple>
#include <utility>

// Whoever links this library names this symbol to the linker, and so keeps this file.
extern "C" {
extern const char LatheMathRegistration;
const char LatheMathRegistration = 0;
}

namespace Lathe::Math {

namespace {

template <class I, class... T>
using TRegistrations = std::tuple<Runtime::CFactoryRegistration<T, I>...>;

// Every row of a table of class ids.
template <template <auto> class TObject, class I, const auto& Rows, std::size_t... Row>
auto RegisterRows(std::index_sequence<Row...>) {
    return TRegistrations<I, TObject<Rows[Row].m_Function>...>();
}
template <template <auto> class TObject, class I, const auto& Rows>
auto RegisterTable() {
    return RegisterRows<TObject, I, Rows>(std::make_index_sequence<std::size(Rows)>());
}

const auto Functions = RegisterTable<TFunction, IFunction, FunctionClassIds>();
const auto BinaryFunctions =
    RegisterTable<TBinaryFunction, IBinaryFunction, BinaryFunctionClassIds>();
const auto FunctionsOperations =
    RegisterTable<TFunctionsOperation, IFunction, FunctionsOperationClassIds>();

const TRegistrations<IFunction, CConstantFunction, CFunctionProxy, CFunctionsCombination,
                     CFunctionsComposition>
    CompositeFunctions;
const TRegistrations<IBinaryFunction, CConstantBinaryFunction, CBinaryFunctionProxy,
                     CBinaryFunctionsCombination, CBinaryFunctionComposition>
    CompositeBinaryFunctions;
const TRegistrations<IFunction, CSweptValues> SweptFunctions;
const TRegistrations<IBinaryFunction, CSweptCurvesFunction> SweptBinaryFunctions;
const TRegistrations<IConstant, CConstant, CConstantComposition, CConstantsCombination> Constants;

} // namespace

} // namespace Lathe::Math
