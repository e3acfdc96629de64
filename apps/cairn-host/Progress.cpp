#include "cairn-host/Progress.h"

#include <algorithm>
#include <cstdio>

namespace CairnHost {
namespace {

constexpr int s_BarWidth = 30;
constexpr std::chrono::milliseconds s_DrawingPeriod(100);

std::string TimeText(std::int64_t frames, int sampleRate) {
    const long long seconds = frames / sampleRate;
    char text[40];
    std::snprintf(text, sizeof text, "%lld:%02lld", seconds / 60, seconds % 60);
    return text;
}

} // namespace

std::string ProgressText(std::int64_t done, std::int64_t total, int sampleRate) {
    if (total <= 0)
        return TimeText(done, sampleRate);
    const double part = std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
    std::string bar(s_BarWidth, '.');
    std::fill_n(bar.begin(), static_cast<int>(part * s_BarWidth), '#');
    char text[128];
    std::snprintf(text, sizeof text, "[%s] %3d%%  %s of %s", bar.c_str(),
                  static_cast<int>(part * 100.0), TimeText(done, sampleRate).c_str(),
                  TimeText(total, sampleRate).c_str());
    return text;
}

void CProgress::Update(std::int64_t done, std::int64_t total, int sampleRate) {
    if (!m_Terminal)
        return;
    const auto now = std::chrono::steady_clock::now();
    if (now < m_NextDrawing)
        return;
    m_NextDrawing = now + s_DrawingPeriod;
    std::string text = ProgressText(done, total, sampleRate);
    const std::size_t width = text.size();
    text.resize(std::max(width, m_Width), ' ');
    m_Width = width;
    *m_Terminal << '\r' << text << std::flush;
}

void CProgress::Finish() {
    if (m_Terminal && m_Width > 0)
        *m_Terminal << '\r' << std::string(m_Width, ' ') << '\r' << std::flush;
    m_Width = 0;
}

} // namespace CairnHost
