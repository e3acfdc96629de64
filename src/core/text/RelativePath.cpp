#include "core/text/RelativePath.h"

namespace Lathe::Core {

std::string MakeRelativePath(std::string_view path, std::string_view folder) {
    if (folder.empty() || !path.starts_with(folder) || !path.substr(folder.size()).starts_with('/'))
        return std::string(path);
    const std::size_t name = path.find_first_not_of('/', folder.size());
    return std::string(name == std::string_view::npos ? path : path.substr(name));
}

std::string MakeAbsolutePath(std::string_view path, std::string_view folder) {
    if (path.empty() || folder.empty() || path.starts_with('/'))
        return std::string(path);
    return std::string(folder).append("/").append(path);
}

} // namespace Lathe::Core
