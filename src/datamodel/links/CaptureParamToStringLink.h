// The link that writes the text of a parameter to a string.
#pragma once

#include "datamodel/links/BaseCaptureObjectLink.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/objects/text/ParamDataToText.h"

namespace Lathe::DataModel::Objects {

// Follows the source's description and the formatter too; a change of either writes the string also
// when the link is switched off or paused, unless the link is on modification only.
class CCaptureParamToStringLink final
    : public TBaseCaptureObjectLink<IConstCaptureParam, ICaptureString> {
public:
    CCaptureParamToStringLink(IConstCaptureParam* source, ICaptureString* target);
    ~CCaptureParamToStringLink() override;

    // Its format and its pattern may be set; the description is the source's.
    CParamDataToText& GetFormatter() { return m_Formatter; }

protected:
    void Update() override;
    void BeforeSourceChange() override;
    void AfterSourceChange() override;

private:
    void CopyInfo();
    void OnFormatterChanged();

    CParamDataToText m_Formatter{"%.1f", false, "{text_value} {unit}"};
    Core::TCommand<CCaptureParamToStringLink> m_FormatterCommand;
    Core::TCommand<CCaptureParamToStringLink> m_SourceInfoCommand;
};

} // namespace Lathe::DataModel::Objects
