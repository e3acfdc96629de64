// Writing of two-channel audio files, whose format goes by the extension of their name.
#pragma once

#include "cairn-host/OutputFile.h"

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

struct sf_private_tag;

namespace CairnHost {

enum class ESubtype : int { Float, Pcm24, Pcm16 };

// "float", "pcm24" or "pcm16".
TResult<ESubtype> ReadSubtype(std::string_view text);

class CAudioWriter {
public:
    CAudioWriter() = default;
    ~CAudioWriter();
    CAudioWriter(const CAudioWriter&) = delete;
    CAudioWriter& operator=(const CAudioWriter&) = delete;

    // Without a subtype the format takes its best: 32-bit float where it can. The expected number
    // of frames, 0 when unknown, decides whether a .wav file must be of the kind that passes 4 GiB.
    CStatus Open(const std::string& path, int sampleRate, std::optional<ESubtype> subtype,
                 std::int64_t expectedFrames);
    CStatus Write(const float* left, const float* right, int frames);
    // The file takes its name only here.
    CStatus Close();

    // Samples beyond full scale that the format can't hold, and values that are no number.
    std::int64_t GetLimitedCount() const { return m_LimitedCount; }

private:
    struct SClose {
        void operator()(sf_private_tag* file) const;
    };

    CStatus Flush();
    float Limit(float sample);

    std::string m_Path;
    COutputFile m_Output; // Outlives the library's handle, which writes into it.
    std::unique_ptr<sf_private_tag, SClose> m_File;
    std::vector<float> m_Chunk;
    std::size_t m_ChunkSize = 0;
    std::int64_t m_FrameCount = 0;
    bool m_CanBeEmpty = true;
    // The largest magnitude that the format holds; infinite for float samples.
    float m_FullScale = 1.0f;
    std::int64_t m_LimitedCount = 0;
};

} // namespace CairnHost
