// Objects that save themselves to a stream of named values and load themselves from one.
#pragma once

namespace Lathe::Serialization {

class IWriteDataStream;
class IReadDataStream;

class ISerialize {
public:
    // True when every write succeeded; goes on after a failed one.
    virtual bool Serialize(IWriteDataStream& output) const = 0;
    virtual ~ISerialize() = default;
};

class IDeSerialize {
public:
    // A name that is missing means the default, or, in an incremental stream, no change. False
    // when something was missing from a stream that is not incremental.
    virtual bool DeSerialize(const IReadDataStream& input) = 0;
    virtual ~IDeSerialize() = default;
};

class ISerializable : public virtual ISerialize, public virtual IDeSerialize {};

// An object whose class the reader has to find out.
class ITypeSerializable : public virtual ISerializable {
public:
    // The fixed id of the object's class, in braces.
    virtual const char* GetClassId() const = 0;
};

} // namespace Lathe::Serialization
