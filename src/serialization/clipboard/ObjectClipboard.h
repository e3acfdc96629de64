// Objects in the clipboard, as XML text under a format name that tells the product's category and
// the type of the object.
//
// Copied: Clear, then Copy. Pasted into an object that is there: Paste. Pasted as a new one:
// HasCompatibleData, CreatePasted, and Paste into that.
#pragma once

#include <optional>
#include <string>

namespace Lathe::System {
class IClipboard;
}

namespace Lathe::Serialization {

class CXmlDataObject;
class IDeSerialize;
class ISerialize;
class ITypeSerializable;

// A format is the id of a class or of an interface, or any other text that copy and paste agree on;
// null asks for any. Data of a class that the object factory makes under an interface also count as
// of that interface. A null category asks for any. The first data that match count, and no others;
// what the clipboard holds may come from anywhere, and gives false unless it is a document.
class IObjectClipboard {
public:
    virtual bool Clear() = 0;
    // Beside what is in the clipboard. Without a format the class of the object is the format.
    virtual bool Copy(const ITypeSerializable& object, const char* format,
                      const char* category) = 0;
    virtual bool Copy(const ISerialize& object, const char* format, const char* category) = 0;
    virtual bool HasData(const char* format, const char* category) const = 0;
    // Whether CreatePasted knows the class of the data.
    virtual bool HasCompatibleData(const char* interfaceId, const char* category) const = 0;
    // The result of the object's own reading; it is left alone when there is nothing to read.
    virtual bool Paste(IDeSerialize& object, const char* format, const char* category) const = 0;
    // A new object of the class of the data, which hasn't read them yet, as a pointer to the
    // interface; the caller's. Null on failure.
    virtual void* CreatePasted(const char* interfaceId, const char* category) const = 0;
    virtual ~IObjectClipboard() = default;
};

class CObjectClipboard : public IObjectClipboard {
public:
    // The clipboard isn't owned.
    explicit CObjectClipboard(System::IClipboard& clipboard) : m_Clipboard(clipboard) {}

    bool Clear() override;
    bool Copy(const ITypeSerializable& object, const char* format, const char* category) override;
    bool Copy(const ISerialize& object, const char* format, const char* category) override;
    bool HasData(const char* format, const char* category) const override;
    bool HasCompatibleData(const char* interfaceId, const char* category) const override;
    bool Paste(IDeSerialize& object, const char* format, const char* category) const override;
    void* CreatePasted(const char* interfaceId, const char* category) const override;

private:
    bool CopyObject(const ISerialize& object, const char* dataType, const char* format,
                    const char* category);
    // The first format name in the clipboard that matches.
    std::optional<std::string> FindFormat(const char* format, const char* category) const;
    bool LoadData(const char* format, const char* category, CXmlDataObject& document) const;
    // The class of the data; empty when there is none.
    std::string ReadDataType(const char* interfaceId, const char* category) const;

    System::IClipboard& m_Clipboard;
};

} // namespace Lathe::Serialization
