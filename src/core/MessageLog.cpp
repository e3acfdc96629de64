#include "core/MessageLog.h"

namespace Lathe::CoreUtilities {

void CMemMessageLog::Log(EMessageLevel level, const char* text, int detail) {
    if (detail <= m_DetailLimit)
        m_Messages.push_back({level, text, detail});
}

} // namespace Lathe::CoreUtilities
