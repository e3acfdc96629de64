// Declarations of a filter for two channels, made from those of the filter of one channel.
#pragma once

#include "core/containers/Collection.h"

#include <string>
#include <utility>

namespace Lathe::Audio::DSP {

// The elements before firstSplit, those up to lastSplit (-1: the last) with " (L)" behind their
// names, the same again with " (R)", and the rest.
template <class TInfo, class IInfo, class IVectorOf = Containers::IVector<IInfo>>
class TMonoToStereoInfo : public CoreUtilities::TDynamicCollection<TInfo, IInfo, IVectorOf> {
public:
    explicit TMonoToStereoInfo(const Containers::IConstVector<IInfo>& mono, int firstSplit = 0,
                               int lastSplit = -1)
        : m_FirstSplit(firstSplit), m_LastSplit(lastSplit) {
        const int count = mono.GetCount();
        const int last = lastSplit == -1 ? count - 1 : lastSplit;
        this->SetCount(count + (last - firstSplit) + 1);
        int to = 0;
        Append(mono, 0, firstSplit - 1, "", to);
        Append(mono, firstSplit, last, " (L)", to);
        Append(mono, firstSplit, last, " (R)", to);
        Append(mono, last + 1, count - 1, "", to);
    }

    int GetFirstSplit() const { return m_FirstSplit; }
    int GetLastSplit() const { return m_LastSplit; }

private:
    void Append(const Containers::IConstVector<IInfo>& mono, int first, int last,
                const char* suffix, int& to) {
        for (int i = first; i <= last; ++i, ++to) {
            TInfo& info = (*this)[to];
            info = mono.GetElement(i);
            if (*suffix)
                info.SetName((std::string(info.GetName() ? info.GetName() : "") + suffix).c_str());
        }
    }

    int m_FirstSplit;
    int m_LastSplit;
};

// The source's elements with the first "(L)" of a name replaced by the left label, or else the
// first "(R)" by the right one.
template <class TInfo, class IInfo, class IVectorOf = Containers::IVector<IInfo>>
class TStereoToMidSideInfo : public CoreUtilities::TDynamicCollection<TInfo, IInfo, IVectorOf> {
public:
    TStereoToMidSideInfo(const Containers::IConstVector<IInfo>& stereo, std::string leftLabel,
                         std::string rightLabel)
        : m_LeftLabel(std::move(leftLabel)), m_RightLabel(std::move(rightLabel)) {
        const int count = stereo.GetCount();
        this->SetCount(count);
        for (int i = 0; i < count; ++i) {
            TInfo& info = (*this)[i];
            info = stereo.GetElement(i);
            std::string name = info.GetName() ? info.GetName() : "";
            if (Replace(name, "(L)", m_LeftLabel) || Replace(name, "(R)", m_RightLabel))
                info.SetName(name.c_str());
        }
    }

private:
    static bool Replace(std::string& name, const char* channel, const std::string& label) {
        const std::size_t found = name.find(channel);
        if (found == std::string::npos)
            return false;
        name.replace(found, 3, label);
        return true;
    }

    std::string m_LeftLabel;
    std::string m_RightLabel;
};

} // namespace Lathe::Audio::DSP
