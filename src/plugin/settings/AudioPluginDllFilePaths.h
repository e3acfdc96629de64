// The plug-in's files as they lie around its module and in the user's folders.
#pragma once

#include "plugin/settings/AudioPluginFilePathsBase.h"

namespace Lathe::Audio::Plugin {

class IConstPackageInfo;

// With a module "M.so" in the folder F, maker A, product B and variant C:
//   install folder   F/M data
//   settings folder  the user's preferences/A/M
//   user folder      the user's documents/A/B/C
// Without package information the user folder is documents/A/M, with A the maker of this product;
// a package without a product has no user folder.
class CAudioPluginDllFilePaths : public CAudioPluginFilePathsBase {
public:
    // Those of the module that this class is linked into. The package may be null.
    explicit CAudioPluginDllFilePaths(const IConstPackageInfo* package);
    // Those of a module at this path. An empty one gives neither an install nor a settings folder.
    CAudioPluginDllFilePaths(const IConstPackageInfo* package, const std::string& modulePath);
};

} // namespace Lathe::Audio::Plugin
