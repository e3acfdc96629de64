// What is asked of a text before it becomes an XML document, and of a name before it goes into one.
#pragma once

#include <cstddef>
#include <string_view>

namespace Lathe::Serialization {

// A letter (every byte beyond ASCII counts as one) or "_", then also digits, "-", "." and ":".
bool IsXmlName(std::string_view name);

// Whether every byte is a part of a whole UTF-8 sequence.
bool IsUtf8(std::string_view text);

// Longer texts are refused, and those with more elements, attributes and comments, each of which
// takes a few hundred bytes.
inline constexpr std::size_t MaxXmlSize = std::size_t{64} << 20;
inline constexpr int MaxXmlNodes = 1'000'000;
// Elements nested deeper are refused: they are parsed and read by recursion.
inline constexpr int MaxXmlDepth = 1000;
// Siblings and attributes are found by walking over those before them. A document for which the
// steps of finding each once add up to more, a few seconds' work, is refused.
inline constexpr long long MaxXmlLookupSteps = 100'000'000;

// False for a text that isn't well-formed in its tags and quotes, or that passes the limits above.
// The matching of names and the forms of references are left to the parser.
bool IsLoadableXml(std::string_view text);

} // namespace Lathe::Serialization
