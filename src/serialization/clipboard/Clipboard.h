// The place where programs leave bytes for each other, each under the name of its format.
#pragma once

#include "core/containers/Iterator.h"

#include <memory>
#include <optional>
#include <string>

namespace Lathe::System {

// For one thread. Null names are in no clipboard, and refused.
class IClipboard {
public:
    virtual bool Clear() = 0;
    // Adds a copy of the bytes to what is there, in place of those of the same format.
    virtual bool SetData(const void* data, int size, const char* format) = 0;
    virtual bool HasFormat(const char* format) const = 0;
    // Whatever another program may have left there; empty when the format is absent.
    virtual std::optional<std::string> GetData(const char* format) const = 0;
    virtual std::unique_ptr<Containers::IConstValueIterator<const char*>> GetFormats() const = 0;
    virtual ~IClipboard() = default;
};

} // namespace Lathe::System
