// Codes of four characters, by which the host's plug-in library names things.
#pragma once

#include <cstdint>

// The first character is in the highest byte.
constexpr std::uint32_t MakeFourCharCode(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}
