// The loaded module under all that hosts and their validators do to plug-ins: whatever comes, its
// audio is finite and bounded for finite audio, its state comes back byte by byte, and it still
// equalises afterwards.
//
// CAIRN_TORTURE_SECONDS gives the time of all cases together, 10 by default; CAIRN_TORTURE_SEED
// repeats the rounds of another run.
#include "hosts/TorturedInstance.h"
#include "platform/TemporaryHome.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <functional>
#include <future>
#include <memory>
#include <thread>

namespace CairnTorture {
namespace {

using CairnHost::CModule;
using CClock = std::chrono::steady_clock;

// A full-scale sample through four stages of at most 40 dB each, with room for what rings.
constexpr float Bound = 1e9f;
constexpr int Lowest = std::numeric_limits<std::int32_t>::min();
constexpr int Highest = std::numeric_limits<std::int32_t>::max();
// Cases that go round until their time is over.
constexpr double TimedCases = 4.0;

double ReadVariable(const char* name, double otherwise) {
    const char* const text = std::getenv(name);
    return text ? std::atof(text) : otherwise;
}

class Torture : public testing::Test {
protected:
    void SetUp() override { Load(); }

    void Load() {
        m_Module = std::make_unique<CModule>();
        const CairnHost::CStatus status = m_Module->Load(CAIRN_MODULE_PATH);
        ASSERT_TRUE(status.IsOk()) << status.GetFault().m_Text;
    }
    // At least one round; a round draws all its chances from m_Random.
    void GoRound(const std::function<void()>& round) {
        const auto first = unsigned(ReadVariable("CAIRN_TORTURE_SEED", 1.0));
        const std::chrono::duration<double> share(ReadVariable("CAIRN_TORTURE_SECONDS", 10.0) /
                                                  TimedCases);
        const auto end = CClock::now() + share;
        unsigned seed = first;
        do {
            SCOPED_TRACE("CAIRN_TORTURE_SEED=" + std::to_string(seed));
            m_Random.seed(seed++);
            round();
        } while (CClock::now() < end && !HasFailure());
        std::printf("seeds %u to %u\n", first, seed - 1);
    }
    int Draw(int from, int to) { return std::uniform_int_distribution(from, to)(m_Random); }
    template <class T, std::size_t N>
    T DrawFrom(const T (&values)[N]) {
        return values[std::size_t(Draw(0, int(N) - 1))];
    }
    // Everywhere, but the frequencies below half the rate: no section is stable above it.
    void MoveAll(CTorturedInstance& instance) {
        static constexpr int ends[] = {Lowest, Highest, 0};
        const double travel = std::log(instance.GetFirstRate() * 0.499 / 20.0) / std::log(1100.0);
        const auto highest = int(double(Lowest) + 4294967295.0 * std::min(travel, 1.0));
        for (int control = 1; control <= instance.GetControlCount(); ++control) {
            const int top = control == 4 || control == 10 ? highest : Highest;
            instance.SetControl(control,
                                std::min(top, Draw(0, 1) ? DrawFrom(ends) : Draw(Lowest, Highest)));
        }
    }
    void CheckBlock(CTorturedInstance& instance, int frames,
                    const std::vector<RTASMIDIEvent>& events = {}) {
        ASSERT_EQ(instance.Render(frames, events), RTAS_OK);
        ASSERT_LE(instance.GetPeak(frames), Bound);
    }
    // Any bytes, in order, most of them at the beginning.
    std::vector<RTASMIDIEvent> DrawEvents(int frames) {
        std::vector<RTASMIDIEvent> events(
            std::size_t(frames > 0 && Draw(0, 9) == 0 ? Draw(0, 5000) : 0));
        for (int offset = 0; RTASMIDIEvent & event : events) {
            event = {offset, Draw(1, 4), {}};
            offset = std::min(frames - 1, offset + Draw(0, 1));
            for (std::uint8_t& byte : event.data)
                byte = std::uint8_t(Draw(0, 255));
        }
        return events;
    }
    // With the state of a new instance, at a rate that it didn't have, audio passes unchanged.
    void CheckRecovers(CTorturedInstance& instance, const std::string& fresh) {
        ASSERT_EQ(instance.SetChunk(fresh), RTAS_OK);
        instance.SetRate(50000);
        instance.FillNoise(m_Random);
        for (int block = 0; block < 16; ++block)
            CheckBlock(instance, 512);
        EXPECT_LE(instance.GetDistance(512), 1e-5f);
        EXPECT_EQ(instance.GetChunk(), fresh);
    }

    CTemporaryHome m_Home;
    std::unique_ptr<CModule> m_Module;
    std::mt19937 m_Random{1};
};

TEST_F(Torture, LeavesNothingBehind) {
    for (const bool forgets : {false, true, false, true}) {
        {
            CTorturedInstance instance(*m_Module);
            instance.FillNoise(m_Random);
            CheckBlock(instance, 512);
            if (forgets)
                instance.Forget(); // The module deletes what its host leaves.
        }
        m_Module.reset();
        ASSERT_EQ(::dlopen(CAIRN_MODULE_PATH, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
        Load();
    }
}

TEST_F(Torture, AnyRateAnyBlockAndAnySampleWithAllControlsAndMIDIMovedAtEveryBlock) {
    constexpr int rates[] = {44056, 44100, 48000, 48048, 88200, 96000, 176400, 192000, 384000};
    constexpr int lowRates[] = {8000, 11025, 22050, 37123};
    constexpr int sizes[] = {0, 1, 2, 7, 31, 64, 127, 509, 1024, 4099, 8191, 8192};
    constexpr float denormal = std::numeric_limits<float>::denorm_min();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    // A full-scale square, silence, denormals, the threshold of silence, an offset.
    constexpr float cycles[][2] = {{1.0f, -1.0f},
                                   {0.0f, -0.0f},
                                   {denormal, -1000 * denormal},
                                   {1e-10f, 1.1e-10f},
                                   {1.0f, 1.0f}};
    constexpr float wild[][2] = {{nan, 0.5f}, {HUGE_VALF, -HUGE_VALF}, {3.4e38f, -3.4e38f}};
    GoRound([&] {
        const bool isLow = Draw(0, 3) == 0;
        CTorturedInstance instance(*m_Module, isLow ? DrawFrom(lowRates) : DrawFrom(rates));
        const std::string fresh = instance.GetChunk();
        instance.Command("map-midi", "7\t20\t0\t\t\t"); // A controller moves Mid (1).
        const auto fill = [&](const float(&cycle)[2]) {
            instance.Fill(
                [&, i = 0, run = Draw(0, 1) ? 1 : 200]() mutable { return cycle[i++ / run % 2]; });
        };
        for (int block = 0; block < 100 && !HasFatalFailure(); ++block) {
            SCOPED_TRACE(block);
            if (block % 10 == 9 && !isLow)
                instance.SetRate(DrawFrom(rates));
            if (Draw(0, 1))
                instance.FillNoise(m_Random);
            else
                fill(cycles[Draw(0, 4)]);
            MoveAll(instance);
            const int frames = Draw(0, 1) ? DrawFrom(sizes) : Draw(0, 8192);
            CheckBlock(instance, frames, DrawEvents(frames));
        }
        fill(wild[Draw(0, 2)]);
        ASSERT_EQ(instance.Render(1024), RTAS_OK);
        CheckRecovers(instance, fresh);
    });
}

TEST_F(Torture, InstancesOnTwoThreadsDontKnowOfEachOther) {
    const auto run = [this](unsigned seed) {
        std::mt19937 random(seed);
        CTorturedInstance instance(*m_Module);
        std::vector<float> audio;
        for (int block = 0; block < 200; ++block) {
            instance.FillNoise(random);
            instance.SetControl(2 + block % 13, std::int32_t(random()));
            const auto frames = 1 + int(random() % 256);
            EXPECT_EQ(instance.Render(frames), RTAS_OK);
            const auto& output = instance.m_Outputs[0];
            audio.insert(audio.end(), output.begin(), output.begin() + frames);
        }
        return audio;
    };
    GoRound([&] {
        const auto seed = static_cast<unsigned>(m_Random());
        auto other = std::async(std::launch::async, run, seed);
        const auto first = run(seed + 1);
        EXPECT_TRUE(other.get() == run(seed));
        EXPECT_TRUE(first == run(seed + 1));
    });
}

TEST_F(Torture, ControlsAndStateFromOtherThreadsWhileBlocksRun) {
    GoRound([&] {
        CTorturedInstance instance(*m_Module, 48000, 512);
        const std::string fresh = instance.GetChunk();
        MoveAll(instance);
        // Before the first block.
        const std::string moved = instance.GetChunk();
        ASSERT_NE(moved, fresh);
        instance.FillNoise(m_Random);
        std::atomic<bool> ends{false};
        std::atomic<float> peak{0.0f};
        std::thread audio([&] {
            while (!ends) {
                EXPECT_EQ(instance.Render(64), RTAS_OK);
                peak = std::max(peak.load(), instance.GetPeak(64));
            }
        });
        std::thread automation([&, random = std::mt19937(m_Random())]() mutable {
            while (!ends)
                instance.SetControl(1 + int(random() % 14), std::int32_t(random()));
        });
        for (int change = 0; change < 40; ++change) {
            EXPECT_EQ(instance.SetChunk(instance.GetChunk()), RTAS_OK);
            EXPECT_EQ(instance.SetChunk(change % 2 ? fresh : moved), RTAS_OK);
        }
        ends = true;
        audio.join();
        automation.join();
        EXPECT_LE(peak, Bound);
        EXPECT_EQ(instance.SetChunk(moved), RTAS_OK);
        EXPECT_EQ(instance.GetChunk(), moved);
        CheckRecovers(instance, fresh);
    });
}

TEST_F(Torture, DamagedChunks) {
    CTorturedInstance instance(*m_Module);
    const std::string fresh = instance.GetChunk();
    instance.Command("map-midi", "7\t20\t0\t\t\t");
    instance.FillNoise(m_Random);
    GoRound([&] {
        for (int index = 0; const std::uint32_t code = instance.GetChunkCode(index); ++index) {
            MoveAll(instance);
            const std::string good = instance.GetChunk(code);
            std::string bad = good;
            if (Draw(0, 1))
                bad.resize(std::size_t(Draw(0, int(good.size()) + 9)), '\xff');
            if (Draw(0, 3) == 0 && bad.size() > ChunkHeader) // Random bytes behind a sound header.
                std::generate(bad.begin() + ChunkHeader, bad.end(),
                              [&] { return char(Draw(0, 255)); });
            for (int flip = Draw(0, 5); flip > 0 && !bad.empty(); --flip)
                bad[std::size_t(Draw(0, int(bad.size()) - 1))] ^= char(1 << Draw(0, 7));
            // A size that is true lets the damage through to the reader.
            if (const auto size = std::int32_t(bad.size()); Draw(0, 3) && bad.size() >= ChunkHeader)
                std::memcpy(bad.data(), &size, sizeof size);
            instance.SetChunk(bad, code);
            CheckBlock(instance, 64);
            ASSERT_EQ(instance.SetChunk(good, code), RTAS_OK);
            ASSERT_EQ(instance.GetChunk(code), good);
        }
    });
    CheckRecovers(instance, fresh);
}

} // namespace
} // namespace CairnTorture
