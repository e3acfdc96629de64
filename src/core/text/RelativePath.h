// Paths as files store them, so that they stay right when a folder moves with all that is in it.
#pragma once

#include <string>
#include <string_view>

namespace Lathe::Core {

// The folder is an absolute path without a slash at the end, or empty.

// A path in the folder loses the folder and the slashes behind it; any other stays as it is.
std::string MakeRelativePath(std::string_view path, std::string_view folder);

// Puts the folder before a path that doesn't begin with a slash. An empty path stays empty.
std::string MakeAbsolutePath(std::string_view path, std::string_view folder);

} // namespace Lathe::Core
