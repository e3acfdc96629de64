// Which product of whom this is: the names of its folders and of its clipboard data.
#pragma once

namespace Lathe::Audio::Plugin {

class IConstPackageInfo {
public:
    virtual const char* GetMaker() const = 0;
    virtual const char* GetProduct() const = 0;
    virtual const char* GetVariant() const = 0;
    virtual ~IConstPackageInfo() = default;
};

} // namespace Lathe::Audio::Plugin
