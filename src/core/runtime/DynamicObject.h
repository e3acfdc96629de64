// Objects whose class can be asked for at run time.
#pragma once

namespace Lathe::Runtime {

class IDynamicObject {
public:
    // The object as a pointer to the class that the id names, which is the object's own class id;
    // null for any other id and for null.
    virtual const void* QueryInterface(const char* id) const = 0;
    virtual void* QueryInterface(const char* id) = 0;
    virtual ~IDynamicObject() = default;
};

} // namespace Lathe::Runtime
