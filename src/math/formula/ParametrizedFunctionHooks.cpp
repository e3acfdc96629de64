#include "math/formula/ParametrizedFunctionHooks.h"

#include <memory>

namespace Lathe::Math {

namespace {

template <class TMap>
class TNameIterator : public Containers::IConstValueIterator<const char*> {
public:
    explicit TNameIterator(const TMap& map) : m_Position(map.begin()), m_End(map.end()) {}

    bool IsDone() const override { return m_Position == m_End; }
    void Next() override { ++m_Position; }
    const char* GetValue() const override { return m_Position->first.c_str(); }

private:
    typename TMap::const_iterator m_Position;
    typename TMap::const_iterator m_End;
};

template <class TMap>
std::unique_ptr<Containers::IConstValueIterator<const char*>> MakeIterator(const TMap& map) {
    return std::make_unique<TNameIterator<TMap>>(map);
}

template <class TMap, class T>
void Add(TMap& map, std::string_view name, T& hook) {
    map[std::string(name)].push_back(&hook);
}

// The hooks of the name, of which there are some; null otherwise.
template <class TMap>
auto* Find(TMap& map, const char* name) {
    const auto found = name ? map.find(std::string_view(name)) : map.end();
    return found == map.end() ? nullptr : &found->second;
}

template <class TMap, class I>
bool SetProxies(TMap& map, const char* name, const I& function) {
    auto* proxies = Find(map, name);
    if (!proxies)
        return false;
    // Before the present one goes, which may hold it.
    std::unique_ptr<const I> clone(function.Clone());
    const I* shared = clone.get();
    proxies->front()->SetFunction(clone.release(), true);
    for (std::size_t i = 1; i < proxies->size(); ++i)
        (*proxies)[i]->SetFunction(shared, false);
    return true;
}

} // namespace

template <class I>
bool TParametrizedFunction<I>::SetParam(const char* name, double value) {
    auto* numbers = Find(m_Params, name);
    if (!numbers)
        return false;
    for (Number* number : *numbers)
        number->SetValue(value);
    return true;
}

template <class I>
bool TParametrizedFunction<I>::SetCurveParam(const char* name, const IFunction& function) {
    return SetProxies(m_CurveParams, name, function);
}

template <class I>
bool TParametrizedFunction<I>::SetSurfaceParam(const char* name, const IBinaryFunction& function) {
    return SetProxies(m_SurfaceParams, name, function);
}

template <class I>
auto TParametrizedFunction<I>::GetParamNames() const -> NameIterator* {
    return MakeIterator(m_Params).release();
}

template <class I>
auto TParametrizedFunction<I>::GetCurveParamNames() const -> NameIterator* {
    return MakeIterator(m_CurveParams).release();
}

template <class I>
auto TParametrizedFunction<I>::GetSurfaceParamNames() const -> NameIterator* {
    return MakeIterator(m_SurfaceParams).release();
}

template <class I>
void TParametrizedFunction<I>::SetFunction(I* function) {
    if (m_Function && function != m_Function.Get()) {
        m_Params.clear();
        m_CurveParams.clear();
        m_SurfaceParams.clear();
    }
    m_Function.Set(function);
}

template <class I>
void TParametrizedFunction<I>::AddParam(std::string_view name, Number& hook) {
    Add(m_Params, name, hook);
}

template <class I>
void TParametrizedFunction<I>::AddCurveParam(std::string_view name, CFunctionProxy& hook) {
    Add(m_CurveParams, name, hook);
}

template <class I>
void TParametrizedFunction<I>::AddSurfaceParam(std::string_view name, CBinaryFunctionProxy& hook) {
    Add(m_SurfaceParams, name, hook);
}

template class TParametrizedFunction<IConstant>;
template class TParametrizedFunction<IFunction>;
template class TParametrizedFunction<IBinaryFunction>;

} // namespace Lathe::Math
