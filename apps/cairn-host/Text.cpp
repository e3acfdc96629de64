#include "cairn-host/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace CairnHost {
namespace {

char ToLower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

} // namespace

std::string_view Trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string WithoutFullStop(std::string_view text) {
    return std::string(text.substr(0, text.find_last_not_of(". ") + 1));
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (ToLower(a[i]) != ToLower(b[i]))
            return false;
    }
    return true;
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    for (;;) {
        const std::size_t end = text.find(separator);
        pieces.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return pieces;
        text.remove_prefix(end + 1);
    }
}

std::optional<std::int64_t> ParseInteger(std::string_view text) {
    std::int64_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

std::string FormatNumber(double value) {
    char text[32];
    const bool isLargeWhole = std::abs(value) >= 1e6 && std::abs(value) < 1e15 &&
                              std::nearbyint(value) >= value && std::nearbyint(value) <= value;
    std::snprintf(text, sizeof text, isLargeWhole ? "%.0f" : "%.6g", value);
    return text;
}

std::string FormatExactly(double value) {
    if (std::isnan(value))
        return "nan"; // Without the sign, which means nothing to a reader.
    char text[40];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    return error == std::errc() ? std::string(text, end) : std::string();
}

std::string AlignColumns(const CTextTable& rows) {
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    }
    std::string text;
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            text += row[i];
            if (i + 1 < row.size())
                text += std::string(widths[i] - row[i].size() + 2, ' ');
        }
        text += '\n';
    }
    return text;
}

std::string OneLine(std::string_view text) {
    std::string line(text);
    for (char& letter : line) {
        if (static_cast<unsigned char>(letter) < 0x20 || letter == 0x7f)
            letter = '?';
    }
    constexpr std::size_t s_Kept = 500; // Bytes of each end.
    if (line.size() > 4 * s_Kept) {
        const auto isInside = [&line](std::size_t at) { return (line[at] & 0xc0) == 0x80; };
        std::size_t from = s_Kept;
        std::size_t to = line.size() - s_Kept;
        while (from > 0 && isInside(from)) // Letters of several bytes stay whole.
            --from;
        while (to < line.size() && isInside(to))
            ++to;
        line.replace(from, to - from, "[...]");
    }
    return line;
}

std::optional<std::vector<std::string>> SplitCsvLine(std::string_view line) {
    std::vector<std::string> fields;
    std::size_t at = 0;
    for (;;) {
        std::string field;
        while (at < line.size() && (line[at] == ' ' || line[at] == '\t'))
            ++at;
        if (at < line.size() && line[at] == '"') {
            ++at;
            for (;;) {
                const std::size_t quote = line.find('"', at);
                if (quote == std::string_view::npos)
                    return std::nullopt;
                field += line.substr(at, quote - at);
                at = quote + 1;
                if (at >= line.size() || line[at] != '"')
                    break;
                field += '"';
                ++at;
            }
            const std::size_t end = std::min(line.find(',', at), line.size());
            if (!Trim(line.substr(at, end - at)).empty())
                return std::nullopt;
            at = end;
        } else {
            const std::size_t end = std::min(line.find(',', at), line.size());
            field = Trim(line.substr(at, end - at));
            at = end;
        }
        fields.push_back(std::move(field));
        if (at >= line.size())
            return fields;
        ++at;
    }
}

std::string QuoteCsvField(std::string_view field) {
    if (field.find_first_of("\",\r\n") == std::string_view::npos)
        return std::string(field);
    std::string quoted = "\"";
    for (const char letter : field) {
        if (letter == '"')
            quoted += '"';
        quoted += letter;
    }
    return quoted + '"';
}

} // namespace CairnHost
