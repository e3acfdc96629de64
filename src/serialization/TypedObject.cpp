#include "serialization/TypedObject.h"

#include "serialization/Base64.h"
#include "serialization/StreamValue.h"

namespace Lathe::Serialization {

namespace {

constexpr const char* IsNullKey = "isNull";
constexpr const char* TypeKey = "type";

} // namespace

std::string MakeContentKey(const char* classId) {
    const std::string text = std::string(PlainContentKey) + classId;
    return EncodeBase64(text.data(), static_cast<int>(text.size()));
}

bool ReadTypedContent(const IReadDataStream& input, const char* classId, IDeSerialize& object,
                      bool mustBeThere) {
    const std::string ownKey = MakeContentKey(classId);
    for (const char* key : {ownKey.c_str(), PlainContentKey}) {
        CDeSerializeProbe probe(object);
        const bool read = input.ReadObject(key, probe);
        if (probe.IsFound())
            return read;
    }
    return !mustBeThere && input.IsIncremental();
}

bool CTypeSerializer::Serialize(IWriteDataStream& output) const {
    const bool isNull = m_Object == nullptr;
    bool result = output.WriteBool(IsNullKey, &isNull);
    if (isNull)
        return result;
    const char* classId = m_Object->GetClassId();
    result &= output.WriteString(TypeKey, classId);
    const CSerializeProbe probe(*m_Object);
    bool written = output.WriteObject(MakeContentKey(classId).c_str(), probe);
    if (!probe.IsAccepted())
        written = output.WriteObject(PlainContentKey, *m_Object);
    return result && written;
}

STypeHeader ReadTypeHeader(const IReadDataStream& input) {
    STypeHeader header;
    const bool hasIsNull = input.ReadBool(IsNullKey, &header.m_IsNull);
    header.m_Valid = hasIsNull || input.IsIncremental();
    if (!header.m_Valid || header.m_IsNull)
        return header;
    header.m_HasType = ReadValue(input, TypeKey, header.m_Type);
    header.m_Valid = header.m_HasType || input.IsIncremental();
    return header;
}

bool CTypeDeSerializerTester::DeSerialize(const IReadDataStream& input) {
    bool isNull = false;
    std::string type;
    m_Incremental = input.IsIncremental();
    m_HasIsNull = input.ReadBool(IsNullKey, &isNull);
    m_HasType = ReadValue(input, TypeKey, type);
    return true;
}

} // namespace Lathe::Serialization
