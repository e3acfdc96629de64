// The streams under test, one of each kind, and short ways to write and read them.
#pragma once

#include "serialization/MemDataObject.h"
#include "serialization/StreamValue.h"
#include "serialization/TypedObject.h"
#include "serialization/XmlDataObject.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace Lathe::Serialization::Tests {

inline std::string GetText(const CXmlDataObject& document) {
    char* text = nullptr;
    return document.GetText(text) ? std::unique_ptr<char[]>(text).get() : "(none)";
}

inline bool Parse(CXmlDataObject& document, const std::string& text) {
    return document.Parse(text.data(), static_cast<int>(text.size()));
}

inline std::string ReadText(const IReadDataStream& input, const char* name) {
    std::string text = "(missing)";
    ReadValue(input, name, text);
    return text;
}

inline int ReadInt(const IReadDataStream& input, const char* name, int missing = -1) {
    input.ReadInt(name, &missing);
    return missing;
}

// Hands each check an XML document of each format and a memory object, with a function that takes
// it to text and back.
template <class TCheck>
void ForEachStream(const TCheck& check) {
    for (int format = 0; format < 3; ++format) {
        SCOPED_TRACE("XML format " + std::to_string(format));
        CXmlDataObject document("Root", format);
        check(document, [&] { ASSERT_TRUE(Parse(document, GetText(document))); });
    }
    SCOPED_TRACE("memory");
    CMemDataObject memory;
    check(memory, [&] {
        CXmlDataObject file("File");
        ASSERT_TRUE(file.WriteObject("memory", memory));
        ASSERT_TRUE(Parse(file, GetText(file)) && file.ReadObject("memory", memory));
    });
}

// Hands each check what a stream of each kind gives back of the object, found by its class id.
template <class I, class TCheck>
void ForEachReading(const I& original, const TCheck& check) {
    ForEachStream([&](auto& stream, const auto& reload) {
        ASSERT_TRUE(stream.WriteObject("object", CTypeSerializer(&original)));
        reload();
        Core::TOwnership<I> read;
        TRuntimeDeSerializer<I> reader(read);
        ASSERT_TRUE(stream.ReadObject("object", reader) && read);
        check(*read);
    });
}

// A stream that says that it holds only what changed.
template <class TStream>
class TChanges : public TStream {
public:
    using TStream::TStream;
    bool IsIncremental() const override { return true; }
};
using CChanges = TChanges<CMemDataObject>;

// What the function makes of a document, and of one that holds only changes.
template <class TRead>
std::string ReadBoth(const std::string& text, const TRead& read) {
    CXmlDataObject full("Root");
    TChanges<CXmlDataObject> changes("Root");
    EXPECT_TRUE(Parse(full, text) && Parse(changes, text));
    return read(full) + ", " + read(changes);
}

// Holds one int under "v", and can be made to fail. A missing one is the default, -1.
struct CIntObject : virtual ISerializable {
    CIntObject(int value = -1, bool result = true) : m_Value(value), m_Result(result) {}
    bool Serialize(IWriteDataStream& output) const override {
        return WriteValue(output, "v", m_Value) && m_Result;
    }
    bool DeSerialize(const IReadDataStream& input) override {
        return ReadValueOrDefault(input, "v", m_Value, -1) && m_Result;
    }
    int m_Value;
    bool m_Result;
};

} // namespace Lathe::Serialization::Tests
