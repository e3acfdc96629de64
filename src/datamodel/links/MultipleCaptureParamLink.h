// The many-to-many link of parameters: one number made of all sources goes to every target.
#pragma once

#include "core/Reverse.h"
#include "datamodel/links/MultipleCaptureObjectLink.h"
#include "datamodel/links/MuxFunctions.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "math/ValueCurve.h"

#include <vector>

namespace Lathe::DataModel::Objects {

// Without a word of it at the setter, a setting counts from the next event on.
class CMultipleCaptureParamLink
    : public TMultipleCaptureObjectLink<IConstCaptureParam, ICaptureParam>,
      public Core::IReverse {
public:
    CMultipleCaptureParamLink();

    // Writes the targets if it may, and fires always.
    void SetReverse(bool reverse) override;
    bool IsReversed() const override { return m_Reverse; }
    Core::IEventProvider& GetReverseChangedEvent() const override { return m_ReverseChanged; }

    // Applied to the result of the mux function; linear at first.
    void SetResponseCurve(Math::EParamValueCurve curve);
    // The mean at first; with null the link writes nothing.
    void SetMuxFunction(MuxFunction function) { m_MuxFunction = function; }
    // Sources are seen, and targets written, as 0..1 of their own ranges.
    void SetNormalized(bool normalized) { m_Normalized = normalized; }
    // Switch the trigger on: a source outside the limits, which are inclusive, writes nothing when
    // it changes; without a changed source only targets outside are written. In normalised mode
    // the limits are parts of the range.
    void SetTriggerMin(double min);
    void SetTriggerMax(double max);

protected:
    void Update(const IConstCaptureParam* changed) override;

private:
    bool IsTriggerOn() const { return m_TriggerMinOn || m_TriggerMaxOn; }
    // Null passes.
    bool TriggerPasses(const IConstCaptureParam* object) const;
    double GetSeenValue(const IConstCaptureParam& object) const;
    double Combine();
    void Write(ICaptureParam& target, double result) const;

    const Math::IFunction* m_Function = nullptr;
    bool m_Reverse = false;
    MuxFunction m_MuxFunction;
    mutable Core::CEventProvider m_ReverseChanged;
    bool m_Normalized = false;
    double m_TriggerMin = 0.0;
    double m_TriggerMax = 0.0;
    bool m_TriggerMinOn = false;
    bool m_TriggerMaxOn = false;
    // The values of the sources within an update, kept for their room.
    std::vector<double> m_Values;
};

} // namespace Lathe::DataModel::Objects
