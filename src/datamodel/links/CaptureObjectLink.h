// The one-way link that copies the value as it is.
#pragma once

#include "datamodel/links/BaseCaptureObjectLink.h"

namespace Lathe::DataModel {

template <class TSource, class TTarget>
class TCaptureObjectLink : public TBaseCaptureObjectLink<TSource, TTarget> {
public:
    // Writes the target at once if both are there.
    TCaptureObjectLink(TSource* source, TTarget* target) { this->Join(source, target); }
    ~TCaptureObjectLink() override { this->Disconnect(); }

protected:
    TCaptureObjectLink() = default;

    void Update() override {
        if (this->GetSource() && this->GetTarget())
            this->GetTarget()->SetValue(this->GetSource()->GetValue());
    }
};

} // namespace Lathe::DataModel
