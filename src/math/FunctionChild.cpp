#include "math/FunctionChild.h"

#include "math/Constant.h"
#include "math/PlainFunction.h"
#include "serialization/TypedObject.h"

namespace Lathe::Math {

namespace {

// Counts the functions that this thread is reading, one within the other.
class CReadNesting {
public:
    CReadNesting() { ++s_Depth; }
    ~CReadNesting() { --s_Depth; }
    CReadNesting(const CReadNesting&) = delete;
    CReadNesting& operator=(const CReadNesting&) = delete;

    bool IsTooDeep() const { return s_Depth > MaxFunctionNesting; }

private:
    static inline thread_local int s_Depth = 0;
};

} // namespace

template <>
const IFunction& GetDefaultFunction<IFunction>() {
    return TFunction<FunctionsLibrary::Identity>::GetInstance();
}

template <>
const IBinaryFunction& GetDefaultFunction<IBinaryFunction>() {
    return TBinaryFunction<FunctionsLibrary::Average>::GetInstance();
}

template <>
const IConstant& GetDefaultFunction<IConstant>() {
    static const CConstant zero(0.0);
    return zero;
}

template <class I>
bool TFunctionReader<I>::DeSerialize(const Serialization::IReadDataStream& input) {
    const CReadNesting nesting;
    if (nesting.IsTooDeep())
        return false;
    Core::TOwnership<I> read;
    if (m_Function && m_Function.IsOwned())
        // Owned, so nobody else reads it meanwhile; the flag stays with m_Function, so that an
        // object of another class doesn't destroy it before that object is read.
        read.Set(const_cast<I*>(m_Function.Get()), false);
    else if (m_Function)
        read.Set(m_Function->Clone(), true);
    if (!Serialization::TRuntimeDeSerializer<I>(read).DeSerialize(input))
        return false;
    if (read.Get() != m_Function.Get())
        m_Function.Set(read.Detach(), true);
    return true;
}

template <class I>
bool TFunctionChild<I>::Serialize(Serialization::IWriteDataStream& output, const char* name) const {
    return output.WriteObject(name, Serialization::CTypeSerializer(m_Function.Get()));
}

template <class I>
bool TFunctionChild<I>::Read(const Serialization::IReadDataStream& input, const char* name) {
    TFunctionReader<I> reader(m_Function);
    const bool read = input.ReadObject(name, reader);
    // A stored null reads well.
    if (!m_Function)
        Set(nullptr, false);
    return read;
}

template <class I>
bool TFunctionChild<I>::DeSerialize(const Serialization::IReadDataStream& input, const char* name) {
    if (Read(input, name) || input.IsIncremental())
        return true;
    Set(nullptr, false);
    return false;
}

template class TFunctionReader<IFunction>;
template class TFunctionReader<IBinaryFunction>;
template class TFunctionReader<IConstant>;
template class TFunctionChild<IFunction>;
template class TFunctionChild<IBinaryFunction>;
template class TFunctionChild<IConstant>;

} // namespace Lathe::Math
