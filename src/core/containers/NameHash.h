// The hash under which named things are kept, for the standard library's hash maps.
#pragma once

#include <cstddef>
#include <string_view>

namespace Lathe::Containers {

// Buckets that a map of names starts with.
inline constexpr std::size_t NameMapBuckets = 193;

// h = 5 * h + c over the bytes of the name.
struct CNameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const {
        std::size_t hash = 0;
        for (const char c : name)
            hash = 5 * hash + static_cast<std::size_t>(static_cast<unsigned char>(c));
        return hash;
    }
};

} // namespace Lathe::Containers
