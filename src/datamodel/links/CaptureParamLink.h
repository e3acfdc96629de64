// The one-way link between two parameters, with a transfer function between them.
#pragma once

#include "core/Reverse.h"
#include "core/ownership/Ownership.h"
#include "datamodel/links/CaptureObjectLink.h"
#include "datamodel/objects/capture/CaptureObject.h"

namespace Lathe::Math {
enum class EParamValueCurve : int;
}

namespace Lathe::DataModel::Objects {

// Follows the target's range too. The setters write the target at once, also when the link is
// switched off or paused, unless the link is on modification only.
class CCaptureParamLink final : public TCaptureObjectLink<IConstCaptureParam, ICaptureParam>,
                                public Core::IReverse {
public:
    CCaptureParamLink(IConstCaptureParam* source, ICaptureParam* target);
    ~CCaptureParamLink() override;

    void SetReverse(bool reverse) override;
    bool IsReversed() const override { return m_Reverse; }
    Core::IEventProvider& GetReverseChangedEvent() const override { return m_ReverseChanged; }

    // The function works on positions in the two ranges instead of bare values.
    void SetNormalized(bool normalized);
    // The target takes the steps of the source, not its values.
    void SetDiff(bool diff);
    bool IsDiff() const { return m_Diff; }
    // The direct function of the curve.
    void SetResponseCurve(Math::EParamValueCurve curve);
    // An owned function is deleted by the link; null gives the identity.
    void SetFunction(const Math::IFunction* function, bool owned);

protected:
    void Update() override;
    void OnEnabled() override;
    void BeforeTargetChange() override;
    void AfterTargetChange() override;

private:
    double Transfer(double value) const;
    void UpdateAfterSetting();
    void OnTargetInfoChanged();

    Core::TOwnership<const Math::IFunction> m_Function;
    bool m_Reverse = false;
    mutable Core::CEventProvider m_ReverseChanged;
    bool m_Normalized = false;
    bool m_Diff = false;
    // Of the source, at the last update.
    double m_PreviousValue = 0.0;
    Core::TCommand<CCaptureParamLink> m_TargetInfoCommand;
};

} // namespace Lathe::DataModel::Objects
