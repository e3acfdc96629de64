#include "serialization/NamedValues.h"

#include "serialization/CollectionSerializers.h"

#include <cstring>
#include <list>

namespace Lathe::Serialization {

namespace {

constexpr const char* ListKey = "namedValues";
constexpr const char* ItemBaseName = "item";

using Item = TSerializableNamedValue<Core::CCharString>;
using ItemList = std::list<Item>;

// Sorted, because the order of a dictionary changes when it is filled anew, and an incremental
// stream tells items apart by their index alone.
ItemList MakeList(const Containers::IConstNamedAttributes& attributes) {
    ItemList items;
    const auto values = attributes.GetValues();
    for (const auto names = attributes.GetNames(); !names->IsDone(); names->Next()) {
        items.emplace_back(names->GetValue(), values->GetValue());
        values->Next();
    }
    items.sort([](const Item& left, const Item& right) {
        return std::strcmp(left.GetName(), right.GetName()) < 0;
    });
    return items;
}

} // namespace

bool CNamedAttributesSerializer::Serialize(IWriteDataStream& output) const {
    const ItemList items = MakeList(m_Attributes);
    return output.WriteObject(ListKey, TStdContainerSerializer<ItemList>(items, ItemBaseName));
}

bool CNamedAttributesDeSerializer::DeSerialize(const IReadDataStream& input) {
    ItemList items = input.IsIncremental() ? MakeList(m_Attributes) : ItemList();
    TStdContainerDeSerializer<Item, ItemList> list(items, ItemBaseName);
    const bool result = ReadObjectOrKeep(input, ListKey, list);
    m_Attributes.Clear();
    for (const Item& item : items)
        m_Attributes.SetValue(item.GetName(), item.GetValue().GetText());
    return result;
}

} // namespace Lathe::Serialization
