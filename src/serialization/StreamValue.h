// One pair of names for the stream operations of every plain type, for templates over values.
#pragma once

#include "core/text/CharString.h"
#include "serialization/DataStream.h"

#include <memory>
#include <string>

namespace Lathe::Serialization {

inline bool WriteValue(IWriteDataStream& output, const char* name, bool value) {
    return output.WriteBool(name, &value);
}
inline bool WriteValue(IWriteDataStream& output, const char* name, int value) {
    return output.WriteInt(name, &value);
}
inline bool WriteValue(IWriteDataStream& output, const char* name, float value) {
    return output.WriteFloat(name, &value);
}
inline bool WriteValue(IWriteDataStream& output, const char* name, double value) {
    return output.WriteDouble(name, &value);
}
inline bool WriteValue(IWriteDataStream& output, const char* name, const char* value) {
    return output.WriteString(name, value);
}
inline bool WriteValue(IWriteDataStream& output, const char* name, const Core::CCharString& value) {
    return output.WriteString(name, value.GetText());
}

inline bool ReadValue(const IReadDataStream& input, const char* name, bool& value) {
    return input.ReadBool(name, &value);
}
inline bool ReadValue(const IReadDataStream& input, const char* name, int& value) {
    return input.ReadInt(name, &value);
}
inline bool ReadValue(const IReadDataStream& input, const char* name, float& value) {
    return input.ReadFloat(name, &value);
}
inline bool ReadValue(const IReadDataStream& input, const char* name, double& value) {
    return input.ReadDouble(name, &value);
}
inline bool ReadValue(const IReadDataStream& input, const char* name, Core::CCharString& value) {
    char* text = nullptr;
    if (!input.ReadString(name, &text))
        return false;
    const std::unique_ptr<char[]> owner(text);
    value = text;
    return true;
}
inline bool ReadValue(const IReadDataStream& input, const char* name, std::string& value) {
    Core::CCharString text;
    if (!ReadValue(input, name, text))
        return false;
    value = text.GetText();
    return true;
}

// The rule of every reader: a missing name means no change in an incremental stream, and succeeds;
// in any other it means the default, and fails.
template <class T>
bool ReadValueOrDefault(const IReadDataStream& input, const char* name, T& value,
                        const T& defaultValue) {
    if (ReadValue(input, name, value) || input.IsIncremental())
        return true;
    value = defaultValue;
    return false;
}

} // namespace Lathe::Serialization
