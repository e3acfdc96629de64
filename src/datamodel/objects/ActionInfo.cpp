#include "datamodel/objects/ActionInfo.h"

namespace Lathe::DataModel::Objects {

void CActionInfo::SetGraphics(const Graphics::I2DGraphics* graphics, GraphicsDeleter deleter) {
    if (graphics == m_Graphics.get())
        m_Graphics.get_deleter() = &KeepGraphics;
    m_Graphics = {graphics, deleter ? deleter : &KeepGraphics};
    NotifyChanged();
}

} // namespace Lathe::DataModel::Objects
