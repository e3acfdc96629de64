// Proxies by interface: capture objects that stand in front of another one of the same kind, keep a
// copy of its value, and fire its events at another place and time.
#pragma once

#include "core/RefreshTime.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/proxies/ProxyValueUpdate.h"

namespace Lathe::DataModel {

// TObject is the read-only capture object of the kind, TWritable its writable sister.
template <class TObject>
class TIConstCaptureObjectProxy : public virtual TObject,
                                  public virtual Objects::IProxyValueUpdate {};

template <class TObject, class TWritable>
class TICaptureObjectProxy : public virtual TIConstCaptureObjectProxy<TObject>,
                             public virtual TWritable {};

template <class TObject>
class TIConstCaptureObjectTimerProxy : public virtual TIConstCaptureObjectProxy<TObject>,
                                       public virtual Core::IRefreshTime {
public:
    // A paused proxy keeps what it has; the first tick after the pause catches up.
    virtual void SetPaused(bool paused) = 0;
    virtual bool IsPaused() const = 0;
};

template <class TObject, class TWritable>
class TICaptureObjectTimerProxy : public virtual TIConstCaptureObjectTimerProxy<TObject>,
                                  public virtual TICaptureObjectProxy<TObject, TWritable> {};

} // namespace Lathe::DataModel
