#include "serialization/CollectionSerializers.h"

#include <algorithm>

namespace Lathe::Serialization {

int GetTrustedCount(const IReadDataStream& input, const char* baseName, int claimedCount,
                    int presentCount) {
    if (claimedCount <= presentCount || claimedCount - presentCount <= MaxMissingElements)
        return std::max(claimedCount, 0);
    int trusted = presentCount;
    for (int i = presentCount; i < claimedCount && i - trusted < MaxMissingElements; ++i)
        if (HasObject(input, MakeElementName(baseName, i).c_str()))
            trusted = i + 1;
    return trusted;
}

} // namespace Lathe::Serialization
