// Named values as an XML document: files, host state and the clipboard.
//
// Saving: make a CXmlDataObject, write into it, Save or GetText. Loading: make one, Load or Parse,
// and if that succeeds read from it.
#pragma once

#include "serialization/DataStream.h"

#include <memory>
#include <string>

class TiXmlDocument;
class TiXmlElement;

namespace Lathe::Serialization {

// How a document holds values. All files of this system have XmlAttributes.
enum EXmlFormat : int {
    // A value is an attribute, an object a child element, each named by the value's name.
    XmlAttributes = 0,
    // Both are child elements named by the value's name; a value's text is a text node.
    XmlElements = 1,
    // Both are child elements whose tag is the type, with the value's name as attribute "name".
    XmlTyped = 2
};

// A view of one element, which it doesn't own. Everything fails over a null element, for a null
// name, a null value (but a null text is written as an empty one), and where the format makes the
// value's name an XML name, for a name that is none: it would spoil the whole document.
class CXmlBaseDataObject : public IReadWriteDataStream {
public:
    CXmlBaseDataObject(TiXmlElement* element, int format) : m_Element(element), m_Format(format) {}

    bool IsIncremental() const override { return false; }
    bool ReadBool(const char* name, bool* value) const override;
    bool ReadInt(const char* name, int* value) const override;
    bool ReadFloat(const char* name, float* value) const override;
    bool ReadDouble(const char* name, double* value) const override;
    bool ReadString(const char* name, char** value) const override;
    // False also for a text that isn't Base64 by its length.
    bool ReadData(const char* name, char** data, int* size) const override;
    bool ReadObject(const char* name, IDeSerialize& object) const override;

    bool WriteBool(const char* name, const bool* value) override;
    bool WriteInt(const char* name, const int* value) override;
    bool WriteFloat(const char* name, const float* value) override;
    bool WriteDouble(const char* name, const double* value) override;
    bool WriteString(const char* name, const char* value) override;
    bool WriteData(const char* name, const void* data, int size) override;
    // What the object has written stays, even if it fails.
    bool WriteObject(const char* name, const ISerialize& object) override;

    // An attribute (format 0) or a child element.
    bool HasValue(const char* name) const;
    // The attribute (format 0) and the first child element.
    void RemoveValue(const char* name);
    // All children, and in format 0 all attributes.
    void Clear();

protected:
    TiXmlElement* m_Element;
    int m_Format;

private:
    bool CanHoldName(const char* name) const;
    TiXmlElement* FindChild(const char* name) const;
    // Null when there is no such value.
    const char* FindText(const char* name) const;
    // A new child in place of all values of that name.
    TiXmlElement& ReplaceChild(const char* tag, const char* name);
    bool WriteText(const char* tag, const char* name, const std::string& text);
    template <class T>
    bool ReadNumber(const char* name, T* value) const;
    template <class T>
    bool WriteNumber(const char* tag, const char* name, const T* value);
};

// Owns the document: a declaration, then the root element.
class CXmlDocHolder {
public:
    explicit CXmlDocHolder(const char* rootName);
    ~CXmlDocHolder();
    CXmlDocHolder(const CXmlDocHolder&) = delete;
    CXmlDocHolder& operator=(const CXmlDocHolder&) = delete;

    // That of a document that was read may be another than the one given. Valid until the next is.
    const char* GetRootName() const;

protected:
    // A new document with an empty root element of the name given at the construction.
    void ResetDocument();
    TiXmlElement* GetRoot() const;

    std::unique_ptr<TiXmlDocument> m_Document;

private:
    std::string m_RootName;
};

class CXmlDataObject : public CXmlDocHolder, public CXmlBaseDataObject {
public:
    explicit CXmlDataObject(const char* rootName, int format = XmlAttributes);

    // The root view becomes the first element of the file, whatever its name. A file that doesn't
    // exist, isn't well-formed, or is refused for its size (XmlText.h) gives false and an empty
    // document.
    bool Load(const char* path);
    // False if the file can't be written to its end, as on a full disk; it keeps what it held then
    // (AtomicFile.h).
    bool Save(const char* path) const;
    // As Load. The text ends at the length or at the first zero.
    bool Parse(const char* text, int length);
    // The whole document in a new array, which the caller deletes[].
    bool GetText(char*& text) const;

private:
    bool ParseText(std::string text);
    std::string Print() const;
};

} // namespace Lathe::Serialization
