#include "cairn-host/AudioReader.h"

#include "cairn-host/Text.h"

#include <sndfile.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace CairnHost {
namespace {

// Blocks can be as small as one frame: the library is called for this many at once.
constexpr int s_ChunkFrames = 4096;

// Formats that can't know their length promise this much.
constexpr std::int64_t s_UnknownFrameCount = SF_COUNT_MAX;

// Why the library didn't open a file. It takes a header without channels or with a rate of 0 for a
// fault of its own.
std::string GetOpenError() {
    const std::string text = sf_strerror(nullptr);
    if (text.starts_with("Internal error"))
        return "its header makes no sense, such as a sample rate of 0";
    return WithoutFullStop(text);
}

} // namespace

void CAudioReader::SClose::operator()(sf_private_tag* file) const {
    sf_close(file);
}

CStatus CAudioReader::Open(const std::string& path) {
    m_Path = path;
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        return SFault{path + ": is a folder: expected an audio file"};
    if (::access(path.c_str(), R_OK) != 0)
        return SFault{path + ": can't be read: " + std::strerror(errno)};
    if (std::filesystem::is_regular_file(path, ignored) &&
        std::filesystem::file_size(path, ignored) == 0)
        return SFault{path + ": is empty: expected an audio file"};

    SF_INFO info = {};
    m_File.reset(sf_open(path.c_str(), SFM_READ, &info));
    if (!m_File)
        return SFault{path + ": isn't an audio file that can be read: " + GetOpenError()};
    if (info.channels < 1 || info.channels > 2)
        return SFault{path + ": has " + std::to_string(info.channels) +
                      " channels: expected one or two"};
    if (info.samplerate < 1)
        return SFault{path + ": has a sample rate of " + std::to_string(info.samplerate) +
                      " Hz: expected at least 1"};
    m_SampleRate = info.samplerate;
    m_ChannelCount = info.channels;
    m_FrameCount = info.frames < 0 || info.frames == s_UnknownFrameCount ? 0 : info.frames;
    m_FramesRead = 0;
    m_Chunk.resize(s_ChunkFrames * static_cast<std::size_t>(m_ChannelCount));
    m_ChunkStart = m_ChunkEnd = 0;
    return {};
}

TResult<int> CAudioReader::Read(float* left, float* right, int frames) {
    const std::size_t channels = static_cast<std::size_t>(m_ChannelCount);
    for (int i = 0; i < frames; ++i) {
        if (m_ChunkStart == m_ChunkEnd) {
            const sf_count_t count = sf_readf_float(m_File.get(), m_Chunk.data(), s_ChunkFrames);
            if (count <= 0) {
                if (sf_error(m_File.get()) != SF_ERR_NO_ERROR)
                    return SFault{m_Path + ": is damaged after frame " +
                                  std::to_string(m_FramesRead) + ": " + sf_strerror(m_File.get())};
                return i;
            }
            m_FramesRead += count;
            m_ChunkStart = 0;
            m_ChunkEnd = static_cast<std::size_t>(count) * channels;
        }
        left[i] = m_Chunk[m_ChunkStart];
        right[i] = m_Chunk[m_ChunkStart + channels - 1];
        m_ChunkStart += channels;
    }
    return frames;
}

} // namespace CairnHost
