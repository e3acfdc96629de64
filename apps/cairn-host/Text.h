// Small text helpers: whole-text numbers, trimming, and numbers as people write them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CairnHost {

// Without the blanks and tabs at both ends.
std::string_view Trim(std::string_view text);
// Without the blanks and full stops at its end.
std::string WithoutFullStop(std::string_view text);
// By ASCII letters.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);
// Pieces between separators; an empty text is one empty piece.
std::vector<std::string_view> Split(std::string_view text, char separator);

// Decimal digits with an optional '-'; nothing when any other letter is there, or it overflows.
std::optional<std::int64_t> ParseInteger(std::string_view text);

// Whole numbers as they are, others to six significant digits without trailing zeros: "0.01",
// "-40", "1000000".
std::string FormatNumber(double value);
// The shortest text that reads back as the same number; "-inf", "inf" and "nan" as such.
std::string FormatExactly(double value);

using CTextTable = std::vector<std::vector<std::string>>;
// A line for each row, columns aligned and two blanks apart. The first row is the longest.
std::string AlignColumns(const CTextTable& rows);

// One line that is safe to print: control characters become '?', and of a very long one the middle
// is left out.
std::string OneLine(std::string_view text);

// The fields of one line of comma-separated values. A field can stand in quotes, where "" is one
// quote. Nothing when a quote is left open or text follows a closing one.
std::optional<std::vector<std::string>> SplitCsvLine(std::string_view line);
// The field as it stands in a line, in quotes where it must.
std::string QuoteCsvField(std::string_view field);

} // namespace CairnHost
