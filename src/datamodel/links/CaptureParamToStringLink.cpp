#include "datamodel/links/CaptureParamToStringLink.h"

#include <memory>

namespace Lathe::DataModel::Objects {

CCaptureParamToStringLink::CCaptureParamToStringLink(IConstCaptureParam* source,
                                                     ICaptureString* target)
    : m_FormatterCommand(*this, &CCaptureParamToStringLink::OnFormatterChanged),
      m_SourceInfoCommand(*this, &CCaptureParamToStringLink::CopyInfo) {
    m_Formatter.GetChangedEvent().AddCommand(m_FormatterCommand);
    Join(source, target);
}

CCaptureParamToStringLink::~CCaptureParamToStringLink() {
    Disconnect();
    m_Formatter.GetChangedEvent().RemoveCommand(m_FormatterCommand);
}

void CCaptureParamToStringLink::Update() {
    if (!GetSource() || !GetTarget())
        return;
    const std::unique_ptr<char[]> text(m_Formatter.ToText(GetSource()->GetValue()));
    GetTarget()->SetValue(text.get());
}

void CCaptureParamToStringLink::BeforeSourceChange() {
    CopyInfo();
    if (GetSource())
        GetSource()->GetInfo().GetChangedEvent().RemoveCommand(m_SourceInfoCommand);
}

void CCaptureParamToStringLink::AfterSourceChange() {
    if (GetSource())
        GetSource()->GetInfo().GetChangedEvent().AddCommand(m_SourceInfoCommand);
    CopyInfo();
}

void CCaptureParamToStringLink::CopyInfo() {
    if (GetSource())
        m_Formatter.SetInfo(GetSource()->GetInfo());
    else
        m_Formatter.SetInfo(CParamInfo());
}

void CCaptureParamToStringLink::OnFormatterChanged() {
    if (!IsOnModifyOnly())
        Update();
}

} // namespace Lathe::DataModel::Objects
