// Names for small displays: words are shortened in an order that keeps a name readable.
#pragma once

#include <string>
#include <string_view>

namespace Lathe::Core {

// At most maxLength characters, none where that is negative. A text that fits stays as it is. What
// goes, as far as it must: blanks, punctuation if it is to go (but no brackets), vowels, doubled
// letters, then small letters within the words, each from the first word on; at last the end of the
// text. Letters are those of ASCII, whatever the locale.
std::string AbbreviateText(std::string_view text, int maxLength, bool removePunctuation);

} // namespace Lathe::Core
