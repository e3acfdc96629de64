// Binary data as text: the alphabet of RFC 4648 with "=" padding and no line breaks.
#pragma once

#include <memory>
#include <string>

namespace Lathe::Serialization {

// Four characters for each three bytes begun. The size is in bytes and not below zero.
std::string EncodeBase64(const void* data, int size);

// Null when the text is null or its length is no multiple of 4; an empty text gives an empty array.
// Characters outside the alphabet aren't detected.
std::unique_ptr<char[]> DecodeBase64(const char* text, int& size);

} // namespace Lathe::Serialization
