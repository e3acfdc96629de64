#include "dsp/streams/StreamFunctions.h"

#include <algorithm>
#include <limits>

namespace Lathe::Audio::DSP {

namespace {

void Fill(float* data, int stride, int samples, float value) {
    if (stride == 1) {
        std::fill_n(data, samples, value);
        return;
    }
    for (int i = 0, position = 0; i < samples; ++i, position += stride)
        data[position] = value;
}

} // namespace

void CopyStream(const IAudioStream& source, IAudioStream& destination, int samples) {
    float* to = destination.GetData();
    if (!to)
        return;
    const float* from = source.GetData();
    const int toStride = destination.GetStride();
    const int fromStride = source.GetStride();
    if (!from) {
        Fill(to, toStride, samples, 0.0f);
        return;
    }
    if (from == to && fromStride == toStride)
        return;
    for (int i = 0, read = 0, write = 0; i < samples; ++i, read += fromStride, write += toStride)
        to[write] = from[read];
}

void CopyStreams(const IConstAudioStreams& source, IAudioStreams& destination, int samples) {
    const int channels = std::min(source.GetCount(), destination.GetCount());
    for (int channel = 0; channel < channels; ++channel)
        CopyStream(source.GetElement(channel), destination.GetElement(channel), samples);
}

bool CrossfadeStreams(const IConstAudioStreams& from, const IConstAudioStreams& to,
                      IAudioStreams& output, int samples, float* position, float step) {
    const int channels = std::min({from.GetCount(), to.GetCount(), output.GetCount()});
    double current = *position;
    for (int channel = 0; channel < channels; ++channel) {
        const IAudioStream& fromStream = from.GetElement(channel);
        const IAudioStream& toStream = to.GetElement(channel);
        IAudioStream& outStream = output.GetElement(channel);
        const float* fromData = fromStream.GetData();
        const float* toData = toStream.GetData();
        float* outData = outStream.GetData();
        const int fromStride = fromStream.GetStride();
        const int toStride = toStream.GetStride();
        const int outStride = outStream.GetStride();
        current = *position;
        for (int i = 0, a = 0, b = 0, o = 0; i < samples;
             ++i, a += fromStride, b += toStride, o += outStride) {
            const float start = fromData ? fromData[a] : 0.0f;
            const float end = toData ? toData[b] : 0.0f;
            if (outData)
                outData[o] = (end - start) * static_cast<float>(current) + start;
            current = std::clamp(current + static_cast<double>(step), 0.0, 1.0);
        }
    }
    // The sum is in double, so n steps of 1 / n miss the end by no more than the step's own
    // rounding.
    constexpr double rounding = std::numeric_limits<float>::epsilon();
    if (step > 0.0f && current > 1.0 - rounding)
        current = 1.0;
    else if (step < 0.0f && current < rounding)
        current = 0.0;
    *position = static_cast<float>(current);
    return *position > 0.0f && *position < 1.0f;
}

void ClearStreams(IAudioStreams& streams) {
    const int channels = streams.GetCount();
    for (int channel = 0; channel < channels; ++channel) {
        IAudioStream& stream = streams.GetElement(channel);
        if (float* data = stream.GetData())
            Fill(data, stream.GetStride(), stream.GetSize(), 0.0f);
    }
}

} // namespace Lathe::Audio::DSP
