#include "core/Capture.h"

namespace Lathe::Core {

void CCapture::Capture() {
    if (m_Captured)
        return;
    m_Captured = true;
    m_BeginCapture.Notify();
}

void CCapture::Release() {
    if (!m_Captured)
        return;
    m_Captured = false;
    m_EndCapture.Notify();
}

} // namespace Lathe::Core
