// Reading of audio files of one or two channels, a little at a time.
#pragma once

#include "cairn-host/Result.h"

#include <cstdint>
#include <memory>
#include <vector>

struct sf_private_tag;

namespace CairnHost {

class CAudioReader {
public:
    CStatus Open(const std::string& path);

    // In frames a second; at least 1.
    int GetSampleRate() const { return m_SampleRate; }
    int GetChannelCount() const { return m_ChannelCount; }
    // As the file's header promises; 0 when it doesn't know.
    std::int64_t GetFrameCount() const { return m_FrameCount; }

    // Reads up to `frames` frames; fewer only at the end of the file. One channel feeds both sides.
    TResult<int> Read(float* left, float* right, int frames);

private:
    struct SClose {
        void operator()(sf_private_tag* file) const;
    };

    std::string m_Path;
    std::unique_ptr<sf_private_tag, SClose> m_File;
    int m_SampleRate = 0;
    int m_ChannelCount = 0;
    std::int64_t m_FrameCount = 0;
    std::int64_t m_FramesRead = 0;
    // What was read of the file and not yet handed out.
    std::vector<float> m_Chunk;
    std::size_t m_ChunkStart = 0;
    std::size_t m_ChunkEnd = 0;
};

} // namespace CairnHost
