// The streams under test, one of each kind, and short ways to write and read them.
#pragma once

#include "core/text/CharString.h"
#include "serialization/MemDataObject.h"
#include "serialization/XmlDataObject.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>
#include <string>

namespace Lathe::Serialization::Tests {

inline std::string GetText(const CXmlDataObject& document) {
    char* text = nullptr;
    EXPECT_TRUE(document.GetText(text));
    const std::unique_ptr<char[]> owner(text);
    return text;
}

inline bool Parse(CXmlDataObject& document, const std::string& text) {
    return document.Parse(text.data(), static_cast<int>(text.size()));
}

inline std::string ReadText(const IReadDataStream& input, const char* name) {
    char* text = nullptr;
    if (!input.ReadString(name, &text))
        return "(missing)";
    const std::unique_ptr<char[]> owner(text);
    return text;
}

inline int ReadInt(const IReadDataStream& input, const char* name, int missing = -1) {
    int value = missing;
    input.ReadInt(name, &value);
    return value;
}

// An XML document of each format, or a memory object.
class CStream {
public:
    static constexpr int Kinds = 4;

    explicit CStream(int kind) : m_Kind(kind), m_Xml("Root", kind < 3 ? kind : 0) {}

    IReadWriteDataStream& Get() {
        if (m_Kind < 3)
            return m_Xml;
        return m_Memory;
    }
    bool HasValue(const char* name) const {
        return m_Kind < 3 ? m_Xml.HasValue(name) : m_Memory.HasValue(name);
    }
    void RemoveValue(const char* name) {
        m_Kind < 3 ? m_Xml.RemoveValue(name) : m_Memory.RemoveValue(name);
    }
    void Clear() { m_Kind < 3 ? m_Xml.Clear() : m_Memory.Clear(); }
    // To text and back.
    void Reload() {
        if (m_Kind < 3) {
            const std::string text = GetText(m_Xml);
            ASSERT_TRUE(Parse(m_Xml, text)) << text;
            return;
        }
        CXmlDataObject file("File");
        ASSERT_TRUE(file.WriteObject("memory", m_Memory));
        m_Memory.Clear();
        ASSERT_TRUE(Parse(file, GetText(file)));
        ASSERT_TRUE(file.ReadObject("memory", m_Memory));
    }

private:
    int m_Kind;
    CXmlDataObject m_Xml;
    CMemDataObject m_Memory;
};

inline void ForEachKind(const std::function<void(CStream&)>& check) {
    for (int kind = 0; kind < CStream::Kinds; ++kind) {
        SCOPED_TRACE("stream kind " + std::to_string(kind));
        CStream stream(kind);
        check(stream);
    }
}

// Says that it holds only what changed.
class CChanges : public CMemDataObject {
public:
    bool IsIncremental() const override { return true; }
};

// Serializes and deserializes by functions.
class CFunctionObject : public ISerializable {
public:
    std::function<bool(IWriteDataStream&)> m_Write = [](IWriteDataStream&) { return true; };
    std::function<bool(const IReadDataStream&)> m_Read = [](const IReadDataStream&) {
        return true;
    };

    bool Serialize(IWriteDataStream& output) const override { return m_Write(output); }
    bool DeSerialize(const IReadDataStream& input) override { return m_Read(input); }
};

// Holds one int under "v"; a missing one is the default, -1.
class CIntObject : public ISerializable {
public:
    CIntObject(int value = -1) : m_Value(value) {}
    int m_Value;

    bool Serialize(IWriteDataStream& output) const override {
        return output.WriteInt("v", &m_Value);
    }
    bool DeSerialize(const IReadDataStream& input) override {
        if (input.ReadInt("v", &m_Value) || input.IsIncremental())
            return true;
        m_Value = -1;
        return false;
    }
};

} // namespace Lathe::Serialization::Tests
