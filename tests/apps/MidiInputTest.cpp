// MIDI files and controller maps as users give them: times are right to the tick, and what is
// broken is refused with a line that names the part.
#include "apps/TestFiles.h"
#include "cairn-host/Controls.h"
#include "cairn-host/Equaliser.h"
#include "cairn-host/MidiFile.h"
#include "cairn-host/MidiMap.h"

#include <random>

namespace CairnHostTests {
namespace {

using namespace CairnHost;

// "SECONDS:BYTE,BYTE,BYTE " for each event, or what is wrong.
std::string Read(const std::string& bytes) {
    const auto events = ReadMidi(bytes);
    if (!events)
        return events.GetFault().m_Text;
    std::ostringstream text;
    for (const SMidiEvent& event : *events) {
        text << event.m_Seconds;
        for (int i = 0; i < event.m_Length; ++i)
            text << (i == 0 ? ':' : ',') << int{event.m_Data[static_cast<std::size_t>(i)]};
        text << ' ';
    }
    return text.str();
}

const std::string s_End = Bytes({0, 0xff, 0x2f, 0});
const std::string s_Controller = Bytes({0, 0xb0, 7, 100});

TEST(MidiFile, TimesFollowTheTempoInAllTracks) {
    // Half a second to tick 480, then a quarter of a second each 480.
    const std::string tempo = Bytes({0x83, 0x60, 0xff, 0x51, 3, 3, 0xd0, 0x90});
    const std::string notes = Bytes({0x87, 0x40, 0x91, 60, 1, 0x83, 0x60, 60, 0});
    EXPECT_EQ(Read(MakeMidi(1, {0x01, 0xe0}, {tempo + s_End, notes + s_End, s_Controller + s_End})),
              "0:176,7,100 0.75:145,60,1 1:145,60,0 ");
    // The same in one track, whose second event comes 480 ticks behind the tempo.
    EXPECT_EQ(Read(MakeMidi(0, {0x01, 0xe0}, {tempo + Bytes({0x83, 0x60, 0x91, 60, 1}) + s_End})),
              "0.75:145,60,1 ");
    // Frames of film know no tempo: 25 a second, of 40 ticks.
    EXPECT_EQ(Read(MakeMidi(0, {0xe7, 40}, {tempo + Bytes({0x82, 0x0e, 0xc1, 5}) + s_End})),
              "0.75:193,5 ");
}

TEST(MidiFile, WhatIsNoShortMessageIsPassedOver) {
    const std::string track =
        Bytes({0, 0xf0, 5, 1,    2, 3, 4,    0xf7, 0, 0xff, 1, 2,    'h', 'i', 0,   0xf7,
               1, 0xf8, 0, 0xf7, 0, 0, 0xf7, 2,    5, 0xf7, 0, 0xf0, 2,   6,   0xf7});
    EXPECT_EQ(Read(MakeMidi(0, {0, 96}, {track + s_Controller + s_End})),
              "0:248 0:240,6,247 0:176,7,100 ");
    // A kind of chunk that nobody knows yet, and a track without its end mark.
    std::string file = MakeMidi(0, {0, 96}, {s_Controller});
    file.insert(14, "XFIH" + Bytes({0, 0, 0, 2, 1, 2}));
    EXPECT_EQ(Read(file), "0:176,7,100 ");
}

TEST(MidiFile, FaultNamesThePart) {
    const auto track = [](std::initializer_list<int> bytes) {
        return MakeMidi(0, {0, 96}, {Bytes(bytes)});
    };
    const std::pair<std::string, const char*> cases[] = {
        {"", "isn't a MIDI file"},
        {MakeMidi(0, {0, 96}, {}).substr(0, 12), "its header is cut short"},
        {MakeMidi(2, {0, 96}, {s_End}), "has format 2: expected 0 or 1"},
        {MakeMidi(0, {0, 0}, {s_End}), "its quarter notes have no ticks"},
        {MakeMidi(0, {0x80, 40}, {s_End}), "its frames a second make no sense"},
        {MakeMidi(1, {0, 96}, {s_End, s_Controller}).substr(0, 30), "track 2: is cut short"},
        {track({0, 7, 100}), "track 1: an event has no status"},
        {track({0, 0xb0, 7}), "track 1: an event is cut short"},
        {track({0xff, 0xff, 0xff, 0xff, 0, 0xb0, 7, 1}), "track 1: an event is cut short"},
        {track({0, 0xf0, 0xff, 0xff, 0xff, 0x7f, 1}), "track 1: an event is cut short"},
        {track({0, 0xb0, 7, 0x90}), "track 1: an event has data beyond 127"},
        {track({0, 0xff, 0x51, 3, 0, 0, 0}), "track 1: a tempo makes no sense"},
        {track({0, 0xf3, 1}), "track 1: an event has a status that files don't hold"},
    };
    for (const auto& [bytes, fault] : cases)
        EXPECT_EQ(Read(bytes), fault);
    EXPECT_EQ(ReadMidiFile("/").GetFault().m_Text, "/: is a folder: expected a file");
}

TEST(MidiFile, AnyBytesAreReadOrRefused) {
    const std::string whole = MakeMidi(1, {0, 96}, {s_Controller + s_End, s_Controller + s_End});
    std::mt19937 generator(1);
    for (std::size_t i = 0; i < 20000; ++i) {
        std::string bytes = whole;
        bytes[generator() % bytes.size()] = static_cast<char>(generator());
        bytes.resize(i % (whole.size() + 1));
        const auto events = ReadMidi(bytes);
        double last = 0.0;
        for (std::size_t k = 0; events && k < events->size(); ++k) {
            EXPECT_GE((*events)[k].m_Seconds, last);
            EXPECT_TRUE((*events)[k].m_Length >= 1 && (*events)[k].m_Length <= 4);
            last = (*events)[k].m_Seconds;
        }
    }
}

TEST(MidiFile, WrittenEventsReadBackWithinATick) {
    const std::vector<SMidiEvent> events = {{0.0, 3, {0x90, 60, 1}},
                                            {1.23456, 1, {0xf8}},
                                            {1.23456, 2, {0xc3, 9}},
                                            {900.5, 4, {0xf0, 1, 2, 0xf7}}};
    for (const double tempo : {4.0, 97.3, 1000.0}) {
        const auto back = ReadMidi(WriteMidiFile(events, tempo, {7, 8}));
        ASSERT_TRUE(back) << back.GetFault().m_Text;
        ASSERT_EQ(back->size(), events.size());
        for (std::size_t i = 0; i < events.size(); ++i) {
            EXPECT_NEAR((*back)[i].m_Seconds, events[i].m_Seconds, 60.0 / tempo / 30000.0);
            EXPECT_EQ((*back)[i].m_Length, events[i].m_Length);
            EXPECT_EQ((*back)[i].m_Data, events[i].m_Data);
        }
    }
}

TEST(MidiMap, IsReadOrRefusedByThePart) {
    const CEqualiser equaliser;
    const CParameterTable table = DescribeControls(equaliser);
    const std::pair<const char*, const char*> cases[] = {
        {"Mid (1)=cc:7", "7\t7\t0\t\t\t"},
        {"0=cc:0,channel:16", "2\t0\t16\t\t\t"},
        {" bypass = CC:127 , channel: 1", "1\t127\t1\t\t\t"},
        {"High (2)=cc:7,max:-3 dB,min:+12,curve:square ROOT", "14\t7\t0\t12\t-3\tSquare Root"},
        {"Stereo Mode=cc:7,max:Mid-Side", "2\t7\t0\t\t1\t"},
        {"Mid (1)", "expected PARAMETER=cc:N, such as"},
        {"Loud=cc:7", "no parameter is called \"Loud\""},
        {"Mid (1)=cc", "\"cc\": expected cc:N"},
        {"Mid (1)=note:7", "\"note:7\": expected cc:N"},
        {"Mid (1)=cc:7,cc:8", "\"cc:8\": cc is there twice"},
        {"Mid (1)=cc:128", "cc \"128\": expected a whole number from 0 to 127"},
        {"Mid (1)=cc:7,channel:17", "channel \"17\": expected a whole number from 0 to 16"},
        {"Mid (1)=cc:7,curve:", "curve \"\": expected Log3, Log2,"},
        {"Mid (1)=cc:7,max:41", "max \"41\" is out of the range of \"Mid (1)\""},
    };
    for (const auto& [text, expected] : cases) {
        const TResult<std::string> map = ReadMidiMap(text, table);
        if (map)
            EXPECT_EQ(*map, expected);
        else
            EXPECT_TRUE(map.GetFault().m_Text.starts_with("--midi-map \"" + std::string(text) +
                                                          "\": " + expected))
                << map.GetFault().m_Text;
    }
}

} // namespace
} // namespace CairnHostTests
