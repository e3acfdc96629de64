#include "cairn-host/Demo.h"

#include "cairn-host/AudioWriter.h"
#include "cairn-host/Interrupt.h"
#include "cairn-host/Render.h"
#include "cairn-host/Response.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>

namespace CairnHost {
namespace {

constexpr int s_SampleRate = 48000;
constexpr double s_Seconds = 6.0;
constexpr double s_FadeSeconds = 0.8;
constexpr double s_PeakLevel = -9.0; // dB of full scale.
constexpr double s_TwoPi = 6.283185307179586;

// A spread chord of D with an added ninth. The pan runs from -1, left, to 1.
struct SNote {
    double m_Frequency;
    double m_Start; // Seconds.
    double m_Level;
    double m_Pan;
};
constexpr std::array<SNote, 6> s_Notes = {{
    {73.42, 0.0, 1.0, 0.0},
    {146.83, 0.15, 0.8, -0.4},
    {220.0, 0.30, 0.7, 0.4},
    {293.66, 0.45, 0.6, -0.7},
    {369.99, 0.60, 0.55, 0.7},
    {659.26, 0.75, 0.45, 0.1},
}};
constexpr int s_Harmonics = 8;

// Bursts of noise, like a brushed cymbal.
constexpr double s_BurstPeriod = 0.75;
constexpr double s_BurstDecay = 9.0; // e-folds a second.
constexpr double s_BurstLevel = 0.32;
constexpr std::uint32_t s_Seed = 4711;

constexpr std::array<const char*, 8> s_Settings = {
    "Stereo Mode=Mid-Side", "Frequency (1)=700", "Bandwidth (1)=2.5", "Low (1)=+5",
    "Mid (1)=-7",           "High (1)=+2",       "Low (2)=-9",        "High (2)=+9"};

// A linear congruence; the same numbers everywhere, from -1 to 1.
class CNoise {
public:
    double Next() {
        m_State = m_State * 1664525u + 1013904223u;
        return static_cast<double>(m_State) / 2147483648.0 - 1.0;
    }

private:
    std::uint32_t m_State = s_Seed;
};

double PanGain(double pan) {
    return std::sqrt(0.5 * (1.0 + pan));
}

void AddNote(const SNote& note, int sampleRate, std::vector<double>& left,
             std::vector<double>& right) {
    for (std::size_t i = 0; i < left.size(); ++i) {
        const double time = static_cast<double>(i) / sampleRate - note.m_Start;
        if (time < 0.0)
            continue;
        double sum = 0.0;
        for (int k = 1; k <= s_Harmonics; ++k)
            sum += std::sin(s_TwoPi * note.m_Frequency * k * time) * std::exp(-0.35 * k * time) /
                   std::pow(k, 1.3);
        sum *= note.m_Level * (1.0 - std::exp(-time * 60.0));
        left[i] += sum * PanGain(-note.m_Pan);
        right[i] += sum * PanGain(note.m_Pan);
    }
}

void AddBursts(int sampleRate, std::vector<double>& left, std::vector<double>& right) {
    CNoise noise;
    double lastLeft = 0.0;
    double lastRight = 0.0;
    for (std::size_t i = 0; i < left.size(); ++i) {
        const double time = std::fmod(static_cast<double>(i) / sampleRate, s_BurstPeriod);
        const double level =
            s_BurstLevel * std::exp(-s_BurstDecay * time) * (1.0 - std::exp(-time * 400.0));
        // Differences take away the noise's lows; what both sides share stands in the middle.
        const double common = noise.Next();
        const double nextLeft = 0.6 * common + noise.Next();
        const double nextRight = 0.6 * common + noise.Next();
        left[i] += level * (nextLeft - lastLeft);
        right[i] += level * (nextRight - lastRight);
        lastLeft = nextLeft;
        lastRight = nextRight;
    }
}

// Where both edges of the piece fade in and out.
double EdgeGain(std::size_t index, std::size_t count, int sampleRate) {
    const double start = static_cast<double>(index) / sampleRate / 0.01;
    const double end = static_cast<double>(count - 1 - index) / sampleRate / s_FadeSeconds;
    const double gain = std::min({start, end, 1.0});
    return gain * gain * (3.0 - 2.0 * gain);
}

} // namespace

SDemoSignal MakeDemoSignal(int sampleRate) {
    const std::size_t count = static_cast<std::size_t>(s_Seconds * sampleRate);
    std::vector<double> left(count, 0.0);
    std::vector<double> right(count, 0.0);
    for (const SNote& note : s_Notes)
        AddNote(note, sampleRate, left, right);
    AddBursts(sampleRate, left, right);
    double peak = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        const double gain = EdgeGain(i, count, sampleRate);
        left[i] *= gain;
        right[i] *= gain;
        peak = std::max({peak, std::abs(left[i]), std::abs(right[i])});
    }
    const double scale = std::pow(10.0, 0.05 * s_PeakLevel) / peak;
    SDemoSignal signal;
    for (std::size_t i = 0; i < count; ++i) {
        signal.m_Left.push_back(static_cast<float>(left[i] * scale));
        signal.m_Right.push_back(static_cast<float>(right[i] * scale));
    }
    return signal;
}

TResult<std::string> RunDemo(const std::string& folder, const std::string& module) {
    namespace fs = std::filesystem;
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        return SFault{folder + ": can't be made: " + error.message()};
    const std::string source = (fs::path(folder) / "demo.wav").string();
    const SDemoSignal signal = MakeDemoSignal(s_SampleRate);
    const int frames = static_cast<int>(signal.m_Left.size());
    WatchForInterrupt();
    CAudioWriter writer;
    if (CStatus status = writer.Open(source, s_SampleRate, ESubtype::Pcm24, frames); !status)
        return status.GetFault();
    if (CStatus status = writer.Write(signal.m_Left.data(), signal.m_Right.data(), frames); !status)
        return status.GetFault();
    if (CStatus status = writer.Close(); !status)
        return status.GetFault();

    SRenderOptions render;
    render.m_Module = module;
    render.m_Input = source;
    render.m_Output = (fs::path(folder) / "demo-equalised.wav").string();
    render.m_Settings.assign(s_Settings.begin(), s_Settings.end());
    render.m_Subtype = "pcm24";
    CProgress progress(nullptr);
    if (const TResult<SRenderReport> report = Render(render, progress); !report)
        return report.GetFault();

    SResponseOptions response;
    response.m_Output = (fs::path(folder) / "demo-response.png").string();
    response.m_Settings = render.m_Settings;
    response.m_SampleRate = s_SampleRate;
    if (CStatus status = WriteResponse(response); !status)
        return status.GetFault();

    return "Made " + source + ": a chord with brushed noise, six seconds at 48 kHz.\n" +
           "Equalised it to " + render.m_Output +
           " (middle: fuller and softer, sides: airier), and drew " + response.m_Output + ".\n" +
           "Try next: ./cairn run render " + source + " louder-mids.wav --set \"Mid (1)=+9\" " +
           "--set \"Mid (2)=+9\"; \"./cairn run params\" lists what can be set.\n";
}

} // namespace CairnHost
