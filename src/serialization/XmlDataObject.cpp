#include "serialization/XmlDataObject.h"

#include "core/text/CharString.h"
#include "core/text/NumberText.h"
#include "serialization/AtomicFile.h"
#include "serialization/Base64.h"
#include "serialization/Serializable.h"
#include "serialization/XmlText.h"

#include <tinyxml.h>

#include <charconv>
#include <cstddef>
#include <cstring>
#include <mutex>
#include <string_view>
#include <system_error>
#include <utility>

namespace Lathe::Serialization {

namespace {

constexpr const char* NameAttribute = "name";

constexpr const char* ObjectTag = "OBJECT";
constexpr const char* StringTag = "STRING";
constexpr const char* DataTag = "DATA";
constexpr const char* FloatTag = "FLOAT";
constexpr const char* DoubleTag = "DOUBLE";
constexpr const char* IntTag = "INTEGER";
constexpr const char* BoolTag = "BOOL";

bool IsBlank(const std::string& text) {
    return text.find_first_not_of(" \t\r\n\v\f") == std::string::npos;
}

// The parser drops a text node of blanks alone, but not a CDATA section.
std::unique_ptr<TiXmlText> MakeTextNode(const std::string& text) {
    auto node = std::make_unique<TiXmlText>(text);
    node->SetCDATA(IsBlank(text));
    return node;
}

const char* GetNodeText(const TiXmlElement& element) {
    for (const TiXmlNode* node = element.FirstChild(); node; node = node->NextSibling())
        if (const TiXmlText* text = node->ToText())
            return text->Value();
    return "";
}

// The end of a character reference whose digits begin at the position: hexadecimal, then ";". The
// position itself when there is none, or when no character has that number.
std::size_t FindReferenceEnd(const std::string& text, std::size_t position) {
    unsigned number = 0;
    const char* const first = text.data() + position;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(first, last, number, 16);
    const bool isReference =
        error == std::errc() && end != last && *end == ';' && number > 0 && number <= 0x10FFFF;
    return isReference ? static_cast<std::size_t>(end - text.data()) + 1 : position;
}

// A value that holds a character reference, "&#x" to ";", is stored with the reference as it is, so
// that it loads as the character. The printer escapes the "&" of every value; this takes that back.
std::string RestoreReferences(const std::string& text) {
    constexpr std::string_view Escaped = "&amp;#x";
    std::string result;
    result.reserve(text.size());
    std::size_t copied = 0;
    for (std::size_t found = text.find(Escaped); found != std::string::npos;
         found = text.find(Escaped, found + Escaped.size())) {
        const std::size_t digits = found + Escaped.size();
        const std::size_t end = FindReferenceEnd(text, digits);
        if (end == digits)
            continue;
        result.append(text, copied, found - copied)
            .append("&#x")
            .append(text, digits, end - digits);
        copied = end;
    }
    return result.append(text, copied);
}

} // namespace

bool CXmlBaseDataObject::CanHoldName(const char* name) const {
    return m_Element && name && (m_Format == XmlTyped || IsXmlName(name));
}

TiXmlElement* CXmlBaseDataObject::FindChild(const char* name) const {
    if (!m_Element || !name)
        return nullptr;
    if (m_Format != XmlTyped)
        return m_Element->FirstChildElement(name);
    for (TiXmlElement* child = m_Element->FirstChildElement(); child;
         child = child->NextSiblingElement()) {
        const char* childName = child->Attribute(NameAttribute);
        if (childName && std::strcmp(childName, name) == 0)
            return child;
    }
    return nullptr;
}

const char* CXmlBaseDataObject::FindText(const char* name) const {
    if (!m_Element || !name)
        return nullptr;
    if (m_Format == XmlAttributes)
        return m_Element->Attribute(name);
    const TiXmlElement* child = FindChild(name);
    return child ? GetNodeText(*child) : nullptr;
}

TiXmlElement& CXmlBaseDataObject::ReplaceChild(const char* tag, const char* name) {
    // A document written elsewhere may hold several, and a reader would find the first.
    while (HasValue(name))
        RemoveValue(name);
    auto child = std::make_unique<TiXmlElement>(m_Format == XmlTyped ? tag : name);
    if (m_Format == XmlTyped)
        child->SetAttribute(NameAttribute, name);
    TiXmlElement& appended = *child;
    m_Element->LinkEndChild(child.release());
    return appended;
}

bool CXmlBaseDataObject::WriteText(const char* tag, const char* name, const std::string& text) {
    if (!CanHoldName(name))
        return false;
    if (m_Format == XmlAttributes) {
        m_Element->SetAttribute(name, text.c_str());
        return true;
    }
    TiXmlElement& child = ReplaceChild(tag, name);
    if (!text.empty())
        child.LinkEndChild(MakeTextNode(text).release());
    return true;
}

template <class T>
bool CXmlBaseDataObject::ReadNumber(const char* name, T* value) const {
    const char* text = FindText(name);
    if (!text || !value)
        return false;
    Core::TextToNumber(text, *value);
    return true;
}

template <class T>
bool CXmlBaseDataObject::WriteNumber(const char* tag, const char* name, const T* value) {
    return value && WriteText(tag, name, Core::NumberToText(*value));
}

bool CXmlBaseDataObject::ReadBool(const char* name, bool* value) const {
    return ReadNumber(name, value);
}

bool CXmlBaseDataObject::ReadInt(const char* name, int* value) const {
    return ReadNumber(name, value);
}

bool CXmlBaseDataObject::ReadFloat(const char* name, float* value) const {
    return ReadNumber(name, value);
}

bool CXmlBaseDataObject::ReadDouble(const char* name, double* value) const {
    return ReadNumber(name, value);
}

bool CXmlBaseDataObject::ReadString(const char* name, char** value) const {
    const char* text = FindText(name);
    if (!text || !value)
        return false;
    *value = Core::NewText(text);
    return true;
}

bool CXmlBaseDataObject::ReadData(const char* name, char** data, int* size) const {
    const char* text = FindText(name);
    if (!text || !data || !size)
        return false;
    int count = 0;
    std::unique_ptr<char[]> decoded = DecodeBase64(text, count);
    if (!decoded)
        return false;
    *data = decoded.release();
    *size = count;
    return true;
}

bool CXmlBaseDataObject::ReadObject(const char* name, IDeSerialize& object) const {
    TiXmlElement* child = FindChild(name);
    return child && object.DeSerialize(CXmlBaseDataObject(child, m_Format));
}

bool CXmlBaseDataObject::WriteBool(const char* name, const bool* value) {
    return WriteNumber(BoolTag, name, value);
}

bool CXmlBaseDataObject::WriteInt(const char* name, const int* value) {
    return WriteNumber(IntTag, name, value);
}

bool CXmlBaseDataObject::WriteFloat(const char* name, const float* value) {
    return WriteNumber(FloatTag, name, value);
}

bool CXmlBaseDataObject::WriteDouble(const char* name, const double* value) {
    return WriteNumber(DoubleTag, name, value);
}

bool CXmlBaseDataObject::WriteString(const char* name, const char* value) {
    return WriteText(StringTag, name, value ? value : "");
}

bool CXmlBaseDataObject::WriteData(const char* name, const void* data, int size) {
    if (size < 0 || (!data && size > 0))
        return false;
    return WriteText(DataTag, name, EncodeBase64(data, size));
}

bool CXmlBaseDataObject::WriteObject(const char* name, const ISerialize& object) {
    if (!CanHoldName(name))
        return false;
    CXmlBaseDataObject view(&ReplaceChild(ObjectTag, name), m_Format);
    return object.Serialize(view);
}

bool CXmlBaseDataObject::HasValue(const char* name) const {
    if (m_Format == XmlAttributes && m_Element && name && m_Element->Attribute(name))
        return true;
    return FindChild(name) != nullptr;
}

void CXmlBaseDataObject::RemoveValue(const char* name) {
    if (m_Format == XmlAttributes && m_Element && name)
        m_Element->RemoveAttribute(name);
    if (TiXmlElement* child = FindChild(name))
        m_Element->RemoveChild(child);
}

void CXmlBaseDataObject::Clear() {
    if (!m_Element)
        return;
    m_Element->Clear();
    if (m_Format == XmlAttributes)
        while (const TiXmlAttribute* attribute = m_Element->FirstAttribute())
            m_Element->RemoveAttribute(std::string(attribute->Name()));
}

CXmlDocHolder::CXmlDocHolder(const char* rootName) : m_RootName(rootName ? rootName : "") {
    ResetDocument();
}

CXmlDocHolder::~CXmlDocHolder() = default;

const char* CXmlDocHolder::GetRootName() const {
    const TiXmlElement* root = GetRoot();
    return root ? root->Value() : "";
}

void CXmlDocHolder::ResetDocument() {
    m_Document = std::make_unique<TiXmlDocument>();
    m_Document->LinkEndChild(std::make_unique<TiXmlDeclaration>("1.0", "utf-8", "").release());
    m_Document->LinkEndChild(std::make_unique<TiXmlElement>(m_RootName).release());
}

TiXmlElement* CXmlDocHolder::GetRoot() const {
    return m_Document->RootElement();
}

CXmlDataObject::CXmlDataObject(const char* rootName, int format)
    : CXmlDocHolder(rootName), CXmlBaseDataObject(GetRoot(), format) {}

bool CXmlDataObject::Load(const char* path) {
    std::string text;
    // Without a text, parsing fails and empties the document.
    ReadFile(path, MaxXmlSize, text);
    return ParseText(std::move(text));
}

bool CXmlDataObject::Parse(const char* text, int length) {
    return ParseText(text && length > 0 ? std::string(text, static_cast<std::size_t>(length))
                                        : std::string());
}

bool CXmlDataObject::ParseText(std::string text) {
    constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
    // Blanks in text nodes belong to the values. The switch is one for the process.
    static std::once_flag keepBlanks;
    std::call_once(keepBlanks, TiXmlBase::SetCondenseWhiteSpace, false);
    text.resize(std::strlen(text.c_str()));
    if (text.starts_with(Utf8Mark))
        text.erase(0, Utf8Mark.size());

    bool loaded = IsLoadableXml(text);
    if (loaded) {
        // A text that says it is UTF-8 and isn't is read by single bytes, which keeps them all.
        const TiXmlEncoding encoding =
            IsUtf8(text) ? TIXML_DEFAULT_ENCODING : TIXML_ENCODING_LEGACY;
        m_Document = std::make_unique<TiXmlDocument>();
        m_Document->Parse(text.c_str(), nullptr, encoding);
        loaded = !m_Document->Error() && GetRoot();
    }
    if (!loaded)
        ResetDocument();
    m_Element = GetRoot();
    return loaded;
}

std::string CXmlDataObject::Print() const {
    TiXmlPrinter printer;
    m_Document->Accept(&printer);
    return RestoreReferences(printer.Str());
}

bool CXmlDataObject::Save(const char* path) const {
    return WriteFile(path, Print());
}

bool CXmlDataObject::GetText(char*& text) const {
    text = Core::NewText(Print());
    return true;
}

} // namespace Lathe::Serialization
