// Copying, clearing and crossfading of streams.
#pragma once

#include "dsp/streams/AudioStream.h"

namespace Lathe::Audio::DSP {

// Does nothing to a destination without data, or onto the same data with the same stride. A source
// without data reads as zeros.
void CopyStream(const IAudioStream& source, IAudioStream& destination, int samples) LATHE_REALTIME;

// The channels that both have.
void CopyStreams(const IConstAudioStreams& source, IAudioStreams& destination, int samples)
    LATHE_REALTIME;

// out = (to - from) * position + from on the channels that all three have; each channel starts at
// *position, which moves by step a sample within 0 to 1 and is left where the last channel ended:
// at an end after n steps of 1 / n from the other. True while it lies strictly between 0 and 1.
bool CrossfadeStreams(const IConstAudioStreams& from, const IConstAudioStreams& to,
                      IAudioStreams& output, int samples, float* position, float step)
    LATHE_REALTIME;

// Zeros in every sample of every channel.
void ClearStreams(IAudioStreams& streams) LATHE_REALTIME;

} // namespace Lathe::Audio::DSP
