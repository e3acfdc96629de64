#include "cairn-host/AutomationFile.h"

#include "cairn-host/Text.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace CairnHost {
namespace {

constexpr const char* s_Header = "frame,parameter,value";
constexpr const char* s_ByteOrderMark = "\xEF\xBB\xBF";
// A line this long is no automation; a binary file given by mistake has such lines.
constexpr std::size_t s_MaxLineLength = 1000;

bool IsHeader(const std::string& line) {
    const auto fields = SplitCsvLine(line);
    const auto expected = Split(s_Header, ',');
    if (!fields || fields->size() != expected.size())
        return false;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (!EqualsIgnoringCase((*fields)[i], expected[i]))
            return false;
    }
    return true;
}

TResult<SAutomationEvent> ReadEvent(const std::string& line, const CParameterTable& parameters) {
    const auto fields = SplitCsvLine(line);
    if (!fields)
        return SFault{"a quote isn't closed at the end of its field"};
    if (fields->size() != 3)
        return SFault{"has " + std::to_string(fields->size()) + " fields: expected " + s_Header};
    const auto frame = ParseInteger((*fields)[0]);
    if (!frame || *frame < 0)
        return SFault{"frame \"" + (*fields)[0] + "\": expected a whole number from 0 on"};
    const TResult<int> parameter = parameters.Find((*fields)[1]);
    if (!parameter)
        return parameter.GetFault();
    const TResult<double> value = parameters.ReadValue(*parameter, (*fields)[2]);
    if (!value)
        return value.GetFault();
    return SAutomationEvent{*frame, {*parameter, *value}};
}

} // namespace

TResult<std::vector<SAutomationEvent>> ReadAutomationFile(const std::string& path,
                                                          const CParameterTable& parameters) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        return SFault{path + ": is a folder: expected a file of automation"};
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return SFault{path + ": can't be read: " + std::strerror(errno)};

    std::vector<SAutomationEvent> events;
    // A device without an end has no line end either.
    char buffer[s_MaxLineLength + 2];
    bool hasHeader = false;
    for (std::int64_t number = 1; file.getline(buffer, sizeof buffer) || file.gcount() > 0;
         ++number) {
        std::string line(buffer, static_cast<std::size_t>(file.gcount()));
        const auto refuse = [&](const std::string& why) {
            std::string text = path;
            text.append(", line ").append(std::to_string(number)).append(": ").append(why);
            return SFault{std::move(text)};
        };
        if (!file && !file.eof())
            return refuse("is too long: expected " + std::string(s_Header));
        if (!file.eof())
            line.pop_back(); // The count tells of the line end, which is '\0' here.
        if (number == 1 && line.starts_with(s_ByteOrderMark))
            line.erase(0, std::strlen(s_ByteOrderMark));
        if (line.ends_with('\r'))
            line.pop_back();
        if (Trim(line).empty())
            continue;
        if (!hasHeader) {
            if (!IsHeader(line))
                return refuse("expected the header " + std::string(s_Header));
            hasHeader = true;
            continue;
        }
        const TResult<SAutomationEvent> event = ReadEvent(line, parameters);
        if (!event)
            return refuse(event.GetFault().m_Text);
        if (!events.empty() && event->m_Frame < events.back().m_Frame)
            return refuse("frame " + std::to_string(event->m_Frame) + " comes after frame " +
                          std::to_string(events.back().m_Frame) + ": expected ascending frames");
        events.push_back(*event);
    }
    if (file.bad())
        return SFault{path + ": can't be read: " + std::strerror(errno)};
    if (!hasHeader)
        return SFault{path + ": is empty: expected the header " + s_Header};
    return events;
}

} // namespace CairnHost
