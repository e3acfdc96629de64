#include "cairn-host/AudioWriter.h"

#include "cairn-host/Text.h"

#include <sndfile.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <limits>

namespace CairnHost {
namespace {

constexpr int s_Channels = 2;
constexpr std::size_t s_ChunkFrames = 4096;

struct SSubtype {
    ESubtype m_Subtype;
    const char* m_Name;
    int m_Format;
    int m_BytesPerSample;
};
constexpr std::array<SSubtype, 3> s_Subtypes = {{
    {ESubtype::Float, "float", SF_FORMAT_FLOAT, 4},
    {ESubtype::Pcm24, "pcm24", SF_FORMAT_PCM_24, 3},
    {ESubtype::Pcm16, "pcm16", SF_FORMAT_PCM_16, 2},
}};

struct SContainer {
    const char* m_Extension;
    int m_Format;
    // What takes its place for files beyond 4 GiB: the same when it has no limit, 0 when it has.
    int m_LargeFormat;
    // The first of s_Subtypes that it holds, and all later ones; beyond the end of s_Subtypes it
    // holds none of them, and the coding is its own.
    std::size_t m_FirstSubtype;
    // In Hz; what the coding or its coder can take.
    int m_MaxSampleRate;
    // Whether the library makes a file of no frames that reads back as such.
    bool m_CanBeEmpty;
};
constexpr int s_AnyRate = std::numeric_limits<int>::max();
constexpr std::array<SContainer, 5> s_Containers = {{
    {".wav", SF_FORMAT_WAV, SF_FORMAT_RF64, 0, s_AnyRate, true},
    {".flac", SF_FORMAT_FLAC, SF_FORMAT_FLAC, 1, 655350, true},
    {".aiff", SF_FORMAT_AIFF, 0, 0, s_AnyRate, false},
    {".aif", SF_FORMAT_AIFF, 0, 0, s_AnyRate, false},
    {".ogg", SF_FORMAT_OGG, SF_FORMAT_OGG, s_Subtypes.size(), 200000, false},
}};

// Headers and padding take some of the 4 GiB.
constexpr std::int64_t s_LargeFileBytes = 0xFFFFFFFFLL - 0x10000;
// The lossy coder takes samples somewhat beyond full scale, but no absurd ones.
constexpr float s_LossyFullScale = 8.0f;

const SContainer* FindContainer(const std::string& path) {
    const std::string extension = std::filesystem::path(path).extension().string();
    for (const SContainer& container : s_Containers) {
        if (EqualsIgnoringCase(extension, container.m_Extension))
            return &container;
    }
    return nullptr;
}

const SSubtype* FindSubtype(const SContainer& container, std::optional<ESubtype> wanted) {
    for (std::size_t i = container.m_FirstSubtype; i < s_Subtypes.size(); ++i) {
        if (!wanted || s_Subtypes[i].m_Subtype == *wanted)
            return &s_Subtypes[i];
    }
    return nullptr;
}

std::string ListNames(std::size_t first) {
    std::string names;
    for (std::size_t i = first; i < s_Subtypes.size(); ++i) {
        if (i > first)
            names += i + 1 < s_Subtypes.size() ? ", " : " or ";
        names += s_Subtypes[i].m_Name;
    }
    return names;
}

COutputFile& AsOutput(void* user) {
    return *static_cast<COutputFile*>(user);
}

sf_count_t GetLength(void* user) {
    return AsOutput(user).GetLength();
}
sf_count_t GetPosition(void* user) {
    return AsOutput(user).GetPosition();
}
sf_count_t ReadNothing(void*, sf_count_t, void*) {
    return 0;
}
sf_count_t WriteBytes(const void* data, sf_count_t size, void* user) {
    return AsOutput(user).Write(data, static_cast<std::size_t>(size)) ? size : 0;
}
sf_count_t SeekBytes(sf_count_t offset, int whence, void* user) {
    COutputFile& output = AsOutput(user);
    if (whence == SEEK_CUR)
        offset += output.GetPosition();
    else if (whence == SEEK_END)
        offset += output.GetLength();
    return output.Seek(offset) ? output.GetPosition() : -1;
}

} // namespace

TResult<ESubtype> ReadSubtype(std::string_view text) {
    for (const SSubtype& subtype : s_Subtypes) {
        if (EqualsIgnoringCase(text, subtype.m_Name))
            return subtype.m_Subtype;
    }
    return SFault{"--subtype \"" + std::string(text) + "\": expected " + ListNames(0)};
}

CAudioWriter::~CAudioWriter() = default;

void CAudioWriter::SClose::operator()(sf_private_tag* file) const {
    sf_close(file);
}

CStatus CAudioWriter::Open(const std::string& path, int sampleRate, std::optional<ESubtype> wanted,
                           std::int64_t expectedFrames) {
    m_Path = path;
    const SContainer* container = FindContainer(path);
    if (!container)
        return SFault{path + ": unknown extension: expected .wav, .flac, .aiff or .ogg"};
    const SSubtype* subtype = FindSubtype(*container, wanted);
    if (!subtype && container->m_FirstSubtype >= s_Subtypes.size() && wanted)
        return SFault{path + ": " + container->m_Extension +
                      " files have a coding of their own: expected no --subtype"};
    if (!subtype && wanted)
        return SFault{path + ": " + container->m_Extension +
                      " files can't hold that --subtype: expected " +
                      ListNames(container->m_FirstSubtype)};

    if (sampleRate > container->m_MaxSampleRate)
        return SFault{path + ": " + container->m_Extension + " files hold up to " +
                      std::to_string(container->m_MaxSampleRate) + " Hz, and the audio has " +
                      std::to_string(sampleRate) + " Hz: expected a .wav or .aiff output"};

    const int bytesPerFrame = s_Channels * (subtype ? subtype->m_BytesPerSample : 0);
    int format = container->m_Format;
    if (expectedFrames > 0 && bytesPerFrame > 0 &&
        expectedFrames > s_LargeFileBytes / bytesPerFrame)
        format = container->m_LargeFormat;
    if (format == 0)
        return SFault{path + ": " + container->m_Extension +
                      " files end at 4 GiB: expected a shorter input, or a .wav or .flac output"};

    SF_INFO info = {};
    info.samplerate = sampleRate;
    info.channels = s_Channels;
    info.format = format | (subtype ? subtype->m_Format : SF_FORMAT_VORBIS);
    if (CStatus status = m_Output.Open(path); !status)
        return status;
    SF_VIRTUAL_IO io = {GetLength, SeekBytes, ReadNothing, WriteBytes, GetPosition};
    m_File.reset(sf_open_virtual(&io, SFM_WRITE, &info, &m_Output));
    if (m_Output.HasFailed())
        return m_Output.GetFault();
    if (!m_File)
        return SFault{path + ": can't be written at " + std::to_string(sampleRate) +
                      " Hz: " + WithoutFullStop(sf_strerror(nullptr))};
    // The peak chunk holds the time of day: the same audio shall give the same file.
    sf_command(m_File.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
    sf_command(m_File.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);

    m_CanBeEmpty = container->m_CanBeEmpty;
    if (!subtype)
        m_FullScale = s_LossyFullScale;
    else if (subtype->m_Subtype == ESubtype::Float)
        m_FullScale = std::numeric_limits<float>::infinity();
    else
        m_FullScale = 1.0f;
    m_Chunk.resize(s_ChunkFrames * s_Channels);
    m_ChunkSize = 0;
    m_FrameCount = 0;
    m_LimitedCount = 0;
    return {};
}

CStatus CAudioWriter::Write(const float* left, const float* right, int frames) {
    m_FrameCount += frames;
    for (int i = 0; i < frames; ++i) {
        m_Chunk[m_ChunkSize++] = Limit(left[i]);
        m_Chunk[m_ChunkSize++] = Limit(right[i]);
        if (m_ChunkSize == m_Chunk.size()) {
            if (CStatus status = Flush(); !status)
                return status;
        }
    }
    return {};
}

CStatus CAudioWriter::Close() {
    if (CStatus status = Flush(); !status)
        return status;
    if (m_FrameCount == 0 && !m_CanBeEmpty)
        return SFault{m_Path + ": such files can't be empty, and the audio has no frames: expected "
                               "a .wav or .flac output"};
    // Some formats write their header with the first samples: of none there would be no file.
    if (m_Output.GetLength() == 0)
        sf_command(m_File.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
    if (sf_close(m_File.release()) != 0 && !m_Output.HasFailed())
        return SFault{m_Path + ": can't be completed"};
    return m_Output.Commit();
}

CStatus CAudioWriter::Flush() {
    const sf_count_t frames = static_cast<sf_count_t>(m_ChunkSize / s_Channels);
    m_ChunkSize = 0;
    const bool complete = sf_writef_float(m_File.get(), m_Chunk.data(), frames) == frames;
    if (m_Output.HasFailed())
        return m_Output.GetFault();
    if (!complete)
        return SFault{m_Path + ": can't be written: " + WithoutFullStop(sf_strerror(m_File.get()))};
    return {};
}

// Float files hold every value; the others get numbers that they can code.
float CAudioWriter::Limit(float sample) {
    if (std::isinf(m_FullScale) || std::abs(sample) <= m_FullScale)
        return sample;
    ++m_LimitedCount;
    return std::isnan(sample) ? 0.0f : std::copysign(m_FullScale, sample);
}

} // namespace CairnHost
