#include "datamodel/links/MultipleCaptureStringLink.h"

namespace Lathe::DataModel::Objects {

void CMultipleCaptureStringLink::Update(const IConstCaptureString* changed) {
    const Core::CCharString text = Join();
    ForEachTarget(changed, [&text](ICaptureString& target) { target.SetValue(text.GetText()); });
}

Core::CCharString CMultipleCaptureStringLink::Join() const {
    Core::CCharString text;
    for (int i = 0; i < GetSourceCount(); ++i) {
        if (i > 0)
            text += m_Separator.GetText();
        text += GetSource(i).GetValue();
    }
    return text;
}

} // namespace Lathe::DataModel::Objects
