// The many-to-many link of strings: the texts of all sources, joined, go to every target.
#pragma once

#include "core/text/CharString.h"
#include "datamodel/links/MultipleCaptureObjectLink.h"
#include "datamodel/objects/capture/CaptureObject.h"

namespace Lathe::DataModel::Objects {

class CMultipleCaptureStringLink
    : public TMultipleCaptureObjectLink<IConstCaptureString, ICaptureString> {
public:
    // Stands between two texts, from the next event on; empty at first. Null is empty.
    void SetSeparator(const char* separator) { m_Separator = separator; }

protected:
    void Update(const IConstCaptureString* changed) override;

private:
    Core::CCharString Join() const;

    Core::CCharString m_Separator;
};

} // namespace Lathe::DataModel::Objects
