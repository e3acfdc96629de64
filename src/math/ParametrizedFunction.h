// A compiled formula whose free names stay live: each can be set again and again without compiling.
#pragma once

#include "core/containers/Iterator.h"

namespace Lathe::Math {

class IFunction;
class IBinaryFunction;

// I is IConstant, IFunction or IBinaryFunction. Not while another thread evaluates the function.
template <class I>
class TIParametrizedFunction {
public:
    using NameIterator = Containers::IConstValueIterator<const char*>;

    // The root, which this object owns; null before it is set.
    virtual I* GetFunction() = 0;
    // Each gives the function or value to every use of the name; false when there is none.
    virtual bool SetParam(const char* name, double value) = 0;
    virtual bool SetCurveParam(const char* name, const IFunction& function) = 0;
    virtual bool SetSurfaceParam(const char* name, const IBinaryFunction& function) = 0;
    // Each distinct name of the kind once. The caller destroys the iterator, which doesn't outlive
    // this object.
    virtual NameIterator* GetParamNames() const = 0;
    virtual NameIterator* GetCurveParamNames() const = 0;
    virtual NameIterator* GetSurfaceParamNames() const = 0;
    virtual ~TIParametrizedFunction() = default;
    // Destroys the old root and owns the new one.
    virtual void SetFunction(I* function) = 0;
};

} // namespace Lathe::Math
