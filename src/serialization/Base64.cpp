#include "serialization/Base64.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace Lathe::Serialization {

namespace {

constexpr char Alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t Padding = 64;

constexpr std::array<std::uint8_t, 256> MakeValues() {
    std::array<std::uint8_t, 256> values{};
    for (std::uint8_t i = 0; i < 64; ++i)
        values[static_cast<unsigned char>(Alphabet[i])] = i;
    values[static_cast<unsigned char>('=')] = Padding;
    return values;
}

constexpr std::array<std::uint8_t, 256> Values = MakeValues();

} // namespace

std::string EncodeBase64(const void* data, int size) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    const auto count = static_cast<std::size_t>(size);
    std::string text;
    text.reserve((count + 2) / 3 * 4);
    for (std::size_t i = 0; i < count; i += 3) {
        const std::size_t left = count - i;
        const unsigned group = static_cast<unsigned>(bytes[i]) << 16 |
                               (left > 1 ? static_cast<unsigned>(bytes[i + 1]) << 8 : 0U) |
                               (left > 2 ? static_cast<unsigned>(bytes[i + 2]) : 0U);
        text += Alphabet[group >> 18];
        text += Alphabet[group >> 12 & 63];
        text += left > 1 ? Alphabet[group >> 6 & 63] : '=';
        text += left > 2 ? Alphabet[group & 63] : '=';
    }
    return text;
}

std::unique_ptr<char[]> DecodeBase64(const char* text, int& size) {
    if (!text)
        return nullptr;
    const std::size_t length = std::strlen(text);
    if (length % 4 != 0 || length > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return nullptr;
    const auto valueAt = [text](std::size_t i) -> unsigned {
        return Values[static_cast<unsigned char>(text[i])];
    };
    std::size_t count = length / 4 * 3;
    auto data = std::make_unique<char[]>(count);
    for (std::size_t i = 0, out = 0; i < length; i += 4) {
        const unsigned group =
            valueAt(i) << 18 | valueAt(i + 1) << 12 | valueAt(i + 2) << 6 | (valueAt(i + 3) & 63U);
        data[out++] = static_cast<char>(group >> 16 & 255);
        data[out++] = static_cast<char>(group >> 8 & 255);
        data[out++] = static_cast<char>(group & 255);
    }
    if (length > 0 && valueAt(length - 2) == Padding)
        count -= 2;
    else if (length > 0 && valueAt(length - 1) == Padding)
        count -= 1;
    size = static_cast<int>(count);
    return data;
}

} // namespace Lathe::Serialization
