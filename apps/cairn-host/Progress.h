// The bar that shows how far a render has come.
#pragma once

#include <chrono>
#include <cstdint>
#include <ostream>
#include <string>

namespace CairnHost {

// "[#####.....]  50%  1:23 of 2:46", times in minutes and seconds of audio; without a known total
// only the time that is done.
std::string ProgressText(std::int64_t done, std::int64_t total, int sampleRate);

// Draws on one line of a terminal, and wipes it at the end.
class CProgress {
public:
    // Null draws nothing; the stream outlives the bar.
    explicit CProgress(std::ostream* terminal) : m_Terminal(terminal) {}
    ~CProgress() { Finish(); }
    CProgress(const CProgress&) = delete;
    CProgress& operator=(const CProgress&) = delete;

    // In frames; cheap enough to be called for each block.
    void Update(std::int64_t done, std::int64_t total, int sampleRate);
    void Finish();

private:
    std::ostream* m_Terminal;
    std::size_t m_Width = 0;
    std::chrono::steady_clock::time_point m_NextDrawing = std::chrono::steady_clock::now();
};

} // namespace CairnHost
