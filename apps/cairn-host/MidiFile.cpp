#include "cairn-host/MidiFile.h"

#include "cairn-host/WholeFile.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace CairnHost {
namespace {

constexpr double s_DefaultQuarter = 500000.0; // Microseconds: 120 a minute.
constexpr double s_MicrosecondsPerMinute = 60e6;
constexpr std::uint8_t s_Meta = 0xff;
constexpr std::uint8_t s_SystemExclusive = 0xf0;
constexpr std::uint8_t s_Escape = 0xf7; // What follows is sent as it stands.
constexpr std::uint8_t s_MetaText = 0x01;
constexpr std::uint8_t s_MetaEndOfTrack = 0x2f;
constexpr std::uint8_t s_MetaTempo = 0x51;
constexpr std::uint8_t s_MetaMeter = 0x58;

// Fine enough to meet a sample at any usual tempo and rate, nearly.
constexpr int s_TicksPerQuarter = 30000;
constexpr std::int64_t s_MaxDelta = 0x0fffffff;

// Takes numbers, highest byte first, from the front of some bytes; once they don't suffice it has
// failed, and gives zeros.
class CByteReader {
public:
    explicit CByteReader(std::string_view bytes) : m_Bytes(bytes) {}

    bool IsAtEnd() const { return m_Bytes.empty(); }
    bool HasFailed() const { return m_Failed; }

    std::string_view Take(std::size_t count) {
        if (count > m_Bytes.size()) {
            m_Failed = true;
            m_Bytes = {};
            return {};
        }
        const std::string_view taken = m_Bytes.substr(0, count);
        m_Bytes.remove_prefix(count);
        return taken;
    }
    std::uint32_t Number(std::size_t bytes) {
        std::uint32_t number = 0;
        for (const char byte : Take(bytes))
            number = number << 8 | static_cast<std::uint8_t>(byte);
        return number;
    }
    std::uint8_t Byte() { return static_cast<std::uint8_t>(Number(1)); }
    // Seven bits a byte, at most four bytes.
    std::uint32_t Variable() {
        std::uint32_t number = 0;
        for (int i = 0; i < 4; ++i) {
            const std::uint8_t byte = Byte();
            number = number << 7 | (byte & 0x7f);
            if (byte < 0x80)
                return number;
        }
        m_Failed = true;
        return 0;
    }
    bool NextIsStatus() const {
        return !m_Bytes.empty() && static_cast<std::uint8_t>(m_Bytes.front()) >= 0x80;
    }

private:
    std::string_view m_Bytes;
    bool m_Failed = false;
};

// Of one tick, what was read first comes first.
struct STimed {
    bool operator<(const STimed& other) const {
        return m_Tick != other.m_Tick ? m_Tick < other.m_Tick : m_Order < other.m_Order;
    }
    std::int64_t m_Tick;
    std::size_t m_Order;
};

struct STempoChange : STimed {
    double m_Quarter; // Microseconds.
};

struct STrackEvent : STimed {
    SMidiEvent m_Event;
};

struct SSong {
    // Either of them is 0.
    int m_TicksPerQuarter = 0;
    double m_TicksPerSecond = 0.0;
    std::vector<STrackEvent> m_Events;
    std::vector<STempoChange> m_Tempos;
};

int GetDataLength(std::uint8_t status) {
    const int kind = status & 0xf0;
    return kind == 0xc0 || kind == 0xd0 ? 1 : 2;
}

void AddMessage(SSong& song, std::int64_t tick, std::string_view bytes) {
    SMidiEvent event = {0.0, static_cast<int>(bytes.size()), {}};
    // What begins without a status is the rest of a message that came in pieces.
    if (bytes.empty() || bytes.size() > event.m_Data.size() ||
        static_cast<std::uint8_t>(bytes.front()) < 0x80)
        return;
    std::copy(bytes.begin(), bytes.end(), event.m_Data.begin());
    song.m_Events.push_back({{tick, song.m_Events.size()}, event});
}

// What is wrong with the track, or nothing.
const char* ReadTrack(std::string_view bytes, SSong& song) {
    CByteReader reader(bytes);
    std::int64_t tick = 0;
    std::uint8_t running = 0;
    while (!reader.IsAtEnd()) {
        tick += reader.Variable();
        const std::uint8_t status = reader.NextIsStatus() ? reader.Byte() : running;
        if (reader.HasFailed() || (status == 0 && reader.IsAtEnd()))
            return "an event is cut short";
        if (status == 0)
            return "an event has no status";
        if (status < s_SystemExclusive) {
            running = status;
            std::string message(1, static_cast<char>(status));
            message += reader.Take(static_cast<std::size_t>(GetDataLength(status)));
            for (std::size_t i = 1; i < message.size(); ++i) {
                if (static_cast<std::uint8_t>(message[i]) >= 0x80)
                    return "an event has data beyond 127";
            }
            AddMessage(song, tick, reader.HasFailed() ? std::string_view() : message);
        } else if (status == s_Meta || status == s_SystemExclusive || status == s_Escape) {
            running = 0;
            const std::uint8_t type = status == s_Meta ? reader.Byte() : std::uint8_t{0};
            const std::string_view data = reader.Take(reader.Variable());
            if (status == s_Escape)
                AddMessage(song, tick, data);
            else if (status == s_SystemExclusive)
                AddMessage(song, tick, static_cast<char>(status) + std::string(data));
            if (status == s_Meta && type == s_MetaEndOfTrack)
                return reader.HasFailed() ? "an event is cut short" : nullptr;
            if (status == s_Meta && type == s_MetaTempo && !reader.HasFailed()) {
                const std::uint32_t quarter = CByteReader(data).Number(3);
                if (data.size() != 3 || quarter == 0)
                    return "a tempo makes no sense";
                song.m_Tempos.push_back(
                    {{tick, song.m_Tempos.size()}, static_cast<double>(quarter)});
            }
        } else {
            return "an event has a status that files don't hold";
        }
        if (reader.HasFailed())
            return "an event is cut short";
    }
    return nullptr; // Without its end mark, but whole.
}

const char* ReadDivision(std::uint32_t division, SSong& song) {
    if ((division & 0x8000) == 0) {
        song.m_TicksPerQuarter = static_cast<int>(division);
        return division == 0 ? "its quarter notes have no ticks" : nullptr;
    }
    const int frames = 256 - static_cast<int>(division >> 8);
    const int ticks = static_cast<int>(division & 0xff);
    if ((frames != 24 && frames != 25 && frames != 29 && frames != 30) || ticks == 0)
        return "its frames a second make no sense";
    // 29 stands for the drop-frame rate.
    song.m_TicksPerSecond = (frames == 29 ? 30000.0 / 1001.0 : frames) * ticks;
    return nullptr;
}

// What is wrong with the file, or an empty text.
std::string ReadSong(std::string_view bytes, SSong& song) {
    CByteReader reader(bytes);
    if (reader.Take(4) != "MThd")
        return "isn't a MIDI file";
    CByteReader header(reader.Take(reader.Number(4)));
    const std::uint32_t format = header.Number(2);
    const std::uint32_t tracks = header.Number(2);
    const std::uint32_t division = header.Number(2);
    if (header.HasFailed() || reader.HasFailed())
        return "its header is cut short";
    if (format > 1)
        return "has format " + std::to_string(format) + ": expected 0 or 1";
    if (const char* fault = ReadDivision(division, song))
        return fault;
    for (std::uint32_t track = 1; track <= tracks;) {
        const std::string where = "track " + std::to_string(track) + ": ";
        const std::string_view type = reader.Take(4);
        const std::string_view body = reader.Take(reader.Number(4));
        if (reader.HasFailed())
            return where + "is cut short";
        if (type != "MTrk") // Kinds of chunks that are to come are passed over.
            continue;
        if (const char* fault = ReadTrack(body, song))
            return where + fault;
        ++track;
    }
    return {};
}

void ComputeSeconds(SSong& song) {
    std::sort(song.m_Events.begin(), song.m_Events.end());
    std::sort(song.m_Tempos.begin(), song.m_Tempos.end());
    auto change = song.m_Tempos.begin();
    STempoChange tempo = {{0, 0}, s_DefaultQuarter};
    double seconds = 0.0; // At the tempo's tick.
    const auto at = [&](std::int64_t tick) {
        return seconds + static_cast<double>(tick - tempo.m_Tick) * tempo.m_Quarter /
                             (1e6 * song.m_TicksPerQuarter);
    };
    for (STrackEvent& event : song.m_Events) {
        if (song.m_TicksPerQuarter == 0) {
            event.m_Event.m_Seconds = static_cast<double>(event.m_Tick) / song.m_TicksPerSecond;
            continue;
        }
        for (; change != song.m_Tempos.end() && change->m_Tick <= event.m_Tick; ++change) {
            seconds = at(change->m_Tick);
            tempo = *change;
        }
        event.m_Event.m_Seconds = at(event.m_Tick);
    }
}

void AppendNumber(std::string& bytes, std::int64_t number, int count) {
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes += static_cast<char>(number >> shift & 0xff);
}

void AppendVariable(std::string& bytes, std::int64_t number) {
    int shift = 0;
    while (number >> (shift + 7) != 0)
        shift += 7;
    for (; shift > 0; shift -= 7)
        bytes += static_cast<char>((number >> shift & 0x7f) | 0x80);
    bytes += static_cast<char>(number & 0x7f);
}

void AppendMeta(std::string& bytes, std::uint8_t type, std::initializer_list<std::int64_t> data) {
    bytes += static_cast<char>(s_Meta);
    bytes += static_cast<char>(type);
    bytes += static_cast<char>(data.size());
    for (const std::int64_t byte : data)
        bytes += static_cast<char>(byte & 0xff);
}

// The time to the next event; empty texts stand where it is longer than one number can tell.
void AppendGap(std::string& bytes, std::int64_t ticks) {
    for (; ticks > s_MaxDelta; ticks -= s_MaxDelta) {
        AppendVariable(bytes, s_MaxDelta);
        AppendMeta(bytes, s_MetaText, {});
    }
    AppendVariable(bytes, ticks);
}

} // namespace

TResult<std::vector<SMidiEvent>> ReadMidi(std::string_view bytes) {
    SSong song;
    if (std::string fault = ReadSong(bytes, song); !fault.empty())
        return SFault{std::move(fault)};
    ComputeSeconds(song);
    std::vector<SMidiEvent> events;
    for (const STrackEvent& event : song.m_Events)
        events.push_back(event.m_Event);
    return events;
}

TResult<std::vector<SMidiEvent>> ReadMidiFile(const std::string& path) {
    const TResult<std::string> bytes = ReadWholeFile(path);
    if (!bytes)
        return bytes.GetFault();
    TResult<std::vector<SMidiEvent>> events = ReadMidi(*bytes);
    if (!events)
        return SFault{path + ": " + events.GetFault().m_Text};
    return events;
}

std::string WriteMidiFile(const std::vector<SMidiEvent>& events, double tempo, SMeter meter) {
    const std::int64_t quarter = std::llround(s_MicrosecondsPerMinute / tempo);
    std::string track(1, '\0');
    AppendMeta(track, s_MetaTempo, {quarter >> 16, quarter >> 8, quarter});
    track += '\0';
    const unsigned denominator = static_cast<unsigned>(meter.m_Denominator);
    AppendMeta(track, s_MetaMeter, {meter.m_Numerator, std::bit_width(denominator) - 1, 24, 8});
    std::int64_t last = 0;
    for (const SMidiEvent& event : events) {
        // By the tempo as the file holds it, in whole microseconds.
        const std::int64_t tick =
            std::llround(event.m_Seconds * 1e6 * s_TicksPerQuarter / static_cast<double>(quarter));
        AppendGap(track, std::max<std::int64_t>(tick - last, 0));
        last = tick;
        if (event.m_Data[0] >= s_SystemExclusive) {
            track += static_cast<char>(s_Escape);
            track += static_cast<char>(event.m_Length);
        }
        track.append(event.m_Data.begin(), event.m_Data.begin() + event.m_Length);
    }
    track += '\0';
    AppendMeta(track, s_MetaEndOfTrack, {});

    std::string bytes = "MThd";
    AppendNumber(bytes, 6, 4);
    AppendNumber(bytes, 0, 2);
    AppendNumber(bytes, 1, 2);
    AppendNumber(bytes, s_TicksPerQuarter, 2);
    bytes += "MTrk";
    AppendNumber(bytes, static_cast<std::int64_t>(track.size()), 4);
    return bytes + track;
}

} // namespace CairnHost
