// Things that are brought up to date by a timer.
#pragma once

namespace Lathe::Core {

class IRefreshTime {
public:
    // In milliseconds.
    virtual void SetRefreshTime(int milliseconds) = 0;
    virtual int GetRefreshTime() const = 0;
    virtual ~IRefreshTime() = default;
};

} // namespace Lathe::Core
