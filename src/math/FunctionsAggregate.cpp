#include "math/FunctionsAggregate.h"

namespace Lathe::Math {

// The list is not stored yet, and both say so.
template <class I>
bool TNFunctionsAggregate<I>::Serialize(Serialization::IWriteDataStream&) const {
    return false;
}

template <class I>
bool TNFunctionsAggregate<I>::DeSerialize(const Serialization::IReadDataStream&) {
    return false;
}

template class TNFunctionsAggregate<IFunction>;

} // namespace Lathe::Math
