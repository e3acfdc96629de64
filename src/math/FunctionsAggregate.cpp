#include "math/FunctionsAggregate.h"

#include "math/FunctionChild.h"
#include "serialization/CollectionSerializers.h"
#include "serialization/TypedObject.h"

namespace Lathe::Math {

namespace {

constexpr const char* ListKey = "functions";
constexpr const char* EntryName = "item";

template <class I>
using TFunctions = std::vector<Core::TOwnershipWithClone<const I>>;

// The list as the vector that a serialiser writes.
template <class I>
class TStoredEntries {
public:
    explicit TStoredEntries(const TFunctions<I>& functions) : m_Functions(functions) {}

    int GetCount() const { return static_cast<int>(m_Functions.size()); }
    Serialization::CTypeSerializer GetElement(int index) const {
        return Serialization::CTypeSerializer(m_Functions[static_cast<std::size_t>(index)].Get());
    }

private:
    const TFunctions<I>& m_Functions;
};

// The list as the vector that a deserialiser fills; it remembers which entries were read.
template <class I>
class TReadEntries {
public:
    explicit TReadEntries(TFunctions<I>& functions)
        : m_Functions(functions), m_Read(functions.size(), 0) {}

    class CEntry : public Serialization::IDeSerialize {
    public:
        CEntry(Core::TOwnershipWithClone<const I>& function, char& read)
            : m_Function(function), m_Read(read) {}
        bool DeSerialize(const Serialization::IReadDataStream& input) override {
            m_Read = TFunctionReader<I>(m_Function).DeSerialize(input);
            return m_Read != 0;
        }

    private:
        Core::TOwnershipWithClone<const I>& m_Function;
        char& m_Read;
    };

    int GetCount() const { return static_cast<int>(m_Functions.size()); }
    void SetCount(int count) {
        m_Functions.resize(static_cast<std::size_t>(count));
        m_Read.resize(static_cast<std::size_t>(count), 0);
    }
    CEntry GetElement(int index) {
        const auto i = static_cast<std::size_t>(index);
        return CEntry(m_Functions[i], m_Read[i]);
    }

    void SetDefaults() {
        for (std::size_t i = 0; i < m_Functions.size(); ++i) {
            if (!m_Read[i])
                m_Functions[i].Set(&GetDefaultFunction<I>(), false);
        }
    }

private:
    TFunctions<I>& m_Functions;
    std::vector<char> m_Read;
};

} // namespace

template <class I>
bool TNFunctionsAggregate<I>::Serialize(Serialization::IWriteDataStream& output) const {
    using Entries = TStoredEntries<I>;
    const Entries entries(m_Functions);
    return output.WriteObject(ListKey,
                              Serialization::TVectorSerializer<Entries>(entries, EntryName));
}

template <class I>
bool TNFunctionsAggregate<I>::DeSerialize(const Serialization::IReadDataStream& input) {
    using Entries = TReadEntries<I>;
    Entries entries(m_Functions);
    Serialization::TDynamicVectorDeSerializer<Entries> reader(entries, EntryName);
    Serialization::CDeSerializeProbe probe(reader);
    if (input.ReadObject(ListKey, probe) || input.IsIncremental())
        return true;
    if (!probe.IsFound())
        entries.SetCount(0);
    entries.SetDefaults();
    return false;
}

template class TNFunctionsAggregate<IFunction>;

} // namespace Lathe::Math
