#include "serialization/clipboard/ObjectClipboard.h"

#include "core/runtime/ObjectsFactory.h"
#include "serialization/Serializable.h"
#include "serialization/StreamValue.h"
#include "serialization/XmlDataObject.h"
#include "serialization/XmlText.h"
#include "serialization/clipboard/Clipboard.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace Lathe::Serialization {

namespace {

// A format name is the category between the two marks, then the format.
constexpr std::string_view CategoryBegin = "_MarrowSound_-[";
constexpr std::string_view CategoryEnd = "]-";
constexpr const char* DataTypeKey = "DataType";
constexpr const char* DataKey = "Data";

std::string MakeFormatName(const char* format, const char* category) {
    return std::string(CategoryBegin)
        .append(category ? category : "")
        .append(CategoryEnd)
        .append(format ? format : "");
}

bool IsMatch(std::string_view name, const char* format, const char* category) {
    const std::size_t begin = CategoryBegin.size();
    const std::size_t end = name.find(CategoryEnd, begin);
    if (!name.starts_with(CategoryBegin) || end == std::string_view::npos)
        return false;
    if (category && name.substr(begin, end - begin) != category)
        return false;
    const std::string tail(name.substr(end + CategoryEnd.size()));
    return !format || tail == format ||
           Runtime::CObjectsFactory::GetInstance().HasFactory(tail.c_str(), format);
}

} // namespace

bool CObjectClipboard::Clear() {
    return m_Clipboard.Clear();
}

bool CObjectClipboard::Copy(const ITypeSerializable& object, const char* format,
                            const char* category) {
    return CopyObject(object, object.GetClassId(), format, category);
}

bool CObjectClipboard::Copy(const ISerialize& object, const char* format, const char* category) {
    return CopyObject(object, nullptr, format, category);
}

bool CObjectClipboard::CopyObject(const ISerialize& object, const char* dataType,
                                  const char* format, const char* category) {
    CXmlDataObject document("ClipboardData");
    if (dataType)
        WriteValue(document, DataTypeKey, dataType);
    document.WriteObject(DataKey, object);
    char* text = nullptr;
    if (!document.GetText(text))
        return false;
    const std::unique_ptr<char[]> owner(text);
    const std::string name = MakeFormatName(format ? format : dataType, category);
    // The closing zero goes along.
    const auto size = static_cast<int>(std::strlen(text)) + 1;
    return m_Clipboard.SetData(text, size, name.c_str());
}

std::optional<std::string> CObjectClipboard::FindFormat(const char* format,
                                                        const char* category) const {
    for (const auto names = m_Clipboard.GetFormats(); !names->IsDone(); names->Next())
        if (IsMatch(names->GetValue(), format, category))
            return names->GetValue();
    return std::nullopt;
}

bool CObjectClipboard::LoadData(const char* format, const char* category,
                                CXmlDataObject& document) const {
    const std::optional<std::string> name = FindFormat(format, category);
    const std::optional<std::string> data =
        name ? m_Clipboard.GetData(name->c_str()) : std::nullopt;
    return data && data->size() <= MaxXmlSize + 1 &&
           document.Parse(data->data(), static_cast<int>(data->size()));
}

std::string CObjectClipboard::ReadDataType(const char* interfaceId, const char* category) const {
    CXmlDataObject document("Root");
    std::string type;
    if (interfaceId && LoadData(interfaceId, category, document))
        ReadValue(document, DataTypeKey, type);
    return type;
}

bool CObjectClipboard::HasData(const char* format, const char* category) const {
    return FindFormat(format, category).has_value();
}

bool CObjectClipboard::HasCompatibleData(const char* interfaceId, const char* category) const {
    const std::string type = ReadDataType(interfaceId, category);
    return Runtime::CObjectsFactory::GetInstance().HasFactory(type.c_str(), interfaceId);
}

bool CObjectClipboard::Paste(IDeSerialize& object, const char* format, const char* category) const {
    CXmlDataObject document("Root");
    return LoadData(format, category, document) && document.ReadObject(DataKey, object);
}

void* CObjectClipboard::CreatePasted(const char* interfaceId, const char* category) const {
    const std::string type = ReadDataType(interfaceId, category);
    return Runtime::CObjectsFactory::GetInstance().CreateObject(type.c_str(), interfaceId);
}

} // namespace Lathe::Serialization
