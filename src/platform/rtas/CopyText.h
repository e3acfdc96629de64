// How a text comes into room that a caller lends.
#pragma once

#include <algorithm>
#include <cstring>
#include <string_view>

// At most `length` characters, and a zero behind them; nothing for a negative length.
inline void CopyText(std::string_view source, char* text, long length) {
    if (!text || length < 0)
        return;
    const std::size_t count = std::min(source.size(), static_cast<std::size_t>(length));
    std::memcpy(text, source.data(), count);
    text[count] = '\0';
}
